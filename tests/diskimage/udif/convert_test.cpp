#include "diskimage/udif/test_images.h"

#include <gmock/gmock.h>

#include <map>

namespace velmora::diskimage::udif
{
namespace
{

using testing::ElementsAre;
using testing::HasSubstr;

std::vector<ChunkType> chunkTypes(const BlockTable& table)
{
    std::vector<ChunkType> types;
    for (const Chunk& chunk : table.chunks)
        types.push_back(chunk.type);
    return types;
}

TEST(Convert, givesTheSameDiskBackFromEveryFormat)
{
    const auto disk = sampleDisk();
    const Bytes content = contentOf(*disk);
    const struct {
        const char* code;
        Format format;
        ImageKind kind;
    } formats[] = {{"UDRW", Format::udrw, ImageKind::raw},
                   {"UDRO", Format::udro, ImageKind::udif},
                   {"UDZO", Format::udzo, ImageKind::udif}};
    for (const auto& row : formats) {
        SCOPED_TRACE(row.code);
        const auto file = memoryStorage(converted(*disk, {.format = row.format}));
        const Image image(*file);
        EXPECT_EQ(image.kind(), row.kind);
        EXPECT_EQ(image.formatCode(), row.code);
        EXPECT_TRUE(contentOf(image.disk()) == content);
        const auto results = verifyChecksums(*file, image);
        EXPECT_EQ(results.size(), row.kind == ImageKind::raw ? 0u : image.tables().size() + 2);
        for (const ChecksumResult& result : results)
            EXPECT_TRUE(result.ok()) << result.name;
        // Back to a raw disk through the expanded one.
        EXPECT_TRUE(converted(image.disk(), {.format = Format::udrw}) == content);
    }
}

TEST(Convert, writesTheSameBytesOnAnyNumberOfThreads)
{
    const auto disk = sampleDisk(40 * 2048);
    for (const Format format : {Format::udzo, Format::udro}) {
        const Bytes onOne = converted(*disk, {.format = format, .threads = 1});
        for (const unsigned threads : {2u, 8u})
            EXPECT_TRUE(converted(*disk, {.format = format, .threads = threads}) == onOne);
    }
}

TEST(Convert, laysOutTheFileAsSinglePassWritersDo)
{
    const auto disk = sampleDisk();
    const auto file = memoryStorage(converted(*disk, {.segmentId = Guid{9, 8, 7}}));
    const Image image(*file);
    const Trailer& trailer = *image.trailer();
    EXPECT_EQ(trailer.flags, 1u);
    EXPECT_EQ(trailer.plistOffset, trailer.dataForkLength);
    EXPECT_EQ(trailer.plistOffset + trailer.plistLength + trailerSize, file->size());
    EXPECT_EQ(trailer.segmentId, (Guid{9, 8, 7}));
    EXPECT_EQ(trailer.sectorCount * sectorSize, disk->size());

    std::vector<std::string> names;
    for (const BlockTable& table : image.tables())
        names.push_back(table.name);
    EXPECT_THAT(names, ElementsAre("Protective Master Boot Record (MBR : 0)", "GPT Header (Primary GPT Header : 1)",
                                   "GPT Partition Data (Primary GPT Table : 2)", " (Apple_Free : 3)",
                                   "disk image (Apple_HFS : 4)", " (Apple_Free : 5)",
                                   "GPT Partition Data (Backup GPT Table : 6)", "GPT Header (Backup GPT Header : 7)"));
    EXPECT_THAT(chunkTypes(image.tables()[3]), ElementsAre(ChunkType::ignored));
    EXPECT_EQ(image.tables()[3].checksum, 0u);
    EXPECT_THAT(chunkTypes(image.tables()[4]), ElementsAre(ChunkType::raw, ChunkType::zero, ChunkType::zlib,
                                                           ChunkType::zlib, ChunkType::zero, ChunkType::zlib));
    EXPECT_EQ(image.tables()[4].chunks[0].sectorCount, 2048u);
}

TEST(Convert, writesTheFieldsThatReadersSkip)
{
    const auto disk = sampleDisk();
    const auto file = memoryStorage(converted(*disk, {}));
    const Trailer trailer = *Image(*file).trailer();
    const Plist plist = readPlist(file->read(trailer.plistOffset, static_cast<std::size_t>(trailer.plistLength)));
    const Plist& fork = *plist.find("resource-fork");
    const auto& entries = *fork.find("blkx")->as<Plist::Array>();
    ASSERT_EQ(entries.size(), 8u);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(*entries[i].find("ID"), std::to_string(static_cast<int>(i) - 1));
        EXPECT_EQ(*entries[i].find("Attributes"), "0x0050");
        EXPECT_EQ(*entries[i].find("CFName"), *entries[i].find("Name"));
        const Bytes& table = *entries[i].find("Data")->as<Bytes>();
        EXPECT_EQ(getBE32(table.data() + 32), i == 3 || i == 5 ? 0u : 2056u); // buffers needed
        EXPECT_EQ(getBE32(table.data() + 36), i);                             // descriptor
        const std::uint8_t* terminator = table.data() + table.size() - 40;
        EXPECT_EQ(getBE32(terminator), 0xFFFFFFFF);
        EXPECT_EQ(getBE64(terminator + 8), getBE64(table.data() + 16));
    }
    const auto& partitions = *fork.find("plst")->as<Plist::Array>();
    ASSERT_EQ(partitions.size(), 1u);
    Bytes expected(1032);
    expected[517] = expected[519] = 1;
    EXPECT_EQ(*partitions[0].find("Data"), expected);
    EXPECT_EQ(partitions[0].find("CFName"), nullptr);
}

TEST(Convert, derivesTheIdentifierFromTheContent)
{
    const auto idOf = [](const Storage& disk) {
        const auto file = memoryStorage(converted(disk, {}));
        return Image(*file).trailer()->segmentId;
    };
    const auto disk = sampleDisk();
    const Guid first = idOf(*disk);
    EXPECT_EQ(first, idOf(*disk));
    EXPECT_EQ(first[6] >> 4, 4);
    disk->write(3 * mebibyte, Bytes{1});
    EXPECT_NE(first, idOf(*disk));
}

/// Remembers which bytes were written.
class SparseStorage : public Storage
{
public:
    [[nodiscard]] std::uint64_t size() const override { return m_size; }
    void read(std::uint64_t, MutableByteView) const override { throw DiskImageError("not to be read"); }
    void write(std::uint64_t offset, ByteView bytes) override
    {
        written[offset] = bytes.size();
        m_size = std::max(m_size, offset + bytes.size());
    }
    void resize(std::uint64_t size) override { m_size = size; }

    std::map<std::uint64_t, std::uint64_t> written;

private:
    std::uint64_t m_size = 0;
};

TEST(Convert, leavesHolesInARawImage)
{
    const auto disk = sampleDisk();
    SparseStorage out;
    convert(*disk, out, {.format = Format::udrw});
    EXPECT_EQ(out.size(), disk->size());
    std::uint64_t total = 0;
    for (const auto& [offset, length] : out.written) {
        EXPECT_TRUE(offset + length <= 40 * 512 + mebibyte + 4096 || offset >= 2 * mebibyte) << offset;
        total += length;
    }
    EXPECT_LT(total, 3 * mebibyte + 64 * 1024);
}

TEST(Convert, doesNotReadHolesAndWritesTheSameAsIfThereWereNone)
{
    const auto disk = sampleDisk(40 * 2048);
    const std::uint64_t start = 40 * 512;
    const std::uint64_t end = disk->size();
    // Holes that begin and end within chunks; one range ends just where a chunk does.
    const SparseDisk sparse(*disk, {{0, start + mebibyte},
                                    {start + 2 * mebibyte, start + 4 * mebibyte},
                                    {start + 5 * mebibyte + 12288, start + 5 * mebibyte + 16384},
                                    {end - 33 * 512, end}});
    for (const Format format : {Format::udzo, Format::udro, Format::udrw}) {
        SCOPED_TRACE(static_cast<int>(format));
        EXPECT_TRUE(converted(sparse, {.format = format}) == converted(*disk, {.format = format}));
    }
}

TEST(Convert, joinsZerosInOneEntry)
{
    const auto disk = sampleDisk(40 * 2048);
    const auto file = memoryStorage(converted(*disk, {}));
    const Image image(*file);
    const Chunk& last = image.tables()[4].chunks.back();
    EXPECT_EQ(last.type, ChunkType::zero);
    EXPECT_EQ(last.firstSector, 6u * 2048);
    EXPECT_EQ(last.firstSector + last.sectorCount, image.tables()[4].sectorCount);
    // What is zero in the image is a hole of the expanded disk.
    const std::uint64_t start = 40 * 512;
    EXPECT_EQ(image.disk().nextData(start + mebibyte), (ByteRange{start + 2 * mebibyte, start + 4 * mebibyte}));
    EXPECT_EQ(image.disk().nextData(start + 3 * mebibyte), (ByteRange{start + 3 * mebibyte, start + 4 * mebibyte}));
    EXPECT_EQ(image.disk().nextData(disk->size()), (ByteRange{disk->size(), disk->size()}));
}

TEST(Verify, doesNotReadTheHolesOfTheFile)
{
    const auto disk = sampleDisk();
    disk->write(40 * 512, Bytes(64 * 1024, 0)); // zeros within the first chunk, which a raw chunk stores
    const auto file = memoryStorage(converted(*disk, {.format = Format::udro}));
    const std::uint64_t hole = Image(*file).tables()[4].chunks[0].offset;
    const SparseDisk sparse(*file, {{0, hole}, {hole + 64 * 1024, file->size()}});
    const Image image(sparse);
    for (const ChecksumResult& result : verifyChecksums(sparse, image))
        EXPECT_TRUE(result.ok()) << result.name;
}

TEST(Convert, reportsProgressAndStops)
{
    const auto disk = sampleDisk();
    for (const Format format : {Format::udrw, Format::udro, Format::udzo}) {
        std::vector<double> steps;
        converted(*disk, {.format = format, .progress = [&](double step) { steps.push_back(step); }});
        ASSERT_GT(steps.size(), 5u);
        EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end()));
        EXPECT_EQ(steps.front(), 0);
        EXPECT_EQ(steps.back(), 1);

        int asked = 0;
        EXPECT_THROW(converted(*disk, {.format = format, .threads = 3, .stopped = [&] { return ++asked == 4; }}),
                     DiskImageError);
        EXPECT_EQ(asked, 4);
    }
}

/// A disk that fails from some place on, once it has been recognised.
class FailingDisk : public Source
{
public:
    explicit FailingDisk(const Source& disk) : m_disk(disk) {}
    [[nodiscard]] std::uint64_t size() const override { return m_disk.size(); }
    void read(std::uint64_t offset, MutableByteView out) const override
    {
        if (offset > 2 * mebibyte && offset < 3 * mebibyte)
            throw DiskImageError("unreadable at " + std::to_string(offset));
        m_disk.read(offset, out);
    }

private:
    const Source& m_disk;
};

TEST(Convert, passesOnWhatFailedInAThread)
{
    const auto disk = sampleDisk();
    const FailingDisk failing(*disk);
    for (const unsigned threads : {1u, 4u}) {
        try {
            converted(failing, {.threads = threads});
            FAIL() << "it should have failed";
        } catch (const DiskImageError& error) {
            EXPECT_EQ(error.what(), "unreadable at " + std::to_string(40 * 512 + 2 * mebibyte));
        }
    }
}

TEST(Convert, refusesWhatItCannotDo)
{
    const auto disk = sampleDisk();
    EXPECT_THROW(converted(*disk, {.zlibLevel = 0}), DiskImageError);
    EXPECT_THROW(converted(*disk, {.zlibLevel = 10}), DiskImageError);
    EXPECT_THROW(converted(*memoryStorage(Bytes(1000)), {}), DiskImageError);
    EXPECT_THROW(converted(*memoryStorage(Bytes(mebibyte)), {}), DiskImageError);
    const auto used = memoryStorage(Bytes(1));
    EXPECT_THROW(convert(*disk, *used, {}), DiskImageError);
}

TEST(InternetEnabled, changesOnlyItsBit)
{
    const Bytes before = converted(*sampleDisk(), {});
    const auto file = memoryStorage(before);
    setInternetEnabled(*file, true);
    EXPECT_EQ(Image(*file).trailer()->flags, 5u);
    Bytes expected = before;
    expected[before.size() - trailerSize + 15] = 5;
    EXPECT_TRUE(contentOf(*file) == expected);
    setInternetEnabled(*file, false);
    EXPECT_TRUE(contentOf(*file) == before);
}

TEST(InternetEnabled, needsATrailerWithoutASignature)
{
    const auto raw = sampleDisk();
    EXPECT_THROW(setInternetEnabled(*raw, true), DiskImageError);
    EXPECT_THROW(setInternetEnabled(*memoryStorage(), true), DiskImageError);
    TestImage image;
    image.dataFork = Bytes(100);
    image.trailer.signatureLength = 100;
    const auto file = memoryStorage(image.file());
    EXPECT_NO_THROW(setInternetEnabled(*file, false));
    EXPECT_THROW(setInternetEnabled(*file, true), DiskImageError);
}

} // namespace
} // namespace velmora::diskimage::udif
