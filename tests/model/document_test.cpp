#include "model/document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <regex>

namespace velmora
{
namespace
{

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/// A project in which no field has its default and every kind of element occurs.
DMGProject variedProject()
{
    DMGProject project{
        .volumeName = "Grüße \"日本\" \\ / \U0001F600\n\x01",
        .format = DMGFormat::compressedLZFSE,
        .filesystem = FilesystemKind::apfs,
        .windowWidth = 640.5,
        .windowHeight = 1e21,
        .windowLeft = -0.1,
        .windowTop = 1.7976931348623157e308,
        .iconSize = 5e-324,
        .textSize = 100000,
        .labelOnBottom = false,
        .showSidebar = true,
        .showIconPreview = true,
        .showItemInfo = true,
        .backgroundKind = BackgroundKind::image,
        .backgroundColor = {0.1, 0.2, 0.3, 0.4},
        .gradientStart = {1.0 / 3, 0, 0, 0},
        .gradientEnd = {0, 1, 0, 0},
        .gradientAngle = 1e-7,
        .backgroundImagePath = "/a/b.png",
        .backgroundImageFit = BackgroundImageFit::stretch,
        .backgroundImageScale = 0.25,
        .backgroundImageOffsetX = 1,
        .backgroundImageOffsetY = 2,
        .volumeIconPath = "/a/c.icns",
        .licenseEnabled = true,
        .licenseText = std::string("a\0b", 3),
        .imageSizeAutomatic = false,
        .manualSizeMB = std::numeric_limits<std::int64_t>::min(),
        .encryption = ImageEncryption::aes256,
        .encryptionPassword = "secret",
        .internetEnabled = true,
        .signingMode = SigningMode::signAndNotarize,
        .codeSignIdentity = "identity",
        .notaryProfile = "profile",
    };
    project.items = {{.sourcePath = "/x/App.app", .displayName = "App.app", .x = 1, .y = 2},
                     {.displayName = "L", .x = 3, .y = 4, .symlinkTarget = "/Applications", .hidden = true}};
    project.overlayImages = {{.sourcePath = "p", .builtInArrowID = "arrow", .x = 1, .y = 2, .width = 3, .height = 4},
                             {.sourcePath = "q", .originalWidth = 5, .originalHeight = 6}};
    project.textOverlays = {{.identifier = "i",
                             .text = "t",
                             .fontName = "f",
                             .fontSize = 9,
                             .color = {1, 1, 1, 1},
                             .horizontalAlignment = TextHorizontalAlignment::justified,
                             .verticalAlignment = TextVerticalAlignment::bottom,
                             .shadowEnabled = true,
                             .shadowColor = {0.5, 0, 0, 0},
                             .shadowAngle = 1,
                             .shadowOffset = 2,
                             .shadowBlur = 4,
                             .shadowOpacity = 0.5,
                             .x = 5,
                             .y = 6,
                             .width = 7,
                             .height = 8}};
    return project;
}

std::string errorOf(const std::string& document)
{
    try {
        Document::decode(document);
    } catch (const DocumentError& error) {
        return error.what();
    }
    return "accepted";
}

/// The document of a project with one of everything, the first occurrence of `old` after `from` replaced.
std::string edited(const std::string& old, const std::string& now, const std::string& from = "{")
{
    std::string text = Document::encode(variedProject());
    const std::size_t at = text.find(old, text.find(from));
    EXPECT_NE(at, std::string::npos) << old;
    return text.replace(at, old.size(), now);
}

TEST(Document, readsBackWhatItWrote)
{
    const DMGProject project = variedProject();
    const std::string text = Document::encode(project);
    EXPECT_EQ(Document::decode(text), project);
    EXPECT_EQ(Document::encode(Document::decode(text)), text);
    EXPECT_EQ(Document::decode("\xEF\xBB\xBF" + text), project) << "with a byte-order mark";
}

TEST(Document, writesSortedKeysAndShortNumbers)
{
    const std::string text = Document::encode(variedProject());
    EXPECT_THAT(text, StartsWith("{\n  \"backgroundColor\": {\n    \"a\": 0.4,\n    \"b\": 0.3,\n"));
    EXPECT_THAT(text, EndsWith("\n  \"windowWidth\": 640.5\n}\n"));
    for (const char* const line : {"\"volumeName\": \"Grüße \\\"日本\\\" \\\\ / \U0001F600\\n\\u0001\"",
                                   "\"textSize\": 100000,", "\"windowHeight\": 1e+21,", "\"windowLeft\": -0.1,",
                                   "\"iconSize\": 5e-324,", "\"manualSizeMB\": -9223372036854775808,",
                                   "\"licenseText\": \"a\\u0000b\"", "\"signingMode\": \"Code Sign & Notarize\""})
        EXPECT_THAT(text, HasSubstr(line));

    // Keys ascend within each object: by indentation, a new object begins where a line ends with a brace.
    std::vector<std::string> last{""};
    const std::regex keyLine("( *)\"([A-Za-z]+)\": .*");
    std::istringstream lines(text);
    std::smatch match;
    for (std::string line; std::getline(lines, line);) {
        if (std::regex_match(line, match, keyLine)) {
            EXPECT_LT(std::exchange(last.back(), match[2]), match[2]);
        }
        if (line.back() == '{')
            last.emplace_back();
        else if (line.find('}') != std::string::npos)
            last.pop_back();
    }
    EXPECT_EQ(last, std::vector<std::string>{""}) << "every object was seen to its end";
}

TEST(Document, equalProjectsHaveEqualBytes)
{
    DMGProject positive;
    DMGProject negative;
    negative.backgroundImageOffsetX = -0.0;
    ASSERT_EQ(positive, negative);
    EXPECT_EQ(Document::encode(positive), Document::encode(negative));
    EXPECT_THAT(Document::encode(positive), HasSubstr("\"items\": [],\n"));
}

TEST(Document, leavesOutTheArrowOfAUsersPicture)
{
    const std::string text = Document::encode(variedProject());
    EXPECT_EQ(text.find("builtInArrowID"), text.rfind("builtInArrowID")) << "written for one of the two pictures";
    EXPECT_EQ(Document::decode(edited("\"arrow\"", "null")).overlayImages[0].builtInArrowID, std::nullopt);
}

TEST(Document, migratesLegacyPositionsOfVisibleItems)
{
    DMGProject project{.iconSize = 80, .iconUsesTopLeftCoords = true};
    project.items = {{.displayName = "a", .x = 100, .y = 100},
                     {.displayName = "b", .x = 100, .y = 100, .hidden = true}};
    const DMGProject read = Document::decode(Document::encode(project));
    EXPECT_EQ(read.items[0].position(), (Point{168, 140}));
    EXPECT_EQ(read.items[1].position(), (Point{100, 100}));
    EXPECT_FALSE(read.iconUsesTopLeftCoords);

    project.iconSize = 32;
    EXPECT_EQ(Document::decode(Document::encode(project)).items[0].position(), (Point{132, 116}));
}

TEST(Document, namesWhatItCannotWrite)
{
    const auto errorFor = [](void (*spoil)(DMGProject&)) -> std::string {
        DMGProject project = variedProject();
        spoil(project);
        try {
            Document::encode(project);
        } catch (const DocumentError& error) {
            return error.what();
        }
        return "written";
    };
    EXPECT_EQ(errorFor([](DMGProject& p) { p.textOverlays[0].fontSize = NAN; }),
              "textOverlays[0].fontSize: the number is not finite");
    EXPECT_THAT(errorFor([](DMGProject& p) { p.gradientEnd.b = -INFINITY; }), StartsWith("gradientEnd.b: "));
    EXPECT_EQ(errorFor([](DMGProject& p) { p.items[1].sourcePath = "/caf\xE9"; }),
              "items[1].sourcePath: the text is not UTF-8");
    EXPECT_THAT(errorFor([](DMGProject& p) { p.licenseText.assign(Document::maximumSize, 'x'); }), HasSubstr("64 MiB"));
}

TEST(Document, namesTheKeyOfAWrongValue)
{
    const struct {
        const char* name;
        std::string document;
        const char* error;
    } cases[] = {
        {"text for a number", edited("\"x\": 3", "\"x\": \"3\""), "items[1].x: expected a number"},
        {"null for a number", edited("\"x\": 3", "\"x\": null"), "items[1].x: expected a number"},
        {"beyond all doubles", edited("\"x\": 3", "\"x\": -1e400"), "items[1].x: the number is too large"},
        {"number for a bool", edited("\"hidden\": true", "\"hidden\": 1"), "items[1].hidden: expected true or false"},
        {"number for a text", edited("\"secret\"", "5"), "encryptionPassword: expected a text"},
        {"fraction", edited("-9223372036854775808", "5.5"), "manualSizeMB: expected a whole number"},
        {"one beyond 64 bits", edited("-9223372036854775808", "9223372036854775808"),
         "manualSizeMB: the number is too large"},
        {"huge exponent", edited("-9223372036854775808", "1e300"), "manualSizeMB: the number is too large"},
        {"another case of a raw value", edited("\"ULFO\"", "\"ulfo\""),
         "format: expected one of \"UDZO\", \"ULFO\", \"UDRO\", \"UDRW\""},
        {"damaged UUID", edited("\"id\": \"", "\"id\": \"{"), "items[0].id: expected a UUID"},
        {"list of numbers", edited("\"items\": [", "\"items\": [7,"), "items[0]: expected an object"},
        {"object for a list", edited("\"textOverlays\": [", "\"textOverlays\": {}, \"unknown\": ["),
         "textOverlays: expected a list"},
        {"deep colour", edited("\"g\": 0,", "\"g\": [],", "shadowColor"),
         "textOverlays[0].shadowColor.g: expected a number"},
        {"missing key", edited("\"x\": 3", "\"X\": 3"), "items[1].x: the key is missing"},
        {"missing key of the project", edited("\"iconUsesTopLeftCoords\"", "\"other\""),
         "iconUsesTopLeftCoords: the key is missing"},
        {"key given twice", edited("\"x\": 3", "\"x\": 3, \"x\": 3"), "items[1].x: the key is given twice"},
        {"key given twice by an escape", edited("\"x\": 3", "\"x\": 3, \"\\u0078\": 3"),
         "items[1].x: the key is given twice"},
        {"a list", "[]", "the document: expected an object"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_THAT(errorOf(c.document), StartsWith(c.error));
    }
}

TEST(Document, takesWhatIsStrictlyTheSame)
{
    EXPECT_EQ(Document::decode(edited("-9223372036854775808", "5.0")).manualSizeMB, 5);
    EXPECT_EQ(Document::decode(edited("-9223372036854775808", "50e-1")).manualSizeMB, 5);
    EXPECT_EQ(Document::decode(edited("\"x\": 3", "\"x\" :\r\n\t3.0E+0")).items[1].x, 3);
    EXPECT_EQ(Document::decode(edited("\"x\": 3", "\"x\": 1e-400")).items[1].x, 0);
    EXPECT_EQ(Document::decode(edited("\"secret\"", R"("\u0041\uD83D\uDE00\/\b\f\r\t")")).encryptionPassword,
              "A\U0001F600/\b\f\r\t");
    const std::string unknown = R"({ "a future key": [{"x": 1, "x": null}, [], {}, "", true, false, -0.5e3],)";
    const std::string text = Document::encode(variedProject());
    EXPECT_EQ(Document::decode(unknown + text.substr(1)), Document::decode(text));
}

TEST(Document, refusesWhatIsNotJson)
{
    const std::string deep(100, '[');
    const struct {
        const char* name;
        std::string value; ///< of a key that the reader does not know
        const char* error;
    } cases[] = {
        {"nothing", "", "expected a value"},
        {"a word", "nil", "expected a value"},
        {"a capital", "True", "expected a value"},
        {"leading zero", "01", "expected a comma"},
        {"leading plus", "+1", "expected a value"},
        {"bare fraction", ".5", "expected a value"},
        {"open fraction", "5.", "expected a digit"},
        {"open exponent", "5e+", "expected a digit"},
        {"not a number", "NaN", "expected a value"},
        {"hexadecimal", "0x10", "expected a comma"},
        {"endless number", std::string(2000, '1'), "1000 characters"},
        {"single quotes", "'a'", "expected a value"},
        {"open text", "\"a", "control character"},
        {"line break in a text", "\"a\nb\"", "control character"},
        {"unknown escape", "\"\\x\"", "unknown escape"},
        {"short escape", "\"\\u12\"", "hexadecimal"},
        {"first half of a pair", "\"\\uD83D\"", "surrogate"},
        {"first half twice", "\"\\uD83D\\uD83D\"", "surrogate"},
        {"second half", "\"\\uDE00\"", "surrogate"},
        {"Latin-1", "\"\xE9\"", "UTF-8"},
        {"over-long slash", "\"\xC0\xAF\"", "UTF-8"},
        {"over-long in three", "\"\xE0\x80\xAF\"", "UTF-8"},
        {"surrogate in UTF-8", "\"\xED\xA0\x80\"", "UTF-8"},
        {"beyond Unicode", "\"\xF4\x90\x80\x80\"", "UTF-8"},
        {"cut sequence", "\"\xE2\x82\"", "UTF-8"},
        {"trailing comma in a list", "[1,]", "expected a value"},
        {"trailing comma in an object", "{\"a\":1,}", "expected a key"},
        {"key without quotes", "{a:1}", "expected a key"},
        {"no colon", "{\"a\" 1}", "expected a colon"},
        {"wrong bracket", "[1}", "expected a comma or ']'"},
        {"comment", "/* */ 1", "expected a value"},
        {"deep nesting", deep, "64 levels"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string error = errorOf("{\n  \"ü\": " + c.value + "\n}");
        EXPECT_THAT(error, HasSubstr(c.error));
        EXPECT_THAT(error, testing::MatchesRegex("line [23], column [0-9]+: .*"));
    }
    EXPECT_EQ(errorOf(""), "line 1, column 1: expected a value");
    EXPECT_EQ(errorOf("{\n\"ü\" 1"), "line 2, column 5: expected a colon");
    EXPECT_THAT(errorOf(Document::encode(DMGProject{}) + "{}"), HasSubstr("after the end"));
    EXPECT_THAT(errorOf(Document::encode(DMGProject{}) + '\0'), HasSubstr("after the end"));
}

TEST(Document, survivesEveryCut)
{
    const std::string text = Document::encode(variedProject());
    for (std::size_t length = 0; length + 1 < text.size(); ++length)
        ASSERT_NE(errorOf(text.substr(0, length)), "accepted") << length;
}

TEST(Document, isBoundedInSizeAndTime)
{
    EXPECT_THAT(errorOf(std::string(Document::maximumSize + 1, ' ')), HasSubstr("64 MiB"));
    // Millions of small values in a place that the reader passes over.
    std::string many = "{\"unknown\": [";
    many.resize(Document::maximumSize / 8, '0');
    for (std::size_t i = 14; i < many.size(); i += 2)
        many[i] = ',';
    EXPECT_THAT(errorOf(many), HasSubstr("expected a comma or ']'"));
}

} // namespace
} // namespace velmora
