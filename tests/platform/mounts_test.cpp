#include "platform/mounts.h"

#include "platform/environment_variable.h"
#include "platform/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;
using testing::HasSubstr;

class MountsTest : public testing::Test
{
protected:
    MountsTest() { fs::create_directory(runtime); }

    TemporaryFolder folder{};
    fs::path runtime = folder / "run";
    EnvironmentVariable runtimeVariable{"XDG_RUNTIME_DIR", runtime.string()};
    EnvironmentVariable temporaryVariable{"TMPDIR", (folder / "tmp").string()};
};

TEST_F(MountsTest, volumePathsStayInsideTheirVolume)
{
    const fs::path volumes = runtime / "velmora/Volumes";
    const struct {
        const char* path;
        fs::path local;
    } cases[] = {
        {"/Volumes/My App", volumes / "My App"},
        {"/Volumes/My App/.background/a.tiff", volumes / "My App/.background/a.tiff"},
        {"/Volumes/Grüße/", volumes / "Grüße"},
        {"/Volumes/A/../../../etc/passwd", volumes / "A/etc/passwd"},
        {"/Volumes/A/b/../c", volumes / "A/c"},
        {"/Volumes/../etc", volumes / "etc"},
        {"/Volumes/..", volumes / ""},
        {"/Volumes//A//./b", volumes / "A/b"},
        {"/Volumes", "/Volumes"},
        {"/Volumes/", "/Volumes/"},
        {"/VolumesX/A", "/VolumesX/A"},
        {"Volumes/A", "Volumes/A"},
        {"/tmp/../Volumes/A", "/tmp/../Volumes/A"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(Mounts::localPath(c.path), c.local);
    }
    EXPECT_THROW(Mounts::localPath(std::string("/Volumes/a\0b", 12)), std::runtime_error);
}

TEST_F(MountsTest, theStateFolderIsThePersonsAlone)
{
    const mode_t previous = ::umask(0);
    const fs::path state = Mounts::stateFolder();
    ::umask(previous);
    EXPECT_EQ(state, runtime / "velmora");
    struct stat status {
    };
    ASSERT_EQ(::lstat(state.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode, S_IFDIR | 0700);
    EXPECT_EQ(Mounts::stateFolder(), state) << "found again";
}

TEST_F(MountsTest, withoutARuntimeDirectoryItLiesInTheTemporaryFolder)
{
    const fs::path expected = folder / "tmp" / ("velmora-" + std::to_string(::geteuid()));
    for (const std::string& value : {std::string(), (folder / "missing").string(), std::string("relative")}) {
        SCOPED_TRACE(value);
        const EnvironmentVariable variable("XDG_RUNTIME_DIR", value);
        EXPECT_EQ(Mounts::stateFolder(), expected);
    }
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(runtime.c_str(), 65534, 65534), 0);
        EXPECT_EQ(Mounts::stateFolder(), expected) << "another user's runtime directory";
    }
}

TEST_F(MountsTest, refusesAFolderThatIsNotOurs)
{
    const fs::path state = runtime / "velmora";
    const auto refusal = [] {
        try {
            Mounts::stateFolder();
        } catch (const std::runtime_error& error) {
            return std::string(error.what());
        }
        return std::string("accepted");
    };
    fs::create_directory(folder / "elsewhere");
    fs::create_directory_symlink(folder / "elsewhere", state);
    EXPECT_THAT(refusal(), testing::AllOf(HasSubstr("link"), HasSubstr(state.string())));
    fs::remove(state);
    fs::create_directory(state);
    ::chmod(state.c_str(), 0755);
    EXPECT_THAT(refusal(), HasSubstr("0700"));
    if (::geteuid() == 0) {
        ::chmod(state.c_str(), 0700);
        ASSERT_EQ(::chown(state.c_str(), 65534, 65534), 0);
        EXPECT_THAT(refusal(), HasSubstr("another user"));
    }
}

} // namespace
} // namespace velmora
