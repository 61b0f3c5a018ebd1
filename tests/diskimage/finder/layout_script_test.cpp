#include "diskimage/finder/layout_script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::diskimage::finder
{
namespace
{

using testing::HasSubstr;
using testing::StartsWith;

const char* const begin = "tell application \"Finder\"\n"
                          "    tell disk \"My App\"\n";
const char* const end = "    end tell\n"
                        "end tell";
const char* const options = "set theViewOptions to the icon view options of container window\n";

/// A script with these statements, the first one in line 3.
std::string scriptOf(const std::string& statements)
{
    return begin + statements + "\n" + end;
}

WindowLayout layoutOf(const std::string& statements)
{
    return parseLayoutScript(scriptOf(statements)).layout;
}

std::string errorOf(const std::string& script)
{
    try {
        parseLayoutScript(script);
    } catch (const LayoutScriptError& error) {
        EXPECT_THAT(error.what(), StartsWith("line " + std::to_string(error.line()) + ": "));
        return error.what();
    }
    return {};
}

const char* const wholeScript = R"(tell application "Finder"
    tell disk "My App 1"
        open
        set current view of container window to icon view
        set toolbar visible of container window to false
        set statusbar visible of container window to false
        set sidebar width of container window to 180
        set the bounds of container window to {200, 120, 840, 540}
        set theViewOptions to the icon view options of container window
        set arrangement of theViewOptions to not arranged
        set icon size of theViewOptions to 96
        set text size of theViewOptions to 12
        set label position of theViewOptions to right
        set shows icon preview of theViewOptions to true
        set shows item info of theViewOptions to false
            set background picture of theViewOptions to file ".background:background.tiff"
            set position of item "My App.app" of container window to {170, 206}
    set position of item "Applications" of container window to {-470, 206}

        close
        open
        update without registering applications
        delay 1
    end tell
end tell)";

TEST(LayoutScript, isTakenApart)
{
    const LayoutScript script = parseLayoutScript(wholeScript);
    EXPECT_EQ(script.diskName, "My App 1");
    const WindowLayout expected{.left = 200,
                                .top = 120,
                                .right = 840,
                                .bottom = 540,
                                .sidebarWidth = 180,
                                .iconSize = 96,
                                .textSize = 12,
                                .labelOnBottom = false,
                                .showIconPreview = true,
                                .backgroundPath = "/.background/background.tiff",
                                .positions = {{"My App.app", 170, 206}, {"Applications", -470, 206}}};
    EXPECT_EQ(script.layout, expected);
    std::vector<ScriptObject> objects;
    for (const LayoutStatement& statement : script.statements) {
        if (statement.object)
            objects.push_back(*statement.object);
    }
    EXPECT_EQ(objects, (std::vector<ScriptObject>{
                           {ScriptObject::Kind::picture, "/.background/background.tiff", 16},
                           {ScriptObject::Kind::item, "My App.app", 17},
                           {ScriptObject::Kind::item, "Applications", 18},
                       }));
}

TEST(LayoutScript, keepsWhatWasSetBeforeAnObjectIsMissing)
{
    const LayoutScript script = parseLayoutScript(wholeScript);
    const LayoutRun run =
        runLayoutScript(script, [](const ScriptObject& object) { return object.name != "My App.app"; });
    ASSERT_TRUE(run.missing);
    EXPECT_EQ(*run.missing, (ScriptObject{ScriptObject::Kind::item, "My App.app", 17}));
    EXPECT_EQ(run.layout.backgroundPath, "/.background/background.tiff");
    EXPECT_EQ(run.layout.iconSize, 96);
    EXPECT_TRUE(run.layout.positions.empty());
    EXPECT_EQ(runLayoutScript(script, [](const ScriptObject&) { return true; }).missing, std::nullopt);
}

TEST(LayoutScript, takesTheLastValue)
{
    const std::string place = "set position of item \"%\" of container window to ";
    const auto placing = [&](std::string name, const std::string& point) {
        return std::string(place).replace(place.find('%'), 1, name) + point + "\n";
    };
    const WindowLayout layout =
        layoutOf("set sidebar width of container window to 1\nset sidebar width of container window to 2\n" +
                 placing("a", "{1, 2}") + placing("b", "{3, 4}") + placing("A", "{5, 6}"));
    EXPECT_EQ(layout.sidebarWidth, 2);
    EXPECT_EQ(layout.positions, (std::vector<ItemPosition>{{"A", 5, 6}, {"b", 3, 4}})); // a and A are one item
}

TEST(LayoutScript, doesNotMindWhiteSpace)
{
    const std::string script = "\r\n\ttell   application \"Finder\"\r\n\r\ntell disk \"D\"\r  open\t\r\n"
                               "set the bounds of container window to{1 ,2,  3,4}\rend tell\nend  tell\n\n \n";
    const LayoutScript parsed = parseLayoutScript(script);
    EXPECT_EQ(parsed.layout.bottom, 4);
    EXPECT_EQ(parsed.statements.size(), 2u);
}

TEST(LayoutScript, resolvesEscapesAndSeparators)
{
    const struct {
        const char* written;
        const char* name;
    } items[] = {
        {R"(say \"hi\")", "say \"hi\""},    {R"(back\\slash)", "back\\slash"}, {R"(a\tb\nc\rd)", "a\tb\nc\rd"},
        {"two\nlines", "two\nlines"},       {"either/or", "either:or"},        {"Zoé 日本", "Zoé 日本"},
        {"-- no comment", "-- no comment"},
    };
    for (const auto& item : items) {
        SCOPED_TRACE(item.written);
        const auto layout =
            layoutOf("set position of item \"" + std::string(item.written) + "\" of container window to {1, 2}");
        ASSERT_EQ(layout.positions.size(), 1u);
        EXPECT_EQ(layout.positions[0].name, item.name);
    }
    EXPECT_EQ(parseLayoutScript("tell application \"Finder\"\ntell disk \"a\\\"b\"\nend tell\nend tell").diskName,
              "a\"b");
    EXPECT_EQ(layoutOf(options + std::string("set background picture of theViewOptions to file \"a/b:c d:e.png\"")),
              (WindowLayout{.backgroundPath = "/a:b/c d/e.png"}));
}

TEST(LayoutScript, countsLinesAcrossStrings)
{
    EXPECT_THAT(errorOf(scriptOf("set position of item \"a\nb\" of container window to {1, 2}\nbeep")),
                StartsWith("line 5: this is no statement of a window's layout: beep"));
}

TEST(LayoutScript, refusesEverythingElse)
{
    const std::string opt = options;
    const struct {
        const char* name;
        std::string script;
        const char* message;
    } cases[] = {
        {"nothing", "", "line 1: the script ends where this is due"},
        {"another program", "tell application \"Mail\"\nend tell", "line 1: the script must begin with"},
        {"another disk's kind", "tell application \"Finder\"\ntell window \"x\"\nend tell\nend tell", "line 2: a disk"},
        {"no disk name", "tell application \"Finder\"\ntell disk \"\"\nend tell\nend tell", "line 2: the disk's name"},
        {"statement before the disk", "tell application \"Finder\"\nopen\nend tell", "line 2: a disk must be chosen"},
        {"statement after the disk", std::string(begin) + "end tell\nopen\nend tell", "line 4: a statement stands"},
        {"a second disk", std::string(begin) + "end tell\ntell disk \"E\"\nend tell\nend tell", "line 4: a statement"},
        {"a disk inside", scriptOf("tell disk \"E\""), "line 3: this is no statement"},
        {"no end", std::string(begin) + "open\n", "line 3: the script ends where this is due: end tell"},
        {"one end", std::string(begin) + "open\nend tell\n", "line 4: the script ends where this is due"},
        {"more after the end", scriptOf("open") + "\nopen", "line 6: something follows"},
        {"unknown statement", scriptOf("do shell script \"rm\""), "line 3: this is no statement"},
        {"comment", scriptOf("open -- now"), "line 3: \"-\" is not a whole number"},
        {"capital", scriptOf("Open"), "line 3: this is no statement"},
        {"words run together", scriptOf("delay1"), "line 3: this is no statement"},
        {"one word more", scriptOf("open it"), "line 3: this is no statement"},
        {"one word less", scriptOf("set current view of container window to icon"), "line 3: this is no statement"},
        {"two on a line", scriptOf("open close"), "line 3: this is no statement"},
        {"a string for a word", scriptOf("\"open\""), "line 3: this is no statement"},
        {"another value", scriptOf("set toolbar visible of container window to maybe"), "line 3: this is no statement"},
        {"options not set", scriptOf("set icon size of theViewOptions to 9"), "line 3: theViewOptions is used"},
        {"size 0", scriptOf(opt + "set icon size of theViewOptions to 0"), "line 4: a size must be"},
        {"fraction", scriptOf(opt + "set icon size of theViewOptions to 9.5"), "line 4: unexpected \".\""},
        {"number too large", scriptOf("set sidebar width of container window to 2147483648"), "out of range"},
        {"number too small", scriptOf("set the bounds of container window to {-2147483649, 0, 1, 1}"), "out of range"},
        {"negative sidebar", scriptOf("set sidebar width of container window to -1"), "must not be negative"},
        {"empty bounds", scriptOf("set the bounds of container window to {5, 0, 5, 9}"), "enclose nothing"},
        {"three bounds", scriptOf("set the bounds of container window to {5, 0, 9}"), "line 3: this is no statement"},
        {"letters in a number", scriptOf("delay 1s"), "\"1s\" is not a whole number"},
        {"escape", scriptOf("set position of item \"a\\qb\" of container window to {1, 2}"), "no escape"},
        {"string without end", scriptOf("set position of item \"a"), "line 3: the text that begins here has no end"},
        {"backslash at the end", "tell application \"Finder\\", "no escape"},
        {"item without name", scriptOf("set position of item \"\" of container window to {1, 2}"), "line 3: "},
        {"empty folder", scriptOf(opt + "set background picture of theViewOptions to file \":a\""), "line 4: "},
        {"no file", scriptOf(opt + "set background picture of theViewOptions to file \"a:\""), "line 4: "},
        {"folder above", scriptOf(opt + "set background picture of theViewOptions to file \"..:a\""), "line 4: "},
        {"invalid UTF-8", scriptOf("set position of item \"\xFF\" of container window to {1, 2}"), "line 3: "},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        EXPECT_THAT(errorOf(row.script), HasSubstr(row.message));
    }
}

TEST(LayoutScript, placesThousandsOfItems)
{
    std::string statements;
    for (int i = 0; i < 3000; ++i)
        statements += "set position of item \"Item " + std::to_string(i) + "\" of container window to {1, 2}\n";
    EXPECT_EQ(layoutOf(statements).positions.size(), 3000u);
}

} // namespace
} // namespace velmora::diskimage::finder
