#include "update/version_order.h"

#include <gtest/gtest.h>

#include <string>

namespace velmora
{
namespace
{

TEST(VersionOrder, comparesNumbersByValueAndTheRestByCodeUnit)
{
    const std::u16string nines(400, u'9');
    const struct {
        const char* name;
        std::u16string earlier;
        std::u16string later;
    } cases[] = {
        {"next patch", u"1.0.27", u"1.0.28"},
        {"by value, not by text", u"1.0.27", u"1.0.100"},
        {"the first difference decides", u"1.0.27", u"1.1"},
        {"a longer text after an equal beginning", u"1.0.27", u"1.0.27.1"},
        {"anything after nothing", u"", u"0"},
        {"beyond every integer type", nines, u"1" + nines},
        {"beyond every integer type, same length", u"1" + nines, u"2" + nines},
        {"leading zeros do not count", u"1.009", u"1.10"},
        {"zeros alone are zero", u"1.000", u"1.1"},
        {"the rest after equal numbers", u"1.07a", u"1.7b"},
        {"capitals before small letters", u"1.0B", u"1.0a"},
        {"a digit against a letter", u"1.0.9", u"1.0.a"},
        {"other scripts' digits are characters", u"1.\u0661\u0660", u"1.\u0662"},
        {"surrogates by code unit", u"\U0001F600", u"\uFF01"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_TRUE(compareVersions(c.earlier, c.later) < 0);
        EXPECT_TRUE(compareVersions(c.later, c.earlier) > 0);
    }
    EXPECT_TRUE(compareVersions(u"1.0.27", u"1.0.27") == 0);
    EXPECT_TRUE(compareVersions(u"01.000", u"1.0") == 0);
    EXPECT_TRUE(compareVersions(u"", u"") == 0);
}

} // namespace
} // namespace velmora
