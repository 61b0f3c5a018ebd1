#include "diskimage/base/crc_algebra.h"
#include "diskimage/udif/test_images.h"
#include "diskimage/udif/zlib_codec.h"

#include <gmock/gmock.h>

#include <thread>

namespace velmora::diskimage::udif
{
namespace
{

using testing::HasSubstr;

/// Two extents, 3 and 5 sectors long, the payloads not in the order of the sectors.
struct Sample {
    Sample()
    {
        const Bytes stream = ZlibCompressor(6).compress(compressibleBytes(3 * 512));
        first.sectorCount = 3;
        first.chunks = {{ChunkType::zlib, 0, 3, 1024, stream.size()}};
        second.firstSector = 3;
        second.sectorCount = 5;
        second.chunks = {
            {ChunkType::raw, 0, 2, 0, 1024}, {ChunkType::ignored, 2, 2, 7, 0}, {ChunkType::zero, 4, 1, 9, 0}};
        image.dataFork = randomBytes(1024);
        append(image.dataFork, stream);
        disk = compressibleBytes(3 * 512);
        append(disk, ByteView(image.dataFork).first(1024));
        disk.resize(8 * 512);
        first.checksum = crc32(0, ByteView(disk).first(1536));
        second.checksum = crc32(crc32(0, ByteView(disk).subspan(1536, 1024)), Bytes(512));
        image.trailer.sectorCount = 8;
        update();
    }

    void update()
    {
        const std::uint64_t end = image.dataFork.size();
        image.tables = {writeBlockTable(first, {}, end), writeBlockTable(second, {}, end)};
    }

    BlockTable first;
    BlockTable second;
    TestImage image;
    Bytes disk;
};

TEST(Image, readsChunksAtAnyPlace)
{
    const Sample sample;
    const auto file = memoryStorage(sample.image.file());
    const Image image(*file);
    ASSERT_EQ(image.disk().size(), sample.disk.size());
    for (std::size_t offset = 0; offset < sample.disk.size(); offset += 97) {
        for (const std::size_t length :
             {std::size_t{0}, std::size_t{1}, std::size_t{600}, sample.disk.size() - offset}) {
            const std::size_t count = std::min(length, sample.disk.size() - offset);
            const auto begin = sample.disk.begin() + static_cast<std::ptrdiff_t>(offset);
            ASSERT_EQ(image.disk().read(offset, count), Bytes(begin, begin + static_cast<std::ptrdiff_t>(count)));
        }
    }
    EXPECT_THROW((void)image.disk().read(sample.disk.size(), 1), DiskImageError);
    EXPECT_THROW((void)image.disk().read(~std::uint64_t{0}, 2), DiskImageError);
}

TEST(Image, readsTheTrailerOfParallelWriters)
{
    Sample sample;
    sample.image.trailer.segmentNumber = sample.image.trailer.segmentCount = 0;
    sample.image.trailer.dataChecksumType = 0;
    sample.image.trailer.masterChecksumType = 0;
    std::swap(sample.second.chunks[0], sample.second.chunks[2]); // the table's order does not matter for reading
    sample.update();
    const auto file = memoryStorage(sample.image.file());
    const Image image(*file);
    EXPECT_EQ(contentOf(image.disk()), sample.disk);
    EXPECT_EQ(verifyChecksums(*file, image).size(), 2u); // those that are there
}

TEST(Image, readsTablesInAnyOrderAndWithABaseOfTheirOwn)
{
    Sample sample;
    sample.second.dataOffset = 24;
    sample.image.dataFork.insert(sample.image.dataFork.begin(), 24, 0xAA);
    sample.first.chunks[0].offset += 24;
    sample.update();
    std::swap(sample.image.tables[0], sample.image.tables[1]);
    const auto file = memoryStorage(sample.image.file());
    EXPECT_EQ(contentOf(Image(*file).disk()), sample.disk);
}

TEST(Image, isReadFromManyThreadsAtOnce)
{
    const auto disk = sampleDisk(24 * 2048);
    const Bytes content = contentOf(*disk);
    const auto file = memoryStorage(converted(*disk, {}));
    const Image image(*file);
    std::vector<std::thread> threads;
    std::vector<int> wrong(4);
    for (std::size_t t = 0; t < wrong.size(); ++t) {
        threads.emplace_back([&, t] {
            std::mt19937 engine(static_cast<unsigned>(t));
            for (int i = 0; i < 200; ++i) {
                const std::size_t offset = engine() % (content.size() - 5000);
                const Bytes read = image.disk().read(offset, 5000);
                wrong[t] +=
                    !std::equal(read.begin(), read.end(), content.begin() + static_cast<std::ptrdiff_t>(offset));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, std::vector<int>(4));
}

TEST(Image, namesKindsThatItCannotExpand)
{
    const struct {
        ChunkType type;
        const char* code;
        const char* name;
    } kinds[] = {{ChunkType::adc, "UDCO", "ADC"},
                 {ChunkType::bzip2, "UDBZ", "bzip2"},
                 {ChunkType::lzfse, "ULFO", "LZFSE"},
                 {ChunkType::lzma, "ULMO", "LZMA"}};
    for (const auto& kind : kinds) {
        SCOPED_TRACE(kind.name);
        Sample sample;
        sample.first.chunks[0].type = kind.type;
        sample.update();
        const auto file = memoryStorage(sample.image.file());
        const Image image(*file);
        EXPECT_EQ(image.formatCode(), kind.code);
        EXPECT_EQ(image.disk().read(3 * 512, 1024), Bytes(sample.disk.begin() + 1536, sample.disk.begin() + 2560));
        try {
            (void)image.disk().read(0, 1);
            FAIL() << "it should have failed";
        } catch (const DiskImageError& error) {
            EXPECT_THAT(error.what(), HasSubstr(std::string("compressed with ") + kind.name));
        }
    }
}

TEST(Image, refusesEncryptedFiles)
{
    Bytes current = randomBytes(2000);
    std::copy_n("encrcdsa", 8, current.begin());
    Bytes old = randomBytes(2000);
    std::copy_n("cdsaencr", 8, old.end() - 8);
    EXPECT_THAT(openingError(current), HasSubstr("encrypted"));
    EXPECT_THAT(openingError(old), HasSubstr("encrypted"));
}

TEST(Image, takesAnythingElseForARawDisk)
{
    for (const std::size_t size : {0u, 5u, 511u, 512u, 4096u})
        EXPECT_EQ(openingError(Bytes(size)), "") << size;
}

TEST(Checksums, followTheFormat)
{
    // The values of an image of one disk in three formats.
    const std::uint32_t extents[] = {0x6FE4304C, 0xC283684B, 0xA0977C43, 0, 0x9F00F958, 0, 0xA0977C43, 0x95FF3DAB};
    TestImage test;
    for (const std::uint32_t checksum : extents) {
        BlockTable table;
        table.firstSector = test.tables.size() * 6;
        table.sectorCount = 6;
        table.checksum = checksum;
        table.chunks = {{ChunkType::ignored, 0, 6, 0, 0}};
        test.tables.push_back(writeBlockTable(table, {}, 0));
    }
    test.trailer.sectorCount = 48;
    const auto file = memoryStorage(test.file());
    const auto results = verifyChecksums(*file, Image(*file));
    ASSERT_EQ(results.size(), 10u);
    EXPECT_EQ(results.back().computed, 0x0976366C);
    EXPECT_EQ(results[3].computed, 0u);           // free space counts for nothing …
    EXPECT_EQ(crc32OfZeros(6 * 512), 0x67E6C984); // … unlike zeros
}

TEST(Checksums, areCombinedFromPieces)
{
    const Bytes bytes = randomBytes(100000);
    const std::uint32_t whole = crc32(0, bytes);
    for (const std::size_t cut : {std::size_t{0}, std::size_t{1}, std::size_t{4096}, bytes.size()}) {
        const ByteView view(bytes);
        EXPECT_EQ(crc32Combined(crc32(0, view.first(cut)), crc32(0, view.subspan(cut)), bytes.size() - cut), whole);
    }
    for (const std::size_t length : {0u, 1u, 511u, 1000000u})
        EXPECT_EQ(crc32OfZeros(length), crc32(0, Bytes(length)));
}

TEST(Checksums, noticeEveryChangedByte)
{
    const Bytes good = converted(*sampleDisk(), {.format = Format::udro});
    const Trailer trailer = readTrailer(ByteView(good).last(trailerSize), good.size());
    const auto failing = [](const Bytes& bytes) {
        const auto file = memoryStorage(bytes);
        std::vector<std::string> names;
        for (const ChecksumResult& result : verifyChecksums(*file, Image(*file))) {
            if (!result.ok())
                names.push_back(result.name);
        }
        return names;
    };
    EXPECT_THAT(failing(good), testing::IsEmpty());
    const struct {
        const char* name;
        std::size_t offset;
        std::vector<std::string> failing;
    } flips[] = {
        {"first byte of the data", 0, {"Protective Master Boot Record (MBR : 0)", "data fork"}},
        {"inside the volume", mebibyte, {"disk image (Apple_HFS : 4)", "data fork"}},
        {"last byte of the data", trailer.dataForkLength - 1, {"GPT Header (Backup GPT Header : 7)", "data fork"}},
        {"data checksum", good.size() - trailerSize + 91, {"data fork"}},
        {"master checksum", good.size() - trailerSize + 363, {"master"}},
    };
    for (const auto& flip : flips) {
        SCOPED_TRACE(flip.name);
        Bytes bad = good;
        bad[flip.offset] ^= 0x10;
        EXPECT_EQ(failing(bad), flip.failing);
    }
}

TEST(Checksums, noticeAChangedExtentChecksumAndADamagedStream)
{
    Sample sample;
    ++sample.first.checksum;
    sample.image.trailer.dataChecksum = crc32(0, sample.image.dataFork);
    sample.update();
    const auto file = memoryStorage(sample.image.file());
    const auto results = verifyChecksums(*file, Image(*file));
    ASSERT_EQ(results.size(), 4u);
    EXPECT_FALSE(results[0].ok());
    EXPECT_TRUE(results[1].ok());
    EXPECT_TRUE(results[2].ok());
    EXPECT_FALSE(results[3].ok());

    sample.image.dataFork[1024 + 30] ^= 1;
    const auto damaged = memoryStorage(sample.image.file());
    EXPECT_THROW((void)verifyChecksums(*damaged, Image(*damaged)), DiskImageError);
}

TEST(HostileImage, endsInAnErrorForEveryFieldOfATable)
{
    const Sample sample;
    const std::uint64_t values[] = {0, 1, 2, 0x7FFFFFFF, 0xFFFFFFFF, 0x7FFFFFFFFFFFFFFF, ~std::uint64_t{0}};
    for (std::size_t table = 0; table < 2; ++table) {
        for (std::size_t offset = 0; offset + 8 <= sample.image.tables[table].size(); offset += 4) {
            for (const std::uint64_t value : values) {
                TestImage image = sample.image;
                putBE64(image.tables[table].data() + offset, value);
                try {
                    const auto file = memoryStorage(image.file());
                    const Image opened(*file);
                    ASSERT_EQ(opened.disk().size(), sample.disk.size());
                    (void)verifyChecksums(*file, opened);
                } catch (const DiskImageError&) { // either is right, but nothing else
                }
            }
        }
    }
}

TEST(HostileImage, endsInAnErrorForEveryFieldOfTheTrailer)
{
    const Sample sample;
    const Bytes good = sample.image.file();
    const std::uint64_t values[] = {0, 1, 511, 0x7FFFFFFF, 0xFFFFFFFF, 0x7FFFFFFFFFFFFFFF, ~std::uint64_t{0}};
    for (std::size_t offset = 4; offset + 8 <= trailerSize; offset += 4) {
        for (const std::uint64_t value : values) {
            Bytes bad = good;
            putBE64(bad.data() + bad.size() - trailerSize + offset, value);
            try {
                const auto file = memoryStorage(bad);
                const Image opened(*file);
                (void)verifyChecksums(*file, opened);
            } catch (const DiskImageError&) {
            }
        }
    }
}

TEST(HostileImage, endsInAnErrorWhereverATableIsCut)
{
    const Sample sample;
    for (std::size_t table = 0; table < 2; ++table) {
        for (std::size_t length = 0; length < sample.image.tables[table].size(); length += 4) {
            TestImage image = sample.image;
            image.tables[table].resize(length);
            EXPECT_NE(openingError(image.file()), "") << length;
        }
    }
}

TEST(HostileImage, isToldWhatIsWrong)
{
    const struct {
        const char* name;
        std::function<void(Sample&)> spoil;
        const char* message;
    } cases[] = {
        {"gap between chunks", [](Sample& s) { s.second.chunks[1].sectorCount = 1; }, "gap"},
        {"overlapping chunks",
         [](Sample& s) {
             s.second.chunks[1] = {ChunkType::zero, 1, 3, 0, 0};
         },
         "overlap"},
        {"chunks too short for the extent", [](Sample& s) { s.second.chunks.pop_back(); }, "cover 4 of 5"},
        {"chunk outside its extent", [](Sample& s) { s.second.chunks[2].sectorCount = 2; }, "outside its extent"},
        {"chunk start that wraps", [](Sample& s) { s.second.chunks[2].firstSector = ~0ull; }, "outside its extent"},
        {"raw length", [](Sample& s) { s.second.chunks[0].length = 1023; }, "does not suit"},
        {"data beyond the data fork", [](Sample& s) { s.first.chunks[0].length += 1; }, "outside the file's data"},
        {"offset that wraps", [](Sample& s) { s.first.chunks[0].offset = ~0ull; }, "outside the file's data"},
        {"base that wraps", [](Sample& s) { s.first.dataOffset = ~0ull; }, "outside the file's data"},
        {"unknown kind", [](Sample& s) { s.first.chunks[0].type = static_cast<ChunkType>(3); }, "unknown kind"},
        {"huge compressed chunk", [](Sample& s) { s.first.sectorCount = s.first.chunks[0].sectorCount = 1 << 20; },
         "too much at once"},
        {"huge disk", [](Sample& s) { s.image.trailer.sectorCount = 1ull << 60; }, "more than any disk has"},
        {"gap between tables", [](Sample& s) { s.second.firstSector = 4; }, "overlap or leave a gap"},
        {"overlapping tables", [](Sample& s) { s.second.firstSector = 2; }, "overlap or leave a gap"},
        {"fewer sectors than promised", [](Sample& s) { s.image.trailer.sectorCount = 9; }, "cover 8 of 9"},
        {"a segment of several", [](Sample& s) { s.image.trailer.segmentCount = 2; }, "segments"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        Sample sample;
        row.spoil(sample);
        sample.update();
        EXPECT_THAT(openingError(sample.image.file()), HasSubstr(row.message));
    }
}

TEST(HostileImage, mayHaveAPropertyListOfAnyShape)
{
    const Sample sample;
    const struct {
        const char* name;
        std::function<void(Plist::Dict&)> edit;
    } cases[] = {
        {"empty", [](Plist::Dict& list) { list.clear(); }},
        {"no fork", [](Plist::Dict& list) { list["resource-fork"] = 1; }},
        {"no tables", [](Plist::Dict& list) { list["resource-fork"] = Plist::Dict{}; }},
        {"tables are a text",
         [](Plist::Dict& list) {
             list["resource-fork"] = Plist::Dict{{"blkx", "x"}};
         }},
        {"no table at all",
         [](Plist::Dict& list) {
             list["resource-fork"] = Plist::Dict{{"blkx", Plist::Array{}}};
         }},
        {"a table is a number",
         [](Plist::Dict& list) {
             list["resource-fork"] = Plist::Dict{{"blkx", Plist::Array{Plist(1)}}};
         }},
        {"a table without data",
         [](Plist::Dict& list) {
             list["resource-fork"] = Plist::Dict{{"blkx", Plist::Array{Plist(Plist::Dict{{"Data", 1}})}}};
         }},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        EXPECT_NE(openingError(sample.image.file(row.edit)), "");
    }
}

TEST(HostileImage, withTerabytesOfZerosIsVerifiedAtOnce)
{
    BlockTable table;
    table.sectorCount = maximumSectorCount;
    table.chunks = {{ChunkType::zero, 0, maximumSectorCount, 0, 0}};
    table.checksum = crc32OfZeros(maximumSectorCount * sectorSize);
    TestImage test;
    test.tables = {writeBlockTable(table, {}, 0)};
    test.trailer.sectorCount = maximumSectorCount;
    const auto file = memoryStorage(test.file());
    EXPECT_TRUE(verifyChecksums(*file, Image(*file))[0].ok());
}

} // namespace
} // namespace velmora::diskimage::udif
