#include "tools/tool_fixture.h"

#include "diskimage/finder/ds_store.h"
#include "diskimage/hfs/volume.h"
#include "platform/file_tree.h"
#include "tools/support/image_volume.h"

#include <QByteArray>
#include <QImage>

#include <chrono>
#include <fstream>
#include <thread>

#include <sys/stat.h>

namespace fs = std::filesystem;
using namespace velmora;
using namespace velmora::test;
using namespace velmora::diskimage;

namespace
{

class ImageLife : public ToolTest
{
};

const char* const layoutScript = R"(tell application "Finder"
    tell disk "My App"
        open
        set current view of container window to icon view
        set toolbar visible of container window to false
        set statusbar visible of container window to false
        set sidebar width of container window to 0
        set the bounds of container window to {200, 120, 840, 540}
        set theViewOptions to the icon view options of container window
        set arrangement of theViewOptions to not arranged
        set icon size of theViewOptions to 96
        set text size of theViewOptions to 12
        set label position of theViewOptions to bottom
        set shows icon preview of theViewOptions to true
        set shows item info of theViewOptions to false
        set background picture of theViewOptions to file ".background:background.tiff"
        set position of item "My App.app" of container window to {150, 170}
        set position of item "Applications" of container window to {450, 170}
        close
        open
        update without registering applications
        delay 1
    end tell
end tell)";

std::string contentOf(const hfs::Entry& file)
{
    return file.dataSize == 0 ? "" : textOf(file.openData()->read(0, file.dataSize));
}

} // namespace

TEST_F(ImageLife, leadsFromAFolderToADesignedCompressedImage)
{
    const fs::path image = createImage("temp.dmg", makeStage(), "My App");
    EXPECT_EQ(fs::file_size(image), 32U << 20);

    const std::string output =
        succeed("hdiutil", {"attach", image, "-readwrite", "-noverify", "-noautoopen", "-nobrowse"});
    EXPECT_EQ(output, "/dev/disk4          \tGUID_partition_scheme          \t\n"
                      "/dev/disk4s1        \tApple_HFS                      \t/Volumes/My App\n");
    succeed("osascript", {write("layout.applescript", layoutScript)});
    fs::create_directory(path("a.iconset"));
    QImage icon(128, 128, QImage::Format_ARGB32);
    icon.fill(0x80FF0000);
    icon.save(QString::fromStdString(path("a.iconset/icon_128x128.png")));
    succeed("iconutil", {"-c", "icns", path("a.iconset"), "-o", "/Volumes/My App/.VolumeIcon.icns"});
    succeed("SetFile", {"-a", "C", "/Volumes/My App"});

    succeed("hdiutil", {"detach", "/dev/disk4s1", "-force"});
    succeed("hdiutil", {"verify", image});
    succeed("hdiutil", {"convert", image, "-format", "UDZO", "-o", path("My App"), "-imagekey", "zlib-level=9"});
    succeed("hdiutil", {"verify", path("My App.dmg")});
    succeed("hdiutil", {"internet-enable", "-yes", path("My App.dmg")});
    EXPECT_NE(succeed("hdiutil", {"imageinfo", path("My App.dmg")}).find("Internet-Enabled: true"), std::string::npos);

    const velmora::tools::ImageVolume opened = velmora::tools::openImageVolume(path("My App.dmg"));
    const hfs::Volume volume(*opened.volume);
    EXPECT_EQ(volume.info().name, "My App");
    EXPECT_EQ(volume.root().finderFlags(), hfs::finderFlagHasCustomIcon);
    EXPECT_EQ(contentOf(*volume.find("/.VolumeIcon.icns")).substr(0, 4), "icns");
    EXPECT_EQ(contentOf(*volume.find("/My App.app/Contents/MacOS/My App")), std::string(300'000, 'x'));
    EXPECT_EQ(volume.find("/My App.app/Contents/MacOS/My App")->mode, 0750U);
    EXPECT_EQ(volume.find("/Applications")->linkTarget, "/Applications");
    EXPECT_EQ(contentOf(*volume.find("/My App.app/Contents/Résumé.txt")), "café");

    const auto layout = finder::readLayout(finder::readDsStore(viewOf(contentOf(*volume.find("/.DS_Store")))));
    EXPECT_EQ(volume.find("/.DS_Store")->mode, 0644U);
    EXPECT_EQ(layout.layout.positions.size(), 2U);
    EXPECT_EQ(layout.layout.backgroundPath, "/.background/background.tiff");
    ASSERT_TRUE(layout.background);
    const hfs::Entry* const picture = volume.find("/.background/background.tiff");
    EXPECT_EQ(layout.background->fileId, picture->id);
    EXPECT_EQ(layout.background->folderIds, std::vector{volume.find("/.background")->id});
    EXPECT_EQ(layout.background->fileCreated, picture->created);
    EXPECT_EQ(layout.background->volumeCreated, volume.info().created);
    EXPECT_EQ(layout.background->volumeName, "My App");
}

TEST_F(ImageLife, makesImagesThatAnIndependentReaderAccepts)
{
    const std::string reader = systemProgram("7zz");
    if (reader.empty())
        GTEST_SKIP() << "7zz is not installed";
    const fs::path image = createImage("temp.dmg", makeStage(), "My App");
    succeed("hdiutil", {"convert", image, "-format", "UDZO", "-o", path("final.dmg")});
    const ChildResult test = runChild({.program = reader, .arguments = {"t", "-tdmg", path("final.dmg")}, .input = ""});
    EXPECT_EQ(test.exitCode, 0) << test.output << test.error;
    for (const char* const complaint : {"WARNING", "ERROR", "Warnings:", "Errors:"})
        EXPECT_EQ((test.output + test.error).find(complaint), std::string::npos) << test.output << test.error;

    const ChildResult extract = runChild(
        {.program = reader, .arguments = {"x", "-snl", "-o" + path("out").string(), path("final.dmg")}, .input = ""});
    const fs::path program = path("out") / "My App" / "My App.app/Contents/MacOS/My App";
    ASSERT_TRUE(fs::exists(program)) << extract.output << extract.error;
    EXPECT_EQ(readAll(program), std::string(300'000, 'x'));
}

TEST_F(ImageLife, givesTheSameBytesForTheSameFolderAndMoment)
{
    qputenv("SOURCE_DATE_EPOCH", "1700000000");
    const fs::path stage = makeStage();
    const fs::path first = createImage("a.dmg", stage, "My App");
    const fs::path second = createImage("b.dmg", stage, "My App");
    EXPECT_TRUE(readAll(first) == readAll(second));
    for (const fs::path& image : {first, second}) {
        succeed("hdiutil", {"attach", image, "-readwrite"});
        succeed("osascript", {write("layout.applescript", layoutScript)});
        succeed("hdiutil", {"detach", "/dev/disk4"});
        succeed("hdiutil", {"convert", image, "-format", "UDZO", "-o", fs::path(image).replace_extension("udzo")});
    }
    EXPECT_TRUE(readAll(first) == readAll(second));
    EXPECT_TRUE(readAll(path("a.udzo")) == readAll(path("b.udzo")));

    const velmora::tools::ImageVolume opened = velmora::tools::openImageVolume(first);
    const hfs::Volume volume(*opened.volume);
    EXPECT_EQ(volume.info().created, 1'700'000'000);
    EXPECT_EQ(volume.find("/.background/background.tiff")->modified, 1'700'000'000) << "later times are clamped";

    // The identifiers tell images apart that differ in the content of one file only.
    write("stage/.background/background.tiff", "MM*");
    const fs::path third = createImage("c.dmg", stage, "My App");
    const auto diskGuid = [](const fs::path& image) { return readAll(image).substr(512 + 56, 16); };
    EXPECT_NE(diskGuid(third), diskGuid(first));
}

TEST_F(ImageLife, keepsTheHolesOfFiles)
{
    const std::string head(300'000, 'h');
    fs::resize_file(write("stage/sparse", head), 24'000'000);
    std::ofstream(path("stage/sparse"), std::ios::app) << "tail";
    const fs::path image = createImage("a.dmg", path("stage"), "V");
    const velmora::tools::ImageVolume opened = velmora::tools::openImageVolume(image);
    EXPECT_TRUE(contentOf(*hfs::Volume(*opened.volume).find("/sparse")) ==
                head + std::string(24'000'000 - head.size(), '\0') + "tail");
    struct stat status {
    };
    ASSERT_EQ(::stat(image.c_str(), &status), 0);
    EXPECT_LT(status.st_blocks * 512, 8'000'000);
}

TEST_F(ImageLife, needsNoMoreThanTheSizeThatTheBuildComputes)
{
    const struct {
        const char* name;
        std::size_t files;
        std::size_t bytes;
    } cases[] = {{"nothing", 0, 0},
                 {"many empty files", 5000, 0},
                 {"many small files", 3000, 1},
                 {"a large file", 1, 90'000'000}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const fs::path folder = path(c.name);
        fs::create_directory(folder);
        for (std::size_t n = 0; n < c.files; ++n)
            std::ofstream(folder / ("file with a longish name " + std::to_string(n))) << std::string(c.bytes, '.');
        const std::string output = succeed("du", {"-sk", folder});
        const auto tab = output.find('\t');
        EXPECT_EQ(output.substr(tab), "\t" + folder.string() + "\n");
        const long kilobytes = std::stol(output.substr(0, tab));
        const long megabytes = static_cast<long>(static_cast<double>(kilobytes) / 1024 * 1.4) + 25;
        const fs::path image =
            createImage(std::string(c.name) + ".dmg", folder, "V", std::to_string(std::max(32L, megabytes)) + "m");
        succeed("hdiutil", {"verify", image});
    }
}

TEST_F(ImageLife, saysHowMuchIsMissingWhenTheSizeIsTooSmall)
{
    write("stage/data", std::string(3'000'000, 'x'));
    const std::vector<std::string> arguments = {"create", "-srcfolder", path("stage"), "-volname",        "V",    "-fs",
                                                "HFS+",   "-format",    "UDRW",        path("out/x.dmg"), "-size"};
    fs::create_directory(path("out"));
    const auto withSize = [&](const char* size) {
        auto all = arguments;
        all.emplace_back(size);
        return all;
    };
    const std::string error = fail("hdiutil", withSize("3m"));
    EXPECT_NE(error.find("hdiutil: create failed - "), std::string::npos) << error;
    const auto least = error.find(" at least ");
    ASSERT_NE(least, std::string::npos) << error;
    const std::string size = error.substr(least + 10, error.find(',', least) - least - 10);
    EXPECT_NE(fail("hdiutil", withSize("1b")).find(" at least " + size), std::string::npos);
    EXPECT_TRUE(namesIn(path("out")).empty());

    succeed("hdiutil", withSize(size.c_str()));
    fs::remove(path("out/x.dmg"));
    fail("hdiutil", withSize((std::to_string(std::stoi(size) - 1) + "m").c_str()));
}

TEST_F(ImageLife, carriesFinderInformationAndAttributes)
{
    write("stage/file", "data");
    const std::string setter = systemProgram("setfattr");
    const auto set = [&](const std::string& name, const std::string& value) {
        return runChild({.program = setter, .arguments = {"-n", "user." + name, "-v", value, path("stage/file")}})
                   .exitCode == 0;
    };
    if (setter.empty() || !set("com.apple.quarantine", "0081"))
        GTEST_SKIP() << "no extended attributes here";
    set("com.apple.FinderInfo", "0x" + std::string(16, '0') + "4000" + std::string(44, '0'));
    set("com.apple.ResourceFork", "fork");
    const velmora::tools::ImageVolume opened =
        velmora::tools::openImageVolume(createImage("x.dmg", path("stage"), "V"));
    const hfs::Volume volume(*opened.volume);
    const hfs::Entry& file = *volume.find("/file");
    EXPECT_EQ(file.finderFlags(), hfs::finderFlagIsInvisible);
    EXPECT_EQ(textOf(file.openResource()->read(0, 4)), "fork");
    EXPECT_EQ(file.attributes, (std::map<std::string, Bytes>{{"com.apple.quarantine", {'0', '0', '8', '1'}}}));

    set("com.apple.FinderInfo", "short");
    EXPECT_NE(fail("du", {"-sk", path("stage")}).find("stage/file"), std::string::npos);
}

TEST_F(ImageLife, refusesWhatAVolumeCannotHold)
{
    const std::string mkfifo = systemProgram("mkfifo");
    const struct {
        const char* name;
        std::function<void()> make;
    } cases[] = {
        {"a pipe", [&] { runChild({.program = mkfifo, .arguments = {path("stage/sub/pipe")}}); }},
        {"case-twins", [&] { write("stage/sub/CASE-TWINS", ""), write("stage/sub/case-twins", ""); }},
        {"unreadable\xFF name", [&] { write("stage/sub/unreadable\xFF name", ""); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        fs::create_directories(path("stage/sub"));
        c.make();
        const std::string error = fail("hdiutil", {"create", "-srcfolder", path("stage"), "-volname", "V", "-fs",
                                                   "HFS+", "-format", "UDRW", "-size", "32m", path("x.dmg")});
        EXPECT_NE(error.find(c.name == std::string("a pipe") ? "stage/sub/pipe" : std::string(c.name).substr(0, 10)),
                  std::string::npos)
            << error;
        EXPECT_FALSE(fs::exists(path("x.dmg")));
        fail("du", {"-sk", path("stage")});
        removeTree(path("stage"));
    }
}

TEST_F(ImageLife, leavesNothingBehindWhenItIsStopped)
{
    // One file under many names takes long to copy and little place.
    const fs::path large = write("stage/large", std::string(64'000'000, 'x'));
    for (int n = 0; n < 200; ++n)
        fs::create_hard_link(large, path("stage") / std::to_string(n));
    fs::create_directory(path("out"));
    StopSource stop;
    std::thread impatience([&] {
        for (int n = 0; n < 5000 && fs::is_empty(path("out")); ++n)
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        stop.requestStop();
    });
    const ChildResult result = run("hdiutil",
                                   {"create", "-srcfolder", path("stage"), "-volname", "V", "-fs", "HFS+", "-format",
                                    "UDRW", "-size", "14g", path("out/x.dmg")},
                                   stop.token());
    impatience.join();
    EXPECT_EQ(result.exitCode, 128 + 15) << result.error;
    EXPECT_TRUE(namesIn(path("out")).empty());
}
