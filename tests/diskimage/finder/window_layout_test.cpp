#include "diskimage/base/error.h"
#include "diskimage/base/property_list.h"
#include "diskimage/finder/ds_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::diskimage::finder
{
namespace
{

using testing::HasSubstr;

AliasTarget picture(const std::string& volume = "Disk")
{
    return {volume, 1700000000, {".background", "picture.png"}, {20}, 21, 1700000001};
}

TEST(LayoutRecords, keepTheFrameFromTheBottomOfTheScreen)
{
    const struct {
        const char* name;
        std::int32_t left, top, right, bottom;
        const char* stored;
    } cases[] = {
        {"usual", 200, 120, 840, 540, "{{200, 360}, {640, 420}}"},
        {"bottom at the screen's end", 0, 500, 300, 900, "{{0, 0}, {300, 400}}"},
        {"below the screen", 10, 600, 310, 1200, "{{10, 0}, {300, 600}}"},
        {"left of the screen", -50, 100, 250, 400, "{{-50, 500}, {300, 300}}"},
        {"as wide as numbers go", -2147483647 - 1, 0, 2147483647, 10, "{{-2147483648, 890}, {4294967295, 10}}"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        const WindowLayout layout{.left = row.left, .top = row.top, .right = row.right, .bottom = row.bottom};
        const auto records = layoutRecords(layout, std::nullopt);
        EXPECT_EQ(*readPlist(records[0].data).find("WindowBounds"), row.stored);
    }
}

TEST(LayoutRecords, surviveTheirFile)
{
    const WindowLayout layout{.left = -5,
                              .top = 40,
                              .right = 700,
                              .bottom = 500,
                              .showToolbar = true,
                              .showStatusBar = true,
                              .sidebarWidth = 180,
                              .arrangeBy = "grid",
                              .iconSize = 128,
                              .textSize = 13,
                              .labelOnBottom = false,
                              .showIconPreview = true,
                              .showItemInfo = true,
                              .positions = {{"a:b", -10, 20}, {"Zoé", 300000, -2147483647 - 1}}};
    ReadLayout read = readLayout(readDsStore(writeDsStore(layoutRecords(layout, std::nullopt))));
    EXPECT_EQ(read.layout.positions.back().name, "Zoe\u0301"); // names come back as the volume stores them
    read.layout.positions.back().name = "Zoé";
    EXPECT_EQ(read.layout, layout);
    EXPECT_EQ(read.background, std::nullopt);
}

TEST(LayoutRecords, haveEveryKeyOfTheIconView)
{
    const auto keysOf = [](const std::vector<DsRecord>& records) {
        const Plist icons = readPlist(records[2].data);
        std::vector<std::string> keys;
        for (const auto& [key, value] : *icons.as<Plist::Dict>())
            keys.push_back(key);
        return keys;
    };
    EXPECT_EQ(keysOf(layoutRecords({}, std::nullopt)).size(), 14u);
    EXPECT_EQ(keysOf(layoutRecords({.backgroundPath = "/.background/picture.png"}, picture())).size(), 15u);
}

TEST(LayoutRecords, refuseAPictureThatTheyCannotReferTo)
{
    const WindowLayout layout{.backgroundPath = "/.background/picture.png"};
    EXPECT_THROW(layoutRecords(layout, std::nullopt), DiskImageError);
    EXPECT_NO_THROW(writeDsStore(layoutRecords(layout, picture(std::string(255, 'v')))));
    AliasTarget deep = picture();
    deep.path.insert(deep.path.begin(), 10, std::string(200, 'f'));
    deep.folderIds.insert(deep.folderIds.begin(), 10, 30);
    try {
        layoutRecords(layout, deep);
        FAIL() << "it should have failed";
    } catch (const DiskImageError& error) {
        EXPECT_THAT(error.what(), HasSubstr("too long"));
        EXPECT_THAT(error.what(), HasSubstr("picture.png"));
    }
}

TEST(ReadLayout, takesWhatOthersWrite)
{
    // Decimals, integers for reals, a sidebar that is not shown, records that mean nothing here.
    const Bytes window = writeBinaryPlist(
        {{"WindowBounds", "{{100.5, -20}, {600.25, 400}}"}, {"ShowSidebar", false}, {"SidebarWidth", 200}});
    const Bytes icons = writeBinaryPlist({{"iconSize", 64}, {"backgroundType", 1}, {"labelOnBottom", "yes"}});
    const ReadLayout read = readLayout({{u".", "bwsp", "blob", window},
                                        {u".", "icvp", "blob", icons},
                                        {u".", "pBBk", "blob", {1, 2, 3}},
                                        {u"short", "Iloc", "blob", {1, 2, 3}},
                                        {u"x", "Iloc", "blob", Bytes(16)}});
    EXPECT_EQ(read.layout.left, 100);
    EXPECT_EQ(read.layout.right, 700);
    EXPECT_EQ(read.layout.bottom, 920);
    EXPECT_EQ(read.layout.top, 520);
    EXPECT_EQ(read.layout.sidebarWidth, 0);
    EXPECT_EQ(read.layout.iconSize, 64);
    EXPECT_TRUE(read.layout.labelOnBottom);
    EXPECT_EQ(read.layout.positions, (std::vector<ItemPosition>{{"x", 0, 0}}));
}

TEST(ReadLayout, endsInAnErrorForHostileSettings)
{
    for (const char* bounds :
         {"", "{{1, 2}, {3}}", "{{a, 2}, {3, 4}}", "{{1e9, 2}, {3, 4}}", "{{99999999999999999999, 2}, {3, 4}}"}) {
        SCOPED_TRACE(bounds);
        const Bytes window = writeBinaryPlist({{"WindowBounds", bounds}});
        EXPECT_THROW(readLayout({{u".", "bwsp", "blob", window}}), DiskImageError);
    }
    const Bytes far = writeBinaryPlist({{"WindowBounds", "{{9000000000000000000, -9000000000000000000}, {1, 1}}"},
                                        {"SidebarWidth", 9000000000000000000}});
    EXPECT_EQ(readLayout({{u".", "bwsp", "blob", far}}).layout.left, 2147483647);
    EXPECT_THROW(readLayout({{u".", "icvp", "blob", {1, 2, 3}}}), DiskImageError);
    const Bytes alias = writeBinaryPlist({{"backgroundType", 2}, {"backgroundImageAlias", Bytes(10)}});
    EXPECT_THROW(readLayout({{u".", "icvp", "blob", alias}}), DiskImageError);
}

} // namespace
} // namespace velmora::diskimage::finder
