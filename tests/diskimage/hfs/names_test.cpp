#include "diskimage/hfs/names.h"

#include "diskimage/base/error.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::diskimage::hfs
{

TEST(Names, areStoredDecomposedAsMacOsDoes)
{
    using namespace std::string_view_literals;
    const struct {
        const char* name;
        std::string given;
        std::u16string_view stored;
    } cases[] = {
        {"e acute", "\u00E9", u"\u0065\u0301"sv},
        {"A ring", "\u00C5", u"\u0041\u030A"sv},
        {"Angstrom sign stays", "\u212B", u"\u212B"sv},
        {"two marks", "\u01D5", u"\u0055\u0308\u0304"sv},
        {"marks in canonical order", "\u1E69", u"\u0073\u0323\u0307"sv},
        {"Greek with iota subscript", "\u1F80", u"\u03B1\u0313\u0345"sv},
        {"short I", "\u0419", u"\u0418\u0306"sv},
        {"marks to be reordered", "q\u0307\u0323", u"\u0071\u0323\u0307"sv},
        {"marks of one class keep their order", "q\u0307\u0301", u"\u0071\u0307\u0301"sv},
        {"a mark that is two", "x\u0344", u"x\u0308\u0301"sv},
        {"Hangul with final", "\uAC01", u"\u1100\u1161\u11A8"sv},
        {"Hangul HAN", "\uD55C", u"\u1112\u1161\u11AB"sv},
        {"Hangul without final", "\uAC00", u"\u1100\u1161"sv},
        {"ligature stays", "\uFB01", u"\uFB01"sv},
        {"Hebrew presentation form", "\uFB1D", u"\u05D9\u05B4"sv},
        {"compatibility ideograph stays", "\uF900", u"\uF900"sv},
        {"newer than the rule", "\u1B06", u"\u1B06"sv},
        {"supplementary stays", "\U0001D15E", u"\U0001D15E"sv},
        {"colon", "a:b", u"a/b"sv},
        {"symbol for NUL", "\u2400", u"\0"sv},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(storedName(row.given), row.stored);
    }
}

/// The number of characters that macOS decomposes: no more and no fewer.
TEST(Names, decomposeExactlyTheCharactersOfUnicode32)
{
    int single = 0;
    int hangul = 0;
    for (char16_t c = 0x80; c < 0xFFFF; ++c) {
        if (c >= 0xD800 && c < 0xE000) {
            continue;
        }
        // Two letters around it keep the marks of the decomposition where they are.
        const auto stored = storedName("a" + posixName(std::u16string(1, c)) + "a");
        const bool isChanged = stored != std::u16string{u'a', c == 0x2400 ? u'\0' : c, u'a'};
        (c >= 0xAC00 && c <= 0xD7A3 ? hangul : single) += isChanged ? 1 : 0;
    }
    EXPECT_EQ(single, 970);
    EXPECT_EQ(hangul, 11172);
}

TEST(Names, comeBackAsGiven)
{
    using namespace std::string_view_literals;
    EXPECT_EQ(posixName(u"a/b"), "a:b");
    EXPECT_EQ(posixName(u"\0x"sv), "\u2400x");
    EXPECT_EQ(posixName(u"e\u0301\U0001F34E"), "e\u0301\U0001F34E");
    EXPECT_EQ(posixName(std::u16string{u'a', 0xD800}), "a\uFFFD");
    EXPECT_EQ(posixName(std::u16string{0xDC00, 0xD83C, 0xDF4E}), "\uFFFD\U0001F34E");
}

TEST(Names, thatNoVolumeCanHoldAreRefused)
{
    const struct {
        const char* name;
        std::string given;
        const char* says;
    } cases[] = {{"empty", "", "empty"},
                 {"dot", ".", "reserved"},
                 {"two dots", "..", "reserved"},
                 {"slash", "a/b", "slash"},
                 {"NUL", std::string("a\0b", 3), "NUL"},
                 {"broken UTF-8", "a\xFF", "UTF-8"},
                 {"surrogate in UTF-8", "\xED\xA0\x80", "UTF-8"},
                 {"256 units", std::string(256, 'x'), "too long"},
                 {"256 units after decomposition", std::string(254, 'x') + "\u00E9", "too long"},
                 {"megabytes of marks",
                  [] {
                      std::string marks;
                      for (int i = 0; i < 1000000; ++i) {
                          marks += i % 2 == 0 ? "\u0301" : "\u0323";
                      }
                      return marks;
                  }(),
                  "too long"}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        try {
            (void)storedName(row.given);
            ADD_FAILURE() << "accepted";
        } catch (const DiskImageError& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(row.says));
        }
    }
    EXPECT_EQ(storedName(std::string(253, 'x') + "\u00E9").size(), 255U);
}

TEST(Names, sortAsTheCatalogWantsThem)
{
    const std::string nul = "\u2400x";
    const std::vector<std::string> folding{"-",
                                           ".background",
                                           ".DS_Store",
                                           "10",
                                           "9",
                                           "[x",
                                           "_",
                                           "a",
                                           "a b",
                                           "A1",
                                           "a2",
                                           "a\u200Db2",
                                           "B",
                                           "e",
                                           "\u00E9",
                                           "f",
                                           "\u00FF",
                                           "Z",
                                           "z2",
                                           "{",
                                           "~",
                                           "\u00F8",
                                           "\u00D8"
                                           "1",
                                           "\u03A9",
                                           "\u0416",
                                           "\u0436"
                                           "1",
                                           "\u2160",
                                           "\u65E5\u672C",
                                           "\uFF21",
                                           nul};
    const std::vector<std::string> binary{nul,
                                          "-",
                                          ".DS_Store",
                                          ".background",
                                          "10",
                                          "9",
                                          "A1",
                                          "B",
                                          "Z",
                                          "[x",
                                          "_",
                                          "a",
                                          "a b",
                                          "a2",
                                          "a\u200Db2",
                                          "e",
                                          "\u00E9",
                                          "f",
                                          "\u00FF",
                                          "z2",
                                          "{",
                                          "~",
                                          "\u00D8"
                                          "1",
                                          "\u00F8",
                                          "\u03A9",
                                          "\u0416",
                                          "\u0436"
                                          "1",
                                          "\u2160",
                                          "\u65E5\u672C",
                                          "\uFF21"};
    const auto check = [](const std::vector<std::string>& names, NameOrder order) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            for (std::size_t k = 0; k < names.size(); ++k) {
                SCOPED_TRACE(names[i] + " and " + names[k]);
                EXPECT_EQ(compareNames(storedName(names[i]), storedName(names[k]), order), i < k ? -1 : i > k ? 1 : 0);
            }
        }
    };
    check(folding, NameOrder::caseFolding);
    check(binary, NameOrder::binary);
}

TEST(Names, areEqualOnlyByTheFoldingOfTheFormat)
{
    const struct {
        std::string a;
        std::string b;
        bool isEqual;
    } cases[] = {{"README", "readme", true},
                 {"ab", "a\u200Db", true},
                 {"\u2163", "\u2173", true},
                 {"\u00C9", "\u00E9", true},
                 {"\u0410\u0401", "\u0430\u0451", true},
                 {"\u04BE", "\u04BF", true},
                 {"\u01C4", "\u01C6", true},
                 {"\u00DF", "ss", false},
                 {"\u0130", "i", false},
                 {"\u017F", "s", false},
                 {"\u04C0", "\u04CF", false}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.a + " and " + row.b);
        EXPECT_EQ(compareNames(storedName(row.a), storedName(row.b)) == 0, row.isEqual);
        EXPECT_NE(compareNames(storedName(row.a), storedName(row.b), NameOrder::binary), 0);
    }
}

} // namespace velmora::diskimage::hfs
