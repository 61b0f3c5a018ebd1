#include "diskimage/base/partition_table.h"
#include "diskimage/udif/format.h"
#include "seeds.h"
#include "support/sparse_disk.h"

#include <algorithm>
#include <limits>

namespace velmora::fuzz
{

using namespace diskimage;
using namespace diskimage::udif;

namespace
{

constexpr std::uint64_t sampleSectors = 104;
constexpr std::uint64_t farAway = std::numeric_limits<std::uint64_t>::max() - 100;

/// A disk with something in its partition.
Bytes sampleDisk()
{
    const auto disk = memoryStorage(Bytes(sampleSectors * sectorSize));
    writeGpt(*disk, PartitionType::hfs, Guid{1, 2, 3}, Guid{4, 5, 6});
    disk->write(partitionPlace(sampleSectors).start * sectorSize + 1000, sampleBytes(1500));
    return bytesOf(*disk);
}

Bytes converted(Format format)
{
    const auto out = memoryStorage();
    ConvertOptions options;
    options.format = format;
    convert(*memoryStorage(sampleDisk()), *out, options);
    return bytesOf(*out);
}

/// The input that puts an image together from these.
Bytes parts(const std::vector<Bytes>& tables, const Bytes& dataFork)
{
    Bytes input{0, static_cast<std::uint8_t>(tables.size())};
    for (const Bytes& table : tables) {
        appendBE16(input, static_cast<std::uint16_t>(table.size()));
        append(input, table);
    }
    append(input, dataFork);
    return input;
}

/// A table of these chunks, which follow one another.
Bytes tableOf(std::uint64_t firstSector, const std::vector<Chunk>& chunks)
{
    BlockTable table;
    table.firstSector = firstSector;
    table.chunks = chunks;
    for (Chunk& chunk : table.chunks) {
        chunk.firstSector = table.sectorCount;
        table.sectorCount += chunk.sectorCount;
    }
    return writeBlockTable(table, {}, 0);
}

/// The data fork of a compressed image and its tables.
Bytes compressedParts()
{
    const Bytes file = converted(Format::udzo);
    const auto source = memoryStorage(file);
    const Image image(*source);
    std::vector<Bytes> tables;
    for (const BlockTable& table : image.tables())
        tables.push_back(writeBlockTable(table, {}, 0));
    return parts(tables, {file.begin(), file.begin() + static_cast<std::ptrdiff_t>(image.trailer()->dataForkLength)});
}

/// An Apple partition map of three entries.
Bytes appleMap()
{
    const struct {
        std::string_view name;
        std::string_view type;
        std::uint32_t start;
        std::uint32_t count;
    } entries[] = {
        {"Apple", "Apple_partition_map", 1, 3}, {"disk image", "Apple_HFS", 4, 8}, {"", "Apple_Free", 12, 4}};
    Bytes disk(16 * sectorSize);
    std::copy_n("ER", 2, disk.begin());
    putBE16(disk.data() + 2, sectorSize);
    std::uint8_t* entry = disk.data();
    for (const auto& [name, type, start, count] : entries) {
        entry += sectorSize;
        std::copy_n("PM", 2, entry);
        putBE32(entry + 4, std::size(entries));
        putBE32(entry + 8, start);
        putBE32(entry + 12, count);
        std::copy(name.begin(), name.end(), entry + 16);
        std::copy(type.begin(), type.end(), entry + 48);
    }
    return disk;
}

} // namespace

std::vector<Seed> imageSeeds()
{
    Bytes far = converted(Format::udro);
    std::uint8_t* trailer = far.data() + far.size() - trailerSize;
    putBE64(trailer + 24, farAway); // the data fork's place
    putBE64(trailer + 492, farAway);
    return {{"compressed", converted(Format::udzo)}, {"plain", converted(Format::udro)}, {"far", std::move(far)}};
}

std::vector<Seed> imageTableSeeds()
{
    constexpr std::uint64_t tebibyte = std::uint64_t{1} << 31; // in sectors
    const Bytes data = sampleBytes(1024);
    std::vector<Chunk> kinds;
    for (const ChunkType type : {ChunkType::zero, ChunkType::ignored, ChunkType::raw, ChunkType::adc, ChunkType::zlib,
                                 ChunkType::bzip2, ChunkType::lzfse, ChunkType::lzma})
        kinds.push_back({type, 0, 2, 0, 1024});
    Bytes far = tableOf(0, {{ChunkType::raw, 0, 2, 0, 1024}});
    putBE64(far.data() + 24, farAway);       // what is added to the offsets of its chunks
    putBE64(far.data() + 204 + 24, farAway); // and such an offset
    Bytes wraps = tableOf(farAway, {{ChunkType::zero, 0, 200, 0, 0}});
    return {{"compressed", compressedParts()},
            {"kinds", parts({tableOf(0, kinds), tableOf(16, kinds)}, data)},
            {"huge", parts({tableOf(0, {{ChunkType::zero, 0, 7 * tebibyte, 0, 0}})}, data)},
            {"far", parts({far}, data)},
            {"wraps", parts({wraps, tableOf(0, {{ChunkType::zero, 0, 8, 0, 0}})}, data)}};
}

std::vector<Seed> partitionSeeds()
{
    Bytes many = sampleDisk();
    putLE32(many.data() + sectorSize + 80, 0xFFFFFFFF); // entries
    Bytes far = sampleDisk();
    putLE64(far.data() + 2 * sectorSize + 40, farAway); // the partition's last sector
    Bytes bare(16 * sectorSize);
    std::copy_n("H+", 2, bare.begin() + 1024);
    return {{"gpt", packDisk(sampleDisk())},
            {"apple", packDisk(appleMap())},
            {"bare", packDisk(bare)},
            {"many", packDisk(many)},
            {"far", packDisk(far)}};
}

} // namespace velmora::fuzz
