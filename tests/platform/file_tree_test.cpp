#include "platform/file_tree.h"

#include "platform/ordinary_user.h"
#include "platform/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <tuple>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

void put(const fs::path& path, std::string_view content)
{
    std::ofstream(path, std::ios::binary) << content;
}

std::string get(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void setTimes(const fs::path& path, time_t seconds, long nanoseconds)
{
    const timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

template <typename Call>
std::string errorOf(Call call)
{
    try {
        call();
    } catch (const FileError& error) {
        return error.what();
    }
    return "no error";
}

using Look = std::tuple<FileKind, std::uint32_t, std::uint64_t, std::int64_t, std::int64_t, std::string,
                        std::map<std::string, std::string>, std::string>;

/// All that a copy must keep, by path below `top`.
std::map<std::string, Look> snapshot(const fs::path& top)
{
    std::map<std::string, Look> result;
    std::vector<fs::path> paths{top};
    for (const auto& entry : fs::recursive_directory_iterator(top))
        paths.push_back(entry.path());
    for (const fs::path& path : paths) {
        const FileStatus status = describe(path);
        const bool hasContent = status.kind == FileKind::regular;
        result[path.lexically_relative(top).string()] = {status.kind,
                                                         status.mode,
                                                         hasContent ? status.size : 0,
                                                         status.modifiedSeconds,
                                                         status.modifiedNanoseconds,
                                                         status.linkTarget,
                                                         status.extendedAttributes,
                                                         hasContent ? get(path) : ""};
    }
    return result;
}

/// A folder with one of everything that a copy must carry over.
void makeVariedTree(const fs::path& top)
{
    fs::create_directories(top / "locked/inner");
    fs::create_directories(top / "empty");
    put(top / "plain", "content");
    ::chmod((top / "plain").c_str(), 0640);
    put(top / "program", "#!/bin/sh\n");
    ::chmod((top / "program").c_str(), 04755);
    put(top / "nothing", "");
    put(top / "locked/inner/Grüße 日本", "x");
    put(top / "read-only", "y");
    ::chmod((top / "read-only").c_str(), 0444);
    fs::create_hard_link(top / "plain", top / "twin");
    put(top / "sparse", "begin");
    fs::resize_file(top / "sparse", 20 * 1024 * 1024);
    std::fstream(top / "sparse", std::ios::in | std::ios::out | std::ios::binary).seekp(10 * 1024 * 1024) << "middle";
    fs::create_symlink("/nowhere/at all", top / "dangling");
    fs::create_directory_symlink("locked", top / "to folder");
    setTimes(top / "plain", 1234567890, 123456789);
    setTimes(top / "dangling", -5, 999999999);
    setTimes(top / "locked/inner", 1000, 1);
    ::chmod((top / "locked").c_str(), 0555);
    setTimes(top / "locked", 2000, 2);
    setTimes(top, 3000, 3);
}

TEST(CopyTree, keepsContentLinksModesAndTimes)
{
    asOrdinaryUser([] {
        TemporaryFolder own;
        makeVariedTree(own / "source");
        const auto before = snapshot(own / "source");
        const CopyReport report = copyTree(own / "source", own / "copy");
        const bool same = snapshot(own / "copy") == before && snapshot(own / "source") == before;
        removeTree(own / "copy");
        removeTree(own / "source");
        EXPECT_TRUE(report.warnings.empty());
        EXPECT_TRUE(same);
        EXPECT_EQ(before.size(), 13U);
        EXPECT_TRUE(fs::is_empty(own.path));
    });
}

TEST(CopyTree, copiesAnothersFolderThatItsCopysOwnerMayNotEnter)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "takes a second user";
    TemporaryFolder folder;
    ::chmod(folder.path.c_str(), 0755);
    fs::create_directories(folder / "source/closed/inner");
    ::chmod((folder / "source/closed").c_str(), 0055);
    asOrdinaryUser([&] {
        TemporaryFolder own;
        copyTree(folder / "source", own / "copy");
        EXPECT_EQ(describe(own / "copy/closed").mode, 0055U);
        removeTree(own / "copy");
        EXPECT_THAT(listFolder(own.path), IsEmpty());
    });
}

TEST(CopyTree, makesIndependentFilesAndKeepsHoles)
{
    TemporaryFolder folder;
    makeVariedTree(folder / "source");
    copyTree(folder / "source", folder / "copy");
    EXPECT_NE(describe(folder / "copy/plain").inode, describe(folder / "copy/twin").inode);
    put(folder / "copy/plain", "changed");
    EXPECT_EQ(get(folder / "source/plain"), "content");

    struct stat source {
    };
    struct stat copy {
    };
    ASSERT_EQ(::stat((folder / "source/sparse").c_str(), &source), 0);
    ASSERT_EQ(::stat((folder / "copy/sparse").c_str(), &copy), 0);
    if (source.st_blocks > 1000)
        GTEST_SKIP() << "this file system keeps no holes";
    EXPECT_LT(copy.st_blocks, 1000);
}

TEST(CopyTree, carriesExtendedAttributesOrSaysWhichItCouldNot)
{
    TemporaryFolder folder;
    put(folder / "file", "x");
    if (::setxattr((folder / "file").c_str(), "user.com.apple.FinderInfo", "\0\x04", 2, 0) != 0)
        GTEST_SKIP() << "this file system has no extended attributes";
    ::chmod((folder / "file").c_str(), 0400);
    asOrdinaryUser([] {
        TemporaryFolder own;
        fs::create_directory(own / "source");
        put(own / "source/file", "x");
        ::setxattr((own / "source/file").c_str(), "user.com.apple.FinderInfo", "\0\x04", 2, 0);
        ::setxattr((own / "source").c_str(), "user.folder's", "", 0, 0);
        ::chmod((own / "source/file").c_str(), 0400);
        const CopyReport report = copyTree(own / "source", own / "copy");
        const std::map<std::string, std::string> expected{{"com.apple.FinderInfo", std::string("\0\x04", 2)}};
        EXPECT_THAT(report.warnings, IsEmpty());
        EXPECT_EQ(describe(own / "copy/file").extendedAttributes, expected);
        EXPECT_EQ(describe(own / "copy").extendedAttributes.count("folder's"), 1U);
    });
}

TEST(CopyTree, warnsWhereTheTargetRefusesAnAttribute)
{
    // Memory file systems take attributes of a size that most disks refuse.
    const std::string big(40000, 'b');
    const fs::path source = "/dev/shm/velmora-test-" + std::to_string(::getpid());
    put(source, "x");
    TemporaryFolder folder;
    put(folder / "probe", "");
    const bool fits = ::setxattr(source.c_str(), "user.big", big.data(), big.size(), 0) == 0;
    if (!fits || ::setxattr((folder / "probe").c_str(), "user.big", big.data(), big.size(), 0) == 0) {
        fs::remove(source);
        GTEST_SKIP() << "no two file systems at hand that differ";
    }
    const CopyReport report = copyTree(source, folder / "copy");
    fs::remove(source);
    EXPECT_THAT(report.warnings, ElementsAre(testing::AllOf(HasSubstr("\"big\""), HasSubstr(source.string()))));
    EXPECT_EQ(get(folder / "copy"), "x");
}

TEST(CopyTree, refusesWhatCannotBeCopied)
{
    TemporaryFolder folder;
    fs::create_directories(folder / "tree/inner");
    fs::create_directory(folder / "tree/before it");
    put(folder / "file", "old");
    ASSERT_EQ(::mkfifo((folder / "tree/inner/pipe").c_str(), 0600), 0);
    const auto copy = [&](const std::string& from, const std::string& to) {
        return errorOf([&] { copyTree(folder / from, folder / to); });
    };
    EXPECT_THAT(copy("tree", "copy1"), HasSubstr((folder / "tree/inner/pipe").string()));
    EXPECT_THAT(copy("missing", "copy2"), testing::AllOf(HasSubstr("missing"), HasSubstr("No such file")));
    EXPECT_THAT(copy("file", "tree"), HasSubstr("exists"));
    EXPECT_THAT(copy("tree/inner", "file"), HasSubstr("exists"));
    EXPECT_EQ(get(folder / "file"), "old");
    EXPECT_THAT(copy("file", std::string("cut\0off", 7)), HasSubstr("NUL"));
    removeTree(folder / "tree/inner/pipe");
    EXPECT_THAT(copy("tree", "tree/inner/copy"), HasSubstr("into itself"));

    asOrdinaryUser([] {
        TemporaryFolder own;
        fs::create_directory(own / "tree");
        put(own / "tree/secret", "x");
        ::chmod((own / "tree/secret").c_str(), 0);
        EXPECT_THAT(errorOf([&] { copyTree(own / "tree", own / "copy"); }),
                    HasSubstr("tree/secret\": Permission denied"));
    });
}

TEST(CopyTree, endsWhenStopped)
{
    TemporaryFolder folder;
    fs::create_directory(folder / "tree");
    for (const char* const name : {"a", "b", "c"})
        put(folder / "tree" / name, "x");
    int asked = 0;
    const auto stopped = [&] { return ++asked > 3; };
    EXPECT_THAT(errorOf([&] { copyTree(folder / "tree", folder / "copy", stopped); }), HasSubstr("stopped"));
    EXPECT_FALSE(fs::exists(folder / "copy/c"));
}

/// Leaves this process few descriptors for as long as it lives.
class FewDescriptors
{
public:
    FewDescriptors()
    {
        ::getrlimit(RLIMIT_NOFILE, &m_previous);
        rlimit few = m_previous;
        few.rlim_cur = 40;
        ::setrlimit(RLIMIT_NOFILE, &few);
    }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;
    ~FewDescriptors() { ::setrlimit(RLIMIT_NOFILE, &m_previous); }

private:
    rlimit m_previous{};
};

TEST(CopyTree, handlesTreesDeeperThanPathsAndDescriptorsReach)
{
    TemporaryFolder folder;
    const FewDescriptors limit;
    fs::create_directory(folder / "deep");
    const std::string name(100, 'd');
    int level = ::open((folder / "deep").c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(::mkdirat(level, name.c_str(), 0700), 0);
        const int next = ::openat(level, name.c_str(), O_RDONLY | O_DIRECTORY);
        ASSERT_GE(next, 0);
        ::close(level);
        level = next;
    }
    ::close(::openat(level, "bottom", O_CREAT | O_WRONLY, 0600));
    ::close(level);

    EXPECT_NO_THROW(copyTree(folder / "deep", folder / "copy"));
    removeTree(folder / "deep");
    removeTree(folder / "copy");
    EXPECT_TRUE(fs::is_empty(folder.path));
}

TEST(RemoveTree, removesLinksAndNotWhatTheyPointTo)
{
    TemporaryFolder folder;
    fs::create_directories(folder / "canary");
    put(folder / "canary/alive", "x");
    fs::create_directories(folder / "tree/inner");
    fs::create_directory_symlink(folder / "canary", folder / "tree/inner/link");
    fs::create_directory_symlink(folder / "canary", folder / "top");
    removeTree(folder / "tree");
    removeTree(folder / "top/"); // a trailing slash would name the folder behind the link
    removeTree(folder / "was never there");
    EXPECT_THAT(listFolder(folder.path), ElementsAre("canary"));
    EXPECT_EQ(get(folder / "canary/alive"), "x");
    for (const char* const name : {"", ".", "canary/..", "/"})
        EXPECT_NE(errorOf([&] { removeTree(name); }), "no error") << name;
}

TEST(RemoveTree, removesWhatItsOwnerLocked)
{
    asOrdinaryUser([] {
        TemporaryFolder own;
        fs::create_directories(own / "tree/closed/inner");
        put(own / "tree/closed/inner/file", "x");
        ::chmod((own / "tree/closed/inner").c_str(), 0);
        ::chmod((own / "tree/closed").c_str(), 0100);
        ::chmod((own / "tree").c_str(), 0500);
        removeTree(own / "tree");
        EXPECT_THAT(listFolder(own.path), IsEmpty());
        EXPECT_THAT(errorOf([] { removeTree("/etc/passwd"); }), HasSubstr("\"/etc/passwd\": Permission denied"));
    });
}

TEST(Describe, tellsKindsAndLinkTargets)
{
    TemporaryFolder folder;
    const std::string longTarget(3000, 't');
    fs::create_symlink(longTarget, folder / "link");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(describe(folder / "link").kind, FileKind::symlink);
    EXPECT_EQ(describe(folder / "link").linkTarget, longTarget);
    EXPECT_EQ(describe(folder / "pipe").kind, FileKind::other);
    EXPECT_EQ(describe(folder.path).kind, FileKind::folder);
    EXPECT_THAT(errorOf([&] { describe(folder / "missing"); }), HasSubstr("missing\": No such file or directory"));
    EXPECT_THAT(errorOf([&] { listFolder(folder / "link"); }), HasSubstr("link"));
}

} // namespace
} // namespace velmora
