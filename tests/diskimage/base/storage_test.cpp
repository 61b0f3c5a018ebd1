#include "diskimage/base/storage.h"

#include "diskimage/base/error.h"
#include "diskimage/base/temporary_folder.h"
#include "diskimage/message_of.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace velmora::diskimage
{
namespace
{

using testing::HasSubstr;

} // namespace

TEST(Storage, growsWithHolesAndReadsOnlyWhatIsThere)
{
    const test::TemporaryFolder folder;
    const auto file = openFile(folder.path() / "x", OpenMode::create);
    const auto memory = memoryStorage();
    for (auto* storage : {file.get(), memory.get()}) {
        SCOPED_TRACE(storage == file.get() ? "file" : "memory");
        storage->write(10, viewOf("abc"));
        storage->write(11, viewOf("X"));
        EXPECT_EQ(storage->size(), 13U);
        EXPECT_EQ(textOf(storage->read(8, 5)), std::string("\0\0aXc", 5));
        EXPECT_EQ(storage->read(13, 0).size(), 0U);
        EXPECT_THROW((void)storage->read(12, 2), DiskImageError);
        EXPECT_THROW((void)storage->read(UINT64_MAX, 1), DiskImageError);
        EXPECT_THROW(storage->write(UINT64_MAX, viewOf("x")), DiskImageError);
        EXPECT_THROW(storage->resize(UINT64_MAX), DiskImageError);
        storage->resize(11);
        storage->resize(12);
        EXPECT_EQ(textOf(storage->read(10, 2)), std::string("a\0", 2));
    }
}

TEST(Storage, holesTakeNoSpace)
{
    const test::TemporaryFolder folder;
    const auto storage = openFile(folder.path() / "large", OpenMode::create);
    storage->resize(std::uint64_t{1} << 40);
    storage->write((std::uint64_t{1} << 40) - 3, viewOf("end"));
    EXPECT_EQ(textOf(storage->read((std::uint64_t{1} << 40) - 4, 4)), std::string("\0end", 4));
    EXPECT_EQ(storage->read(std::uint64_t{1} << 39, 4096), Bytes(4096));
}

TEST(Storage, opensAsAsked)
{
    const test::TemporaryFolder folder;
    const auto path = folder.path() / "file";
    openFile(path, OpenMode::create)->write(0, viewOf("kept"));
    openFile(path, OpenMode::readWrite)->write(4, viewOf("!"));
    EXPECT_EQ(textOf(openFile(path, OpenMode::readOnly)->read(0, 5)), "kept!");
    EXPECT_EQ(openFile(path, OpenMode::create)->size(), 0U);
}

TEST(Storage, namesThePathAndTheReason)
{
    const test::TemporaryFolder folder;
    const auto missing = folder.path() / "missing";
    EXPECT_THAT(messageOf([&] { (void)openFile(missing, OpenMode::readOnly); }),
                testing::AllOf(HasSubstr(missing.string()), HasSubstr("No such file")));
    EXPECT_THAT(messageOf([&] { (void)openFile(missing, OpenMode::readWrite); }), HasSubstr("No such file"));
    EXPECT_THAT(messageOf([&] { (void)openFile(folder.path(), OpenMode::readOnly); }), HasSubstr("folder"));
    openFile(missing, OpenMode::create);
    const auto readOnly = openFile(missing, OpenMode::readOnly);
    EXPECT_THAT(messageOf([&] { readOnly->write(0, viewOf("x")); }), HasSubstr("reading only"));
    EXPECT_THAT(messageOf([&] { readOnly->resize(1); }), HasSubstr("reading only"));
}

TEST(Storage, tellsWhenTheDiskIsFull)
{
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "/dev/full is not there";
    }
    const auto full = openFile("/dev/full", OpenMode::readWrite);
    EXPECT_THAT(messageOf([&] { full->write(0, Bytes(4096)); }), HasSubstr("No space left"));
}

TEST(Storage, aFileThatBecameShorterIsAnError)
{
    const test::TemporaryFolder folder;
    const auto path = folder.path() / "file";
    openFile(path, OpenMode::create)->resize(1000);
    const auto reader = openFile(path, OpenMode::readOnly);
    std::filesystem::resize_file(path, 500);
    EXPECT_THAT(messageOf([&] { (void)reader->read(400, 200); }), HasSubstr("ends early"));
}

TEST(Storage, readsFromSeveralThreads)
{
    const test::TemporaryFolder folder;
    const auto storage = openFile(folder.path() / "x", OpenMode::create);
    Bytes pattern(1 << 16);
    for (std::size_t i = 0; i < pattern.size(); i += 2) {
        putBE16(pattern.data() + i, static_cast<std::uint16_t>(i));
    }
    storage->write(0, pattern);
    const auto check = [&](std::size_t start) {
        for (std::size_t i = start; i + 2 <= pattern.size(); i += 64) {
            ASSERT_EQ(getBE16(storage->read(i, 2).data()), i);
        }
    };
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < 4; ++i) {
        threads.emplace_back(check, 2 * i);
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

TEST(Storage, slicesKeepToTheirPart)
{
    const auto base = memoryStorage(Bytes(100));
    const auto slice = sliceOf(*base, 40, 20);
    slice->write(18, viewOf("ab"));
    EXPECT_EQ(textOf(base->read(58, 2)), "ab");
    EXPECT_THROW(slice->write(19, viewOf("ab")), DiskImageError);
    EXPECT_THROW(slice->write(UINT64_MAX, viewOf("ab")), DiskImageError);
    EXPECT_THROW((void)slice->read(20, 1), DiskImageError);
    EXPECT_THROW(slice->resize(21), DiskImageError);
    EXPECT_THROW((void)sliceOf(*base, 90, 11), DiskImageError);
    EXPECT_THROW((void)sliceOf(*base, UINT64_MAX, 2), DiskImageError);
    EXPECT_EQ(slice->nextData(5), (ByteRange{5, 20}));
    EXPECT_THROW((void)slice->nextData(21), DiskImageError);
    EXPECT_THROW((void)slice->copyFrom(*base, {0, 2}, 19), DiskImageError);
    const Source& source = *base;
    EXPECT_EQ(textOf(sliceOf(source, 57, 4)->read(1, 2)), "ab");
    EXPECT_THROW((void)sliceOf(source, 57, 4)->read(3, 2), DiskImageError);
}

} // namespace velmora::diskimage
