#include "render/font_names.h"
#include "render/fonts.h"

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

TEST(PostScriptName, isThatOfTheFaceAndLeadsBackToIt)
{
    for (const char* name : {"TeXGyreHeros-Regular", "TeXGyreHeros-BoldItalic"})
        EXPECT_EQ(postScriptName(Fonts::resolve(name).font), name);
}

TEST(PostScriptName, survivesADamagedTable)
{
    using namespace std::string_literals;
    const std::string header = "\0\0\0\1\0\x12"s; // one record, texts at 18
    const auto record = [](const char* platform, const std::string& lengthAndOffset) {
        return "\0"s + platform + "\0\1\0\0\0\6"s + lengthAndOffset;
    };
    const std::string whole = header + record("\1", "\0\3\0\0"s) + "Abc";
    EXPECT_EQ(postScriptNameFromTable(whole), "Abc");
    EXPECT_EQ(postScriptNameFromTable(header + record("\3", "\0\6\0\0"s) + "\0A\0b\0c"s), "Abc");
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(postScriptNameFromTable(whole.substr(0, length))) << length;
    EXPECT_FALSE(postScriptNameFromTable(header + record("\1", "\xFF\xFF\xFF\xFF"s) + "Abc"));
    EXPECT_FALSE(postScriptNameFromTable(header + record("\1", "\0\3\0\0"s) + "A c"));
    EXPECT_FALSE(postScriptNameFromTable("\0\0\xFF\xFF\0\6"s));
}

} // namespace
} // namespace velmora
