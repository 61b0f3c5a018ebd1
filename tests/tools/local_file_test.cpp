#include "diskimage/base/error.h"
#include "tools/support/local_file.h"
#include "tools/tool_fixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace velmora::tools
{
namespace
{

namespace fs = std::filesystem;
using namespace diskimage;

constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20;

class LocalFile : public test::ToolTest
{
};

TEST_F(LocalFile, knowsItsHoles)
{
    std::ofstream(path("sparse")).close();
    const auto file = openLocalFile(path("sparse"), OpenMode::readWrite);
    file->resize(8 * mebibyte);
    if (file->nextData(0).start == 0)
        GTEST_SKIP() << "this file system keeps no holes";
    EXPECT_EQ(file->nextData(0), (ByteRange{8 * mebibyte, 8 * mebibyte}));
    file->write(3 * mebibyte, Bytes(mebibyte, 1));
    EXPECT_EQ(file->nextData(mebibyte), (ByteRange{3 * mebibyte, 4 * mebibyte}));
    EXPECT_EQ(sliceOf(*file, 2 * mebibyte, mebibyte + 4096)->nextData(0), (ByteRange{mebibyte, mebibyte + 4096}));
    EXPECT_EQ(file->nextData(4 * mebibyte).start, 8 * mebibyte);

    // What was cut off must not pass for a hole.
    fs::resize_file(path("sparse"), 2 * mebibyte);
    EXPECT_THROW((void)file->nextData(0), DiskImageError);
    EXPECT_THROW((void)file->read(mebibyte, 2 * mebibyte), DiskImageError);
}

TEST_F(LocalFile, copiesAsMuchAsTheSystemCan)
{
    write("from", std::string(mebibyte, 'a') + std::string(mebibyte, 'b'));
    std::ofstream(path("to")).close();
    const auto from = openLocalFile(path("from"), OpenMode::readOnly);
    const auto to = openLocalFile(path("to"), OpenMode::readWrite);
    EXPECT_EQ(to->copyFrom(*memoryStorage(Bytes(mebibyte)), {0, mebibyte}, 0), 0U) << "memory is no file";
    const auto done = to->copyFrom(*from, {mebibyte / 2, 2 * mebibyte}, 4096);
    if (done == 0)
        GTEST_SKIP() << "the system does not copy here";
    EXPECT_EQ(to->size(), 4096 + done);
    EXPECT_TRUE(to->read(4096, done) == from->read(mebibyte / 2, done));
    EXPECT_EQ(from->copyFrom(*to, {0, mebibyte}, 0), 0U) << "not open for writing";
    EXPECT_EQ(to->copyFrom(*from, {2 * mebibyte, 4 * mebibyte}, 0), 0U) << "nothing is there";
}

} // namespace
} // namespace velmora::tools
