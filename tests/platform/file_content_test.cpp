#include "platform/file_tree.h"

#include "platform/claimed_path.h"
#include "platform/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;
using testing::ElementsAre;

constexpr std::uint64_t limit = 100;

TEST(WriteFile, twoWaysDifferInWhatHappensToALink)
{
    TemporaryFolder folder;
    writeFile(folder / "real", "a longer text");
    fs::create_symlink("real", folder / "link");
    writeFile(folder / "link", "short");
    EXPECT_EQ(readFile(folder / "real", limit), "short");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));

    writeFileAtomically(folder / "link", "own");
    EXPECT_FALSE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(readFile(folder / "link", limit), "own");
    EXPECT_EQ(readFile(folder / "real", limit), "short");
}

TEST(WriteFile, followsTheUsersMask)
{
    TemporaryFolder folder;
    const mode_t previous = ::umask(027);
    writeFile(folder / "plain", "x");
    writeFileAtomically(folder / "atomic", "x");
    ::umask(previous);
    EXPECT_EQ(describe(folder / "plain").mode, 0640U);
    EXPECT_EQ(describe(folder / "atomic").mode, 0640U);
}

TEST(WriteFile, aFailureLeavesTheOldFileAndNoRemains)
{
    TemporaryFolder folder;
    fs::create_directories(folder / "goal/full");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_THROW(writeFileAtomically(folder / "goal", "x"), FileError);
    EXPECT_THROW(writeFileAtomically(folder / "missing/file", "x"), FileError);
    EXPECT_THROW(writeFile(folder / "goal", "x"), FileError);
    EXPECT_THROW(writeFile(folder / "pipe", "x"), FileError); // and does not wait for a reader
    EXPECT_THAT(listFolder(folder.path), ElementsAre("goal", "pipe"));
}

TEST(WriteFile, replacesNoPipeAndNoDevice)
{
    TemporaryFolder folder;
    const fs::path pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    fs::create_symlink("/dev/null", folder / "device");
    for (const char* const name : {"pipe", "device"}) {
        SCOPED_TRACE(name);
        EXPECT_THROW(writeFileAtomically(folder / name, "x"), FileError);
        EXPECT_TRUE(isStream(folder / name));
    }
    EXPECT_THAT(listFolder(folder.path), ElementsAre("device", "pipe"));
    EXPECT_FALSE(isStream(folder.path));

    writeToStream(folder / "device", "x");
    EXPECT_THROW(writeToStream(pipe, "x"), FileError) << "nobody reads";
    const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    writeToStream(pipe, "text");
    std::string text(10, '\0');
    EXPECT_EQ(::read(reader, text.data(), text.size()), 4);
    EXPECT_EQ(text.substr(0, 4), "text");
    ::close(reader);
}

TEST(ClaimedPath, isRemovedOnceItsProcessIsGone)
{
    TemporaryFolder folder;
    ClaimedPath claimed = claimFileBeside(folder / "document");
    const fs::path held = claimed.path;
    writeFile(folder / ".velmora-0123456789ab", "a killed process left this");
    writeFile(folder / ".velmora-but not random", "the user's");
    ASSERT_EQ(::mkfifo((folder / ".velmora-pipeofnobody").c_str(), 0600), 0);

    writeFileAtomically(folder / "document", "x");
    EXPECT_EQ(listFolder(folder.path).size(), 4U); // the pipe was never one of ours
    EXPECT_TRUE(fs::exists(held));
    claimed.claim.reset();
    writeFileAtomically(folder / "document", "x");
    EXPECT_FALSE(fs::exists(held));
}

TEST(ReadFile, readsUpToTheLimitFromOrdinaryFilesOnly)
{
    TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    writeFile(folder / "exact", std::string(limit, 'x'));
    writeFile(folder / "larger", std::string(limit + 1, 'x'));
    EXPECT_EQ(readFile(folder / "exact", limit).size(), limit);
    for (const char* const name : {"larger", "pipe", ".", "missing"})
        EXPECT_THROW(readFile(folder / name, limit), FileError) << name;
}

} // namespace
} // namespace velmora
