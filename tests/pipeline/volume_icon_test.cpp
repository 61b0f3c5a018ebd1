#include "pipeline/icon_maker.h"
#include "worlds/build_world.h"

#include <QImage>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(IconMaker, stretchesThePictureAndAveragesWhatItReduces)
{
    // Left half white, right half a one-pixel chequerboard: only an area average turns that into grey.
    QImage wide(4096, 1024, QImage::Format_ARGB32);
    wide.fill(Qt::white);
    for (int y = 0; y < wide.height(); ++y) {
        for (int x = wide.width() / 2; x < wide.width(); ++x)
            wide.setPixelColor(x, y, (x + y) % 2 == 0 ? Qt::black : Qt::white);
    }
    const auto png = IconMaker::pngData({wide, {4096, 1024}}, 16);
    ASSERT_TRUE(png);
    const QImage icon = QImage::fromData(*png, "PNG");
    EXPECT_EQ(icon.size(), QSize(16, 16));
    EXPECT_TRUE(icon.hasAlphaChannel());
    EXPECT_EQ(icon.dotsPerMeterX(), 2835); // 72 dots per inch
    EXPECT_EQ(icon.pixelColor(2, 15), QColor(Qt::white));
    EXPECT_NEAR(icon.pixelColor(13, 0).red(), 128, 3);
    EXPECT_FALSE(IconMaker::pngData({wide, {4096, 1024}}, 0));
    EXPECT_FALSE(IconMaker::pngData({}, 16));
}

class VolumeIcon : public ::testing::Test
{
protected:
    std::string build(const fs::path& picture)
    {
        DMGProject project = world.typicalProject();
        project.volumeIconPath = picture.string();
        return world.build(project);
    }

    BuildWorld world{};
    fs::path icon = world.volumes / "My App" / ".VolumeIcon.icns";
};

TEST_F(VolumeIcon, isMadeFromAPictureInTenSizes)
{
    EXPECT_EQ(build(world.source / "arrow.png"), "");
    EXPECT_TRUE(world.logged("Setting volume icon…"));
    EXPECT_EQ(
        world.tools->iconset,
        (std::vector<std::string>{"icon_128x128.png", "icon_128x128@2x.png", "icon_16x16.png", "icon_16x16@2x.png",
                                  "icon_256x256.png", "icon_256x256@2x.png", "icon_32x32.png", "icon_32x32@2x.png",
                                  "icon_512x512.png", "icon_512x512@2x.png"}));
    const ToolCall& iconutil = *world.tools->find("iconutil");
    EXPECT_FALSE(iconutil.logged);
    EXPECT_EQ(iconutil.arguments[0], "-c");
    EXPECT_EQ(iconutil.arguments[1], "icns");
    EXPECT_TRUE(fs::path(iconutil.arguments[2]).filename().string().starts_with("icon-00000000-"));
    EXPECT_EQ(fs::path(iconutil.arguments[2]).extension(), ".iconset");
    EXPECT_EQ(iconutil.arguments[3], "-o");
    EXPECT_EQ(iconutil.arguments[4], "/Volumes/My App/.VolumeIcon.icns");
    const ToolCall& setFile = *world.tools->find("SetFile");
    EXPECT_EQ(setFile.arguments, (std::vector<std::string>{"-a", "C", "/Volumes/My App"}));
    EXPECT_FALSE(setFile.logged);
    EXPECT_THAT(world.scratchFiles(), IsEmpty());
    EXPECT_THAT(world.warnings, IsEmpty());
}

TEST_F(VolumeIcon, isCopiedWhenItIsAnIconFileAlready)
{
    BuildWorld::write(world.source / "Fancy.ICNS", "icns-data");
    EXPECT_EQ(build(world.source / "Fancy.ICNS"), "");
    EXPECT_EQ(BuildWorld::read(icon), "icns-data");
    EXPECT_FALSE(world.tools->find("iconutil"));
    EXPECT_TRUE(world.tools->find("SetFile"));
    EXPECT_THAT(world.warnings, IsEmpty());
}

TEST_F(VolumeIcon, neverFailsABuildAndSaysWhatIsMissing)
{
    BuildWorld::write(world.source / "text.png", "no picture");
    BuildWorld::write(world.source / "fake.icns", "no icon");
    fs::create_directories(world.source / "folder.icns");
    const auto huge = world.source / "huge.icns";
    BuildWorld::write(huge, "icns");
    fs::resize_file(huge, 64 * 1024 * 1024 + 1);
    const struct {
        const char* picture;
        const char* warning;
    } cases[] = {
        {"missing.png", "missing.png"}, {"text.png", "not a picture"},    {"missing.icns", "not a file"},
        {"fake.icns", "does not look"}, {"folder.icns", "is not a file"}, {"huge.icns", "huge.icns"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.picture);
        fs::remove_all(world.volumes);
        world.tools->calls.clear();
        EXPECT_EQ(build(world.source / c.picture), "");
        EXPECT_THAT(world.warnings, Contains(HasSubstr(c.warning)));
        EXPECT_TRUE(world.tools->find("SetFile"));
    }
    world.tools->answers["iconutil"] = {{1, "", "bad icon set"}};
    world.tools->answers["SetFile"] = {{2, "", ""}};
    EXPECT_EQ(build(world.source / "arrow.png"), "");
    EXPECT_THAT(world.warnings, Contains(HasSubstr("bad icon set")));
    EXPECT_THAT(world.warnings, Contains(HasSubstr("exit status 2")));
    EXPECT_THAT(world.scratchFiles(), IsEmpty());
}

TEST_F(VolumeIcon, isNeverWrittenThroughALinkInTheVolume)
{
    const fs::path canary = world.source / "canary";
    BuildWorld::write(canary, "alive");
    BuildWorld::write(world.source / "new.icns", "icns");
    fs::create_directories(icon.parent_path());
    fs::create_symlink(canary, icon);
    EXPECT_EQ(build(world.source / "new.icns"), "");
    EXPECT_EQ(BuildWorld::read(canary), "alive");
    EXPECT_EQ(BuildWorld::read(icon), "icns");

    // A real entry of the project stays.
    BuildWorld::write(icon, "the project's own");
    EXPECT_EQ(build(world.source / "new.icns"), "");
    EXPECT_EQ(BuildWorld::read(icon), "the project's own");
    EXPECT_THAT(world.warnings, Contains(HasSubstr("already")));
}

} // namespace
} // namespace velmora::testing
