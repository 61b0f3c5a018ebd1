#include "diskimage/base/error.h"
#include "diskimage/base/property_list.h"
#include "diskimage/base/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>

namespace velmora::diskimage
{
namespace
{

using testing::HasSubstr;

/// A binary property list of given objects and references of one byte.
Bytes binary(const std::vector<Bytes>& objects)
{
    Bytes out = {'b', 'p', 'l', 'i', 's', 't', '0', '0'};
    Bytes table;
    for (const Bytes& object : objects) {
        table.push_back(static_cast<std::uint8_t>(out.size()));
        append(out, object);
    }
    const std::size_t tableOffset = out.size();
    append(out, table);
    append(out, Bytes{0, 0, 0, 0, 0, 0, 1, 1});
    appendBE64(out, objects.size());
    appendBE64(out, 0);
    appendBE64(out, tableOffset);
    return out;
}

/// An array of `count` references to one object.
Bytes repeating(std::uint32_t count, const Bytes& object)
{
    Bytes list = {'b', 'p', 'l', 'i', 's', 't', '0', '0', 0xAF, 0x12};
    appendBE32(list, count);
    list.insert(list.end(), count, 1);
    const std::size_t place = list.size();
    append(list, object);
    const std::size_t table = list.size();
    appendBE32(list, 8);
    appendBE32(list, static_cast<std::uint32_t>(place));
    append(list, Bytes{0, 0, 0, 0, 0, 0, 4, 1});
    for (const std::size_t value : {std::size_t{2}, std::size_t{0}, table})
        appendBE64(list, value);
    return list;
}

Plist xml(const std::string& body)
{
    return readPlist(viewOf("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body + "</plist>"));
}

std::string errorOf(ByteView bytes)
{
    try {
        (void)readPlist(bytes);
    } catch (const DiskImageError& error) {
        return error.what();
    }
    return {};
}

Plist::Dict scalars()
{
    return {{"yes", true},
            {"no", false},
            {"zero", 0},
            {"one byte", 255},
            {"two bytes", 256},
            {"four bytes", 65536},
            {"eight bytes", 4294967296},
            {"negative", -1},
            {"least", std::numeric_limits<std::int64_t>::min()},
            {"whole real", 1.0},
            {"real", -0.1},
            {"tiny", 5e-324},
            {"empty", ""},
            {"text", "fourteen chars"},
            {"longer", "fifteen letters"},
            {"Zoé", "日本 𝄞"},
            {"data", Bytes{0, 255, 128}},
            {"long data", Bytes(300, 7)}};
}

TEST(BinaryPropertyList, comesBackAsItWas)
{
    EXPECT_EQ(readPlist(writeBinaryPlist(scalars())), Plist(scalars()));
    EXPECT_EQ(readPlist(writeBinaryPlist({})), Plist(Plist::Dict{}));
    // So many objects, and so long, that references need two bytes and offsets four.
    Plist::Dict large;
    for (int i = 0; i < 300; ++i)
        large["key " + std::to_string(i)] = std::string(400, 'x') + std::to_string(i);
    EXPECT_EQ(readPlist(writeBinaryPlist(large)), Plist(large));
}

TEST(BinaryPropertyList, sharesEqualObjectsOfOneType)
{
    const Bytes list = writeBinaryPlist({{"a", 1}, {"b", 1.0}, {"c", true}, {"d", 1}, {"e", "a"}});
    EXPECT_EQ(getBE64(list.data() + list.size() - 24), 9u); // the dictionary, five keys, 1, 1.0 and true
    EXPECT_EQ(Bytes(list.begin() + 8, list.begin() + 19), (Bytes{0xD5, 1, 2, 3, 4, 5, 6, 7, 8, 6, 1}));
}

TEST(BinaryPropertyList, isWrittenForScalarsOnly)
{
    EXPECT_THROW(writeBinaryPlist({{"a", Plist::Array{}}}), DiskImageError);
    EXPECT_THROW(writeBinaryPlist({{"a", Plist::Dict{}}}), DiskImageError);
    EXPECT_THROW(writeBinaryPlist({{"a", Plist()}}), DiskImageError);
    for (const char* invalid :
         {"\x80", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "a\xFFz", "\xE2\x28\xA1"})
        EXPECT_THROW(writeBinaryPlist({{"a", invalid}}), DiskImageError);
}

TEST(BinaryPropertyList, isReadInEveryForm)
{
    const struct {
        const char* name;
        std::vector<Bytes> objects;
        Plist value;
    } cases[] = {
        {"integer of 16 bytes", {{0x14, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}}, 1},
        {"negative one",
         {Bytes{0x14, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 254}},
         -2},
        {"real of 4 bytes", {{0x22, 0x3F, 0xC0, 0, 0}}, 1.5},
        {"date", {{0x33, 0x41, 0xC5, 0xC8, 0x58, 0xB8, 0x00, 0x00, 0x00}}, "2024-02-29T12:34:56Z"},
        {"earlier date", {{0x33, 0xBF, 0xF0, 0, 0, 0, 0, 0, 0}}, "2000-12-31T23:59:59Z"},
        {"object number", {{0x81, 1, 2}}, 258},
        {"array", {{0xA2, 1, 1}, {0x09}}, Plist::Array{true, true}},
        {"set", {{0xC1, 1}, {0x08}}, Plist::Array{false}},
        {"nested", {{0xA1, 1}, {0xD1, 2, 3}, {0x51, 'k'}, {0x00}}, Plist::Array{Plist::Dict{{"k", Plist()}}}},
        {"long length", {{0x5F, 0x11, 0, 2, 'a', 'b'}}, "ab"},
        {"unpaired surrogate",
         {{0x62, 0xD8, 0, 0, 'a'}},
         "\xEF\xBF\xBD"
         "a"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(readPlist(binary(row.objects)), row.value);
    }
}

TEST(BinaryPropertyList, endsInAnErrorForHostileObjects)
{
    const struct {
        const char* name;
        std::vector<Bytes> objects;
        const char* message;
    } cases[] = {
        {"contains itself", {{0xA1, 0}}, "nested too deeply"},
        {"two contain each other", {{0xA1, 1}, {0xD1, 2, 0}, {0x51, 'k'}}, "nested too deeply"},
        {"reference beyond the objects", {{0xA1, 1}}, "names no object"},
        {"text beyond the end", {{0x5E, 'a'}}, "beyond the end"},
        {"wide text beyond the end", {{0x6F, 0x13, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}}, "unfolds"},
        {"huge data", {{0x4F, 0x12, 0x7F, 0xFF, 0xFF, 0xFF}}, "unfolds"},
        {"huge array", {{0xAF, 0x11, 0xFF, 0xFF}}, "beyond the end"},
        {"huge dictionary", {{0xDF, 0x11, 0x80, 0x00}}, "beyond the end"},
        {"length is a text", {{0x5F, 0x51, 'a'}}, "not an integer"},
        {"key is a number", {{0xD1, 1, 1}, {0x10, 1}}, "a key is not a text"},
        {"integer too large", {{0x14, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0}}, "too large"},
        {"wide integer", {{0x15}}, "impossible width"},
        {"no ASCII", {{0x51, 0x80}}, "not ASCII"},
        {"date that is none", {{0x33, 0x7F, 0xF8, 0, 0, 0, 0, 0, 0}}, "out of range"},
        {"unknown kind", {{0x70}}, "unknown kind"},
        {"unknown simple kind", {{0x0F}}, "unknown kind"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        EXPECT_THAT(errorOf(binary(row.objects)), HasSubstr(row.message));
    }
}

TEST(BinaryPropertyList, doesNotUnfoldWithoutEnd)
{
    // Each array holds the next one sixteen times; and one holds a long text very often.
    std::vector<Bytes> bomb;
    for (std::uint8_t i = 0; i < 12; ++i) {
        Bytes array{0xAF, 0x10, 16};
        array.insert(array.end(), 16, static_cast<std::uint8_t>(i + 1));
        bomb.push_back(array);
    }
    bomb.push_back({0x09});
    // Twelve arrays need offsets of a byte: they just fit.
    EXPECT_THAT(errorOf(binary(bomb)), HasSubstr("unfolds"));

    Bytes text{0x5F, 0x12, 0, 1, 0, 0};
    text.insert(text.end(), 65536, 'x');
    EXPECT_THAT(errorOf(repeating(65536, text)), HasSubstr("unfolds"));
    // A value takes far more memory than the byte that refers to it.
    EXPECT_THAT(errorOf(repeating(4'000'000, {0x09})), HasSubstr("unfolds"));
    EXPECT_EQ(errorOf(repeating(500'000, {0x09})), "");
}

TEST(BinaryPropertyList, survivesAnyDamage)
{
    const Bytes good = writeBinaryPlist(scalars());
    for (std::size_t length = 0; length < good.size(); ++length)
        EXPECT_NE(errorOf(ByteView(good).first(length)), "") << length;
    for (std::size_t offset = good.size() - 32; offset < good.size(); ++offset) {
        for (const unsigned value : {0u, 1u, 9u, 127u, 255u}) {
            Bytes bad = good;
            bad[offset] = static_cast<std::uint8_t>(value);
            errorOf(bad);
        }
    }
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        Bytes bad = good;
        for (int flips = 0; flips < 3; ++flips)
            bad[8 + random() % (bad.size() - 8)] = static_cast<std::uint8_t>(random());
        errorOf(bad);
    }
}

TEST(XmlPropertyList, comesBackAsItWas)
{
    Plist::Dict nested = scalars();
    nested["text"] = " <&>\"'\n\t\r ]]> ";
    nested["spaces"] = "  ";
    nested["array"] = Plist::Array{1, "two", Plist::Array{}, Plist::Dict{{"three", 3.0}}};
    nested["infinite"] = -std::numeric_limits<double>::infinity();
    EXPECT_EQ(readPlist(viewOf(writeXmlPlist(nested))), Plist(nested));
}

TEST(XmlPropertyList, isIndentedAsUsual)
{
    const Plist list =
        Plist::Dict{{"a", Plist::Array{Plist(Plist::Dict{{"Data", Bytes(40)}, {"x", true}})}}, {"b", ""}};
    EXPECT_EQ(writeXmlPlist(list), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                   "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                   "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                                   "<plist version=\"1.0\">\n"
                                   "<dict>\n"
                                   "\t<key>a</key>\n"
                                   "\t<array>\n"
                                   "\t\t<dict>\n"
                                   "\t\t\t<key>Data</key>\n"
                                   "\t\t\t<data>\n"
                                   "\t\t\tAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA\n"
                                   "\t\t\tAA==\n"
                                   "\t\t\t</data>\n"
                                   "\t\t\t<key>x</key>\n"
                                   "\t\t\t<true/>\n"
                                   "\t\t</dict>\n"
                                   "\t</array>\n"
                                   "\t<key>b</key>\n"
                                   "\t<string></string>\n"
                                   "</dict>\n"
                                   "</plist>\n");
}

TEST(XmlPropertyList, isReadInEveryForm)
{
    EXPECT_EQ(xml("<string>a&amp;b&#233;<![CDATA[<c>]]></string>"), "a&bé<c>");
    EXPECT_EQ(xml("<integer> +0x1F </integer>"), 31);
    EXPECT_EQ(xml("<integer>-9223372036854775808</integer>"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(xml("<real>1e3</real>"), 1000.0);
    EXPECT_TRUE(std::isnan(*xml("<real>nan</real>").as<double>()));
    EXPECT_EQ(xml("<data>\n\tQUJ\n\tD </data>"), (Bytes{'A', 'B', 'C'}));
    EXPECT_EQ(xml("<data>QQ==</data>"), (Bytes{'A'}));
    EXPECT_EQ(xml("<data/>"), Bytes());
    EXPECT_EQ(xml("<!-- a --><date>2024-01-01T00:00:00Z</date>"), "2024-01-01T00:00:00Z");
    EXPECT_EQ(xml("<dict><key>a</key><!-- b --><true></true></dict>"), (Plist::Dict{{"a", true}}));
    // Entities that a document defines for itself mean nothing.
    const Plist list = readPlist(viewOf("<!DOCTYPE plist [<!ENTITY a \"bb\"><!ENTITY f SYSTEM \"file:///etc/passwd\">]>"
                                        "<plist><string>&a;&f;</string></plist>"));
    EXPECT_EQ(list, "&a;&f;");
}

TEST(XmlPropertyList, endsInAnErrorForAnythingElse)
{
    const struct {
        const char* name;
        std::string body;
        const char* message;
    } cases[] = {
        {"nothing", "", "must hold one value"},
        {"two values", "<true/><true/>", "must hold one value"},
        {"unknown element", "<number>1</number>", "<number>"},
        {"key without value", "<dict><key>a</key></dict>", "without a value"},
        {"value without key", "<dict><true/><true/></dict>", "a <key> is due"},
        {"text among elements", "<array>x<true/></array>", "text between"},
        {"element in a text", "<string>a<b/></string>", "holds another element"},
        {"integer too large", "<integer>9223372036854775808</integer>", "not an integer"},
        {"integer with a fraction", "<integer>1.5</integer>", "not an integer"},
        {"empty integer", "<integer> </integer>", "not an integer"},
        {"sign alone", "<integer>-</integer>", "not an integer"},
        {"no number", "<real>1,5</real>", "not a number"},
        {"empty number", "<real/>", "not a number"},
        {"foreign character", "<data>QUJ*</data>", "holds \"*\""},
        {"data after the end", "<data>QQ==QUJD</data>", "holds \"Q\""},
        {"padding too early", "<data>Q===</data>", "holds \"=\""},
        {"cut data", "<data>QUJDR</data>", "cut off"},
        {"stray bits", "<data>QR==</data>", "stray bits"},
        {"invalid UTF-8", "<string>\xFF</string>", "UTF-8"},
        {"unclosed", "<dict>", "damaged"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        EXPECT_THAT(errorOf(viewOf("<plist>" + row.body + "</plist>")), HasSubstr(row.message));
    }
    for (const char* document : {"", "bplist", "<html/>", "\xFF\xFE", "no XML at all"})
        EXPECT_NE(errorOf(viewOf(document)), "") << document;
    std::string deep;
    for (int i = 0; i < 200000; ++i)
        deep += "<array>";
    EXPECT_NE(errorOf(viewOf("<plist>" + deep + "</plist>")), "");
    std::string closed = deep;
    for (int i = 0; i < 200000; ++i)
        closed += "</array>";
    EXPECT_THAT(errorOf(viewOf("<plist>" + closed + "</plist>")), HasSubstr("nested too deeply"));
    std::string crowded;
    for (int i = 0; i < 2'000'000; ++i)
        crowded += "<a/>";
    EXPECT_THAT(errorOf(viewOf("<plist>" + crowded + "</plist>")), HasSubstr("far more elements"));
    EXPECT_THROW(writeXmlPlist("\x01"), DiskImageError);
    EXPECT_THROW(writeXmlPlist(Plist()), DiskImageError);
}

TEST(PropertyLists, areReadByPython)
{
    if (std::system("command -v python3 > /dev/null") != 0)
        GTEST_SKIP() << "python3 is not installed";
    const test::TemporaryFolder folder;
    const Bytes binaryForm = writeBinaryPlist(scalars());
    const std::string xmlForm = writeXmlPlist(scalars());
    std::ofstream(folder.path() / "binary", std::ios::binary) << textOf(binaryForm);
    std::ofstream(folder.path() / "xml", std::ios::binary) << xmlForm;
    std::ofstream(folder.path() / "check.py")
        << "import plistlib, sys\n"
           "expected = {'yes': True, 'no': False, 'zero': 0, 'one byte': 255,\n"
           "  'two bytes': 256, 'four bytes': 65536, 'eight bytes': 1 << 32,\n"
           "  'negative': -1, 'least': -(1 << 63), 'whole real': 1.0, 'real': -0.1,\n"
           "  'tiny': 5e-324, 'empty': '', 'text': 'fourteen chars',\n"
           "  'longer': 'fifteen letters', 'Zo\\u00e9': '\\u65e5\\u672c \\U0001d11e',\n"
           "  'data': bytes([0, 255, 128]), 'long data': bytes([7] * 300)}\n"
           "for name in ('binary', 'xml'):\n"
           "    found = plistlib.load(open(sys.argv[1] + '/' + name, 'rb'))\n"
           "    assert found == expected, (name, found)\n"
           "    assert all(type(found[k]) is type(expected[k]) for k in expected)\n";
    const std::string path = folder.path().string();
    EXPECT_EQ(std::system(("python3 " + path + "/check.py " + path).c_str()), 0);
}

} // namespace
} // namespace velmora::diskimage
