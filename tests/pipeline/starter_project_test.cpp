#include "pipeline/build_error.h"
#include "pipeline/starter_project.h"
#include "pipeline/volume_name.h"
#include "worlds/build_world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::string entry(const std::string& key, const std::string& value)
{
    return "<key>" + key + "</key><string>" + value + "</string>";
}

class StarterProject : public ::testing::Test
{
protected:
    StarterProject()
    {
        BuildWorld::write(application / "Contents/Resources/Icon.icns", "icns");
        BuildWorld::write(folder.path() / "outside.icns", "icns");
        fs::create_symlink(folder.path() / "outside.icns", application / "Contents/Resources/Leaving.icns");
        describe("");
    }
    /// Writes the application's Info.plist.
    void describe(const std::string& entries) const
    {
        BuildWorld::write(application / "Contents/Info.plist",
                          "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" + entries + "</dict></plist>");
    }
    static std::string errorOf(const std::function<void()>& action)
    {
        try {
            action();
        } catch (const std::exception& error) {
            return error.what();
        }
        return {};
    }

    TemporaryFolder folder{};
    const fs::path application = folder.path() / "My Tool.app";
};

TEST_F(StarterProject, showsTheApplicationBesideTheApplicationsLink)
{
    describe(entry("CFBundleName", "Tool") + entry("CFBundleIconFile", "Icon"));
    fs::create_symlink("My Tool.app", folder.path() / "Latest.app");
    for (const fs::path& path : {application, application / "", folder.path() / "x" / ".." / "My Tool.app"}) {
        const DMGProject project = starterProject(readApplicationBundle(path), {});
        EXPECT_EQ(project.volumeName, "Tool");
        EXPECT_EQ(project.volumeIconPath, (application / "Contents/Resources/Icon.icns").string());
        ASSERT_EQ(project.items.size(), 2U);
        EXPECT_EQ(project.items[0].sourcePath, application.string());
        EXPECT_EQ(project.items[0].displayName, "My Tool.app");
        EXPECT_EQ(project.items[0].position(), (Point{169, 166}));
        EXPECT_EQ(project.items[1].symlinkTarget, "/Applications");
        EXPECT_EQ(project.textOverlays.size(), 1U);
    }
    const DMGProject linked = starterProject(readApplicationBundle(folder.path() / "Latest.app"), {});
    EXPECT_EQ(linked.items[0].sourcePath, application.string()) << "the image must not hold a link";
    EXPECT_EQ(linked.items[0].displayName, "Latest.app");
}

TEST_F(StarterProject, takesNameAndVersionFromTheApplication)
{
    const struct {
        const char* name;
        std::string entries;
        const char* volume;
    } cases[] = {
        {"the shown name first",
         entry("CFBundleDisplayName", "Shown") + entry("CFBundleName", "Short") +
             entry("CFBundleShortVersionString", "1.2") + entry("CFBundleVersion", "99"),
         "Shown 1.2"},
        {"blank is none",
         entry("CFBundleDisplayName", "  ") + entry("CFBundleName", "Short") +
             entry("CFBundleShortVersionString", " ") + entry("CFBundleVersion", " 99 "),
         "Short 99"},
        {"the file's name", entry("CFBundleVersion", "3"), "My Tool 3"},
        {"a name that no volume can have", entry("CFBundleName", "..AC/DC: Live\n") + entry("CFBundleVersion", "3"),
         "AC-DC- Live 3"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        describe(c.entries);
        EXPECT_EQ(expandVolumeName("{name} {version}", [&] { return readApplicationBundle(application); }), c.volume);
    }
}

TEST_F(StarterProject, refusesApplicationsThatAreNoneOrLeadOut)
{
    const struct {
        const char* name;
        std::string entries;
        const char* complaint;
    } cases[] = {
        {"climbing", entry("CFBundleIconFile", "../../../outside.icns"), "leads out of the bundle"},
        {"absolute", entry("CFBundleIconFile", "/etc/hosts"), "leads out of the bundle"},
        {"by a link", entry("CFBundleIconFile", "Leaving"), "leads out of the bundle"},
        {"damaged", "<key>", "Info.plist"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        describe(c.entries);
        EXPECT_THAT(errorOf([&] { readApplicationBundle(application); }), HasSubstr(c.complaint));
    }
    describe(entry("CFBundleIconFile", "Missing"));
    const ApplicationBundle without = readApplicationBundle(application);
    EXPECT_EQ(without.iconFile, std::nullopt);
    EXPECT_THAT(without.warnings, ::testing::ElementsAre(HasSubstr("“Missing”")));
    EXPECT_THAT(errorOf([&] { readApplicationBundle(folder.path()); }), HasSubstr("no Contents/Info.plist"));
    EXPECT_THAT(errorOf([&] { readApplicationBundle(folder.path() / "x.app"); }), HasSubstr("does not exist"));
}

TEST_F(StarterProject, refusesVolumeNamesThatSayNothing)
{
    describe(entry("CFBundleShortVersionString", "1/2"));
    const auto expand = [&](const std::string& text) {
        return expandVolumeName(text, [&] { return readApplicationBundle(application); });
    };
    EXPECT_THAT(errorOf([&] { expand("{name} {Version}"); }), HasSubstr("{Version}"));
    EXPECT_THAT(errorOf([&] { expand("{name} {version"); }), HasSubstr("not closed"));
    EXPECT_THAT(errorOf([&] { expand("{version}"); }), HasSubstr("“1/2”"));
    describe("");
    EXPECT_THAT(errorOf([&] { expand("{version}"); }), HasSubstr("no version"));
    EXPECT_EQ(expand("{name}} 100% {name}"), "My Tool} 100% My Tool");
    EXPECT_EQ(expandVolumeName("plain", []() -> ApplicationBundle { throw BuildError("not to be asked"); }), "plain");
}

} // namespace
} // namespace velmora::testing
