#include "diskimage/finder/ds_store.h"
#include "platform/mounts.h"
#include "tools/tool_fixture.h"

#include <fstream>

namespace fs = std::filesystem;
using namespace velmora;
using namespace velmora::test;
using namespace velmora::diskimage::finder;

namespace
{

class Osascript : public ToolTest
{
protected:
    void SetUp() override { succeed("hdiutil", {"attach", createImage("a.dmg", makeStage(), "My App"), "-readwrite"}); }

    /// A script that lays out a disk with one size and the given statements.
    fs::path script(const std::string& disk, const std::string& statements) const
    {
        return write("script", "tell application \"Finder\"\n tell disk \"" + disk +
                                   "\"\n  open\n  set the bounds of container window to {10, 20, 510, 420}\n"
                                   "  set theViewOptions to the icon view options of container window\n" +
                                   statements + "\n  close\n end tell\nend tell\n");
    }
    static fs::path store() { return Mounts::localPath("/Volumes/My App/.DS_Store"); }
    static WindowLayout layout() { return readLayout(readDsStore(diskimage::viewOf(readAll(store())))).layout; }
};

} // namespace

TEST_F(Osascript, reportsWhatIsMissingAndKeepsWhatWasSetBefore)
{
    const struct {
        const char* name;
        const char* statement;
        const char* error;
    } cases[] = {
        {"an item", "set position of item \"Gone\" of container window to {1, 2}", "item \"Gone\""},
        {"a path is no name", "set position of item \".background:background.tiff\" of container window to {1, 2}",
         "item \".background:background.tiff\""},
        {"a picture", "set background picture of theViewOptions to file \".background:gone.png\"",
         "file \".background:gone.png\""},
        {"a folder as picture", "set background picture of theViewOptions to file \".background\"",
         "file \".background\""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        fs::remove(store());
        const std::string before = "set position of item \"Applications\" of container window to {7, 8}\n";
        const std::string after = "\nset position of item \"My App.app\" of container window to {9, 9}";
        EXPECT_EQ(fail("osascript", {script("My App", before + c.statement + after)}),
                  "execution error: Finder got an error: Can’t get " + std::string(c.error) +
                      " of disk \"My App\". (-1728)\n");
        ASSERT_TRUE(fs::exists(store()));
        EXPECT_EQ(layout().positions, (std::vector<ItemPosition>{{"Applications", 7, 8}}));
        EXPECT_EQ(layout().right, 510);
        EXPECT_EQ(layout().backgroundPath, std::nullopt);
    }
}

TEST_F(Osascript, knowsItemsThatWereAddedSinceTheDiskWasMounted)
{
    std::ofstream(Mounts::localPath("/Volumes/My App/Read Me.txt")) << "x";
    succeed("osascript", {script("My App", "set position of item \"read me.TXT\" of container window to {1, 2}")});
    EXPECT_EQ(layout().positions.size(), 1U);
}

TEST_F(Osascript, refusesDisksThatAreNotAttachedAndOtherScripts)
{
    for (const char* const disk : {"Other", "..", "My App/.background", "my app 1"}) {
        EXPECT_EQ(fail("osascript", {script(disk, "")}),
                  "execution error: Finder got an error: Can’t get disk \"" + std::string(disk) + "\". (-1728)\n");
    }
    EXPECT_EQ(fail("osascript", {script("My App", "do shell script \"touch /tmp/x\"")}).find("6: syntax error: "), 0U);
    EXPECT_EQ(fail("osascript", {write("script", "")}).find("1: syntax error: "), 0U);
    fail("osascript", {path("missing")});
    EXPECT_FALSE(fs::exists(store()));
}
