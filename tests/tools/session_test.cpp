#include "tools/support/session.h"

#include "diskimage/hfs/volume.h"
#include "platform/file_tree.h"
#include "platform/mounts.h"
#include "tools/support/image_volume.h"
#include "tools/support/owner_process.h"
#include "tools/support/session_record.h"
#include "tools/tool_fixture.h"

#include <fstream>

namespace fs = std::filesystem;
using namespace velmora;
using namespace velmora::test;
using namespace velmora::tools;
namespace hfs = velmora::diskimage::hfs;

namespace
{

class Sessions : public ToolTest
{
protected:
    AttachedVolume attach(const fs::path& image)
    {
        return attachedVolume(succeed("hdiutil", {"attach", image, "-readwrite"}));
    }
    fs::path image(const std::string& name, const std::string& volumeName = "My App") const
    {
        write("content/file", "x");
        return createImage(name, path("content"), volumeName);
    }
    static std::vector<std::string> records() { return namesIn(Mounts::stateFolder() / "sessions"); }
    static std::vector<std::string> mounts() { return namesIn(Mounts::stateFolder() / "Volumes"); }
};

hfs::Volume volumeOf(const ImageVolume& image)
{
    return hfs::Volume(*image.volume);
}

} // namespace

TEST_F(Sessions, haveDevicesAndMountNamesOfTheirOwn)
{
    const fs::path images[] = {image("a.dmg"), image("b.dmg"), image("c.dmg", "MY APP"), image("d.dmg", "Other")};
    const struct {
        const char* device;
        const char* mountPoint;
    } expected[] = {{"/dev/disk4s1", "/Volumes/My App"},
                    {"/dev/disk5s1", "/Volumes/My App 1"},
                    {"/dev/disk6s1", "/Volumes/MY APP 2"},
                    {"/dev/disk7s1", "/Volumes/Other"}};
    for (std::size_t i = 0; i < 4; ++i) {
        const AttachedVolume attached = attach(images[i]);
        EXPECT_EQ(attached.device, expected[i].device);
        EXPECT_EQ(attached.mountPoint, expected[i].mountPoint);
    }
    EXPECT_EQ(attach(images[1]).device, "/dev/disk5s1") << "an attached image is not attached again";

    std::ofstream(Mounts::localPath("/Volumes/My App 1/second")) << "2";
    succeed("hdiutil", {"detach", "/Volumes/My App 1"});
    succeed("hdiutil", {"detach", "/dev/disk4"});
    EXPECT_EQ(mounts(), (std::vector<std::string>{"MY APP 2", "Other"}));
    EXPECT_NE(volumeOf(openImageVolume(images[1])).find("/second"), nullptr);
    EXPECT_EQ(volumeOf(openImageVolume(images[0])).find("/second"), nullptr);
    EXPECT_EQ(attach(images[1]).device, "/dev/disk4s1") << "a free number is used again";

    const std::string list = succeed("hdiutil", {"info"});
    for (const std::size_t i : {1U, 2U, 3U})
        EXPECT_NE(list.find(images[i].string()), std::string::npos) << list;
    EXPECT_EQ(list.find(images[0].string()), std::string::npos) << list;
}

TEST_F(Sessions, keepWhatIsInTheImageAndItsNumbers)
{
    const fs::path file = createImage("a.dmg", makeStage(), "V");
    const auto idOf = [&](const char* name) { return volumeOf(openImageVolume(file)).find(name)->id; };
    const auto background = idOf("/.background/background.tiff");
    const std::string mountPoint = attach(file).mountPoint;
    // A folder that exists is merged; what sorts before the others must not shift their numbers.
    for (const char* const name : {".background/added.png", "!first/deep/file"}) {
        const fs::path target = Mounts::localPath(mountPoint + "/" + name);
        fs::create_directories(target.parent_path());
        std::ofstream(target) << name;
    }
    fs::create_symlink("/Applications", Mounts::localPath(mountPoint + "/link"));
    succeed("hdiutil", {"detach", "/dev/disk4"});
    EXPECT_EQ(idOf("/.background/background.tiff"), background);
    const ImageVolume opened = openImageVolume(file);
    const hfs::Volume volume(*opened.volume);
    EXPECT_NE(volume.find("/.background/added.png"), nullptr);
    EXPECT_NE(volume.find("/!first/deep/file"), nullptr);
    EXPECT_EQ(volume.find("/link")->linkTarget, "/Applications");
    succeed("hdiutil", {"verify", file});

    const std::string untouched = readAll(file);
    attach(file);
    succeed("hdiutil", {"detach", "/dev/disk4"});
    EXPECT_TRUE(readAll(file) == untouched) << "nothing put, nothing changed";
}

TEST_F(Sessions, leftByTheDeadAreClearedByTheNextAttach)
{
    const fs::path gone = image("gone.dmg");
    const fs::path scratch = image("velmora-build-0/temp.dmg");
    const fs::path alive = image("velmora-build-1/temp.dmg");
    const fs::path lasting = image("lasting.dmg");
    for (const fs::path& file : {gone, scratch, alive, lasting})
        attach(file);
    fs::remove(gone);
    {
        SessionStore store;
        for (const fs::path& file : {scratch, lasting}) {
            Session session = store.findImage(file).value();
            session.owner = "4194304 1"; // beyond the largest process number
            store.update(session);
        }
    }
    attach(image("next.dmg", "Next"));
    EXPECT_EQ(mounts(), (std::vector<std::string>{"My App 2", "My App 3", "Next"}));
    EXPECT_EQ(records(), (std::vector<std::string>{"disk4.session", "disk6.session", "disk7.session"}));
}

TEST_F(Sessions, areNotBlockedByDamagedRecords)
{
    attach(image("a.dmg"));
    const fs::path folder = Mounts::stateFolder() / "sessions";
    const std::string sound = readAll(folder / "disk4.session");
    Session escaping = SessionStore().all().front();
    escaping.device = 5;
    escaping.mountName = "../../../canary";
    write("canary/file", "x");
    const struct {
        const char* name;
        std::string text;
    } cases[] = {{"empty", ""},
                 {"garbage", "\x01\x02"},
                 {"cut", sound.substr(0, sound.size() / 2)},
                 {"a mount name that leads elsewhere", writeSessionRecord(escaping)},
                 {"of another device", sound},
                 {"huge", std::string(100'000, 'x')}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        std::ofstream(folder / "disk5.session", std::ios::binary) << c.text;
        fs::create_directory(Mounts::stateFolder() / "Volumes" / "Orphan");
        EXPECT_EQ(SessionStore().all().size(), 1U);
        EXPECT_EQ(attach(image("b.dmg", "B")).device, "/dev/disk5s1");
        EXPECT_EQ(mounts(), (std::vector<std::string>{"B", "My App"}));
        succeed("hdiutil", {"detach", "/dev/disk5"});
        fs::remove(path("b.dmg"));
    }
    EXPECT_TRUE(fs::exists(path("canary/file")));
}

TEST_F(Sessions, areClaimedByOneProcessAtATime)
{
    const fs::path file = image("a.dmg");
    attach(file);
    {
        const auto session = SessionStore().find("/dev/disk4").value();
        const auto claim = SessionStore().claim(session);
        ASSERT_TRUE(claim);
        EXPECT_NE(fail("hdiutil", {"detach", "/dev/disk4"}).find("detach failed - resource busy"), std::string::npos);
    }
    EXPECT_NE(fail("hdiutil", {"convert", file, "-format", "UDZO", "-o", path("x")}).find("busy"), std::string::npos);
    EXPECT_NE(fail("hdiutil", {"create", "-ov", "-srcfolder", path("content"), "-volname", "V", "-fs", "HFS+",
                               "-format", "UDRW", "-size", "32m", file})
                  .find("busy"),
              std::string::npos);
    succeed("hdiutil", {"detach", "/dev/disk4"});
    for (const char* const unknown : {"/dev/disk4", "/dev/disk4s1", "/Volumes/My App", "/Volumes/../x", "disk4s1", "/"})
        EXPECT_NE(fail("hdiutil", {"detach", unknown}).find("no image is attached"), std::string::npos);
}

TEST_F(Sessions, ofCompressedImagesAreReadOnly)
{
    succeed("hdiutil", {"convert", image("a.dmg"), "-format", "UDZO", "-o", path("z.dmg")});
    EXPECT_NE(fail("hdiutil", {"attach", path("z.dmg"), "-readwrite"}).find("UDZO"), std::string::npos);
    const AttachedVolume attached = attachedVolume(succeed("hdiutil", {"attach", path("z.dmg")}));
    fail("SetFile", {"-a", "C", attached.mountPoint});
    std::ofstream(Mounts::localPath(attached.mountPoint + "/x")) << "x";
    EXPECT_NE(fail("hdiutil", {"detach", attached.device}).find("read-only"), std::string::npos);
    succeed("hdiutil", {"detach", attached.device, "-force"});
    EXPECT_TRUE(mounts().empty());
}

TEST_F(Sessions, carryFlagsForTheRootFolderOnly)
{
    const fs::path file = image("a.dmg");
    const auto flags = [&] { return volumeOf(openImageVolume(file)).root().finderFlags(); };
    attach(file);
    succeed("SetFile", {"-a", "CV", "/Volumes/My App"});
    succeed("SetFile", {"-a", "v", "/Volumes/My App"});
    EXPECT_EQ(flags(), 0) << "set at detach";
    fail("SetFile", {"-a", "C", "/Volumes/My App/file"});
    fail("SetFile", {"-a", "C", "/dev/disk4"});
    fail("SetFile", {"-a", "C", "/Volumes/Other"});
    succeed("hdiutil", {"detach", "/dev/disk4"});
    EXPECT_EQ(flags(), hfs::finderFlagHasCustomIcon);
    attach(file);
    succeed("SetFile", {"-a", "c", "/Volumes/My App"});
    succeed("hdiutil", {"detach", "/dev/disk4"});
    EXPECT_EQ(flags(), 0);
}

TEST_F(Sessions, surviveWhatDetachCannotWrite)
{
    const fs::path file = image("a.dmg");
    attach(file);
    std::ofstream(Mounts::localPath("/Volumes/My App/large")) << std::string(40'000'000, 'x');
    fail("hdiutil", {"detach", "/dev/disk4"});
    succeed("hdiutil", {"verify", file});
    fs::remove(Mounts::localPath("/Volumes/My App/large"));
    succeed("hdiutil", {"detach", "/dev/disk4"});
}

TEST(MountName, isFitForAFolderAndALineOfOutput)
{
    std::string longName;
    for (int i = 0; i < 100; ++i)
        longName += "語";
    const struct {
        const char* name;
        std::string volumeName;
        std::string mountName;
    } cases[] = {{"ordinary", "My App", "My App"},       {"a slash as the volume keeps it", "1:2", "1:2"},
                 {"separators", "a\tb\nc/d", "a_b_c_d"}, {"empty", "", "Untitled"},
                 {"parent", "..", "Untitled"},           {"long", longName, longName.substr(0, 198)}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(mountNameFor(c.volumeName), c.mountName);
    }
}

TEST(OwnerProcess, isKnownWhileItRuns)
{
    const std::string own = parentProcess();
    ASSERT_NE(own, "");
    EXPECT_TRUE(isRunning(own));
    EXPECT_FALSE(isRunning(own + "0")) << "the number of a process that started at another time";
    EXPECT_TRUE(isRunning(""));
}
