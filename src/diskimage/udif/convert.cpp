// Writing images. A raw one is the disk itself. The others hold, for each extent of the disk, chunks of 1 MiB counted
// from its start, and a table of them; zeros and free space take no room.

#include "diskimage/base/checksum.h"
#include "diskimage/base/crc_algebra.h"
#include "diskimage/base/error.h"
#include "diskimage/base/property_list.h"
#include "diskimage/udif/format.h"
#include "diskimage/udif/in_order.h"
#include "diskimage/udif/zlib_codec.h"

#include <openssl/sha.h>

#include <algorithm>
#include <thread>

namespace velmora::diskimage::udif
{
namespace
{

constexpr std::uint64_t chunkSectors = 2048;
constexpr std::uint64_t chunkSize = chunkSectors * sectorSize;
constexpr std::uint32_t zlibBuffersNeeded = chunkSectors + 8; // sectors, as Apple's writers put it for such chunks

void report(const ConvertOptions& options, std::uint64_t done, std::uint64_t total)
{
    if (options.stopped && options.stopped())
        throw DiskImageError("The conversion was stopped.");
    if (options.progress)
        options.progress(total == 0 ? 1.0 : static_cast<double>(done) / static_cast<double>(total));
}

/// Writes what is not zero; the rest stays a hole.
void writeSparse(Storage& out, std::uint64_t offset, ByteView bytes)
{
    constexpr std::size_t blockSize = 4096;
    std::size_t start = 0; // of the run that is not written yet
    for (std::size_t i = 0; i < bytes.size(); i += blockSize) {
        const std::size_t end = std::min(i + blockSize, bytes.size());
        if (!isZero(bytes.subspan(i, end - i)))
            continue;
        if (start < i)
            out.write(offset + start, bytes.subspan(start, i - start));
        start = end;
    }
    if (start < bytes.size())
        out.write(offset + start, bytes.subspan(start));
}

void copyRaw(const Source& disk, Storage& out, const ConvertOptions& options)
{
    const std::uint64_t size = disk.size();
    Bytes buffer(chunkSize);
    for (ByteRange data = disk.nextData(0); data.start < size; data = disk.nextData(data.end)) {
        while (data.start < data.end) {
            report(options, data.start, size);
            const ByteRange range{data.start, std::min(data.end, data.start + chunkSize)};
            std::uint64_t done = out.copyFrom(disk, range, range.start);
            if (done == 0) {
                const MutableByteView piece = MutableByteView(buffer).first(static_cast<std::size_t>(range.length()));
                disk.read(range.start, piece);
                writeSparse(out, range.start, piece);
                done = piece.size();
            }
            data.start += done;
        }
    }
    out.resize(size);
    report(options, size, size);
}

/// A chunk to be made.
struct Job {
    std::size_t extent = 0;
    std::uint64_t firstSector = 0; ///< relative to the extent
    std::uint64_t sectorCount = 0;
};

/// A chunk made, but for its place in the data fork.
struct Packed {
    ChunkType type = ChunkType::zero;
    Bytes payload{};
    std::uint32_t payloadCrc = 0;
    std::uint32_t expandedCrc = 0;
};

/// The chunks of an extent that the disk holds data for; the others are zeros, and nobody reads them.
void addJobs(const Source& disk, const DiskExtent& extent, std::size_t index, std::vector<Job>& jobs)
{
    const std::uint64_t start = extent.start * sectorSize;
    const std::uint64_t length = extent.count * sectorSize;
    for (std::uint64_t chunk = 0; chunk * chunkSize < length;) {
        const ByteRange data = disk.nextData(start + chunk * chunkSize);
        if (data.start >= start + length)
            return;
        chunk = (data.start - start) / chunkSize;
        const std::uint64_t end = std::min(data.end - start, length);
        for (; chunk * chunkSize < end; ++chunk) {
            const std::uint64_t first = chunk * chunkSectors;
            jobs.push_back({index, first, std::min(chunkSectors, extent.count - first)});
        }
    }
}

std::vector<Job> jobsFor(const Source& disk, const std::vector<DiskExtent>& extents)
{
    std::vector<Job> jobs;
    for (std::size_t i = 0; i < extents.size(); ++i) {
        if (extents[i].kind != ExtentKind::free)
            addJobs(disk, extents[i], i, jobs);
    }
    return jobs;
}

Packed packChunk(ByteView bytes, ZlibCompressor* compressor)
{
    if (isZero(bytes))
        return {};
    Packed packed;
    packed.expandedCrc = crc32(0, bytes);
    if (compressor)
        packed.payload = compressor->compress(bytes);
    packed.type = packed.payload.empty() ? ChunkType::raw : ChunkType::zlib;
    if (packed.payload.empty())
        packed.payload.assign(bytes.begin(), bytes.end());
    packed.payloadCrc = packed.type == ChunkType::raw ? packed.expandedCrc : crc32(0, packed.payload);
    return packed;
}

using Packers = InOrder<Packed>;

/// One function a thread, with a compressor and memory of its own.
std::vector<Packers::Producer> packersFor(const Source& disk, const std::vector<DiskExtent>& extents,
                                          const std::vector<Job>& jobs, const ConvertOptions& options)
{
    const unsigned wanted = options.threads != 0 ? options.threads : std::max(1u, std::thread::hardware_concurrency());
    const std::size_t threads = std::min<std::size_t>(wanted, std::max<std::size_t>(jobs.size(), 1));
    std::vector<Packers::Producer> packers;
    for (std::size_t i = 0; i < threads; ++i) {
        std::optional<ZlibCompressor> compressor;
        if (options.format == Format::udzo)
            compressor.emplace(options.zlibLevel);
        packers.emplace_back([&disk, &extents, &jobs, compressor, chunk = Bytes()](std::size_t index) mutable {
            const Job& job = jobs[index];
            const std::uint64_t sector = extents[job.extent].start + job.firstSector;
            chunk.resize(static_cast<std::size_t>(job.sectorCount * sectorSize));
            readAroundHoles(disk, sector * sectorSize, chunk);
            return packChunk(chunk, compressor ? &*compressor : nullptr);
        });
    }
    return packers;
}

/// What is written after the data fork is put together from this.
struct DataFork {
    std::vector<BlockTable> tables{};
    std::vector<std::uint64_t> ends{}; ///< of the data fork when each table was complete
    std::uint64_t length = 0;
    std::uint32_t crc = 0;
};

std::vector<BlockTable> emptyTables(const std::vector<DiskExtent>& extents)
{
    std::vector<BlockTable> tables;
    for (const DiskExtent& extent : extents) {
        BlockTable table;
        table.name = extent.name + " (" + extent.type + " : " + std::to_string(tables.size()) + ")";
        table.firstSector = extent.start;
        table.sectorCount = extent.count;
        tables.push_back(std::move(table));
    }
    return tables;
}

/// Adds one entry for the zeros between what a table has and a sector. Whether they were a hole or had to be looked at
/// makes no difference.
void addZeros(BlockTable& table, std::uint64_t sector, std::uint64_t place)
{
    const std::uint64_t first =
        table.chunks.empty() ? 0 : table.chunks.back().firstSector + table.chunks.back().sectorCount;
    if (first == sector)
        return;
    const std::uint64_t length = (sector - first) * sectorSize;
    table.chunks.push_back({ChunkType::zero, first, sector - first, place, 0});
    table.checksum = crc32Combined(table.checksum, crc32OfZeros(length), length);
}

/// Adds a chunk to its table and to the data fork. Zeros are left for the next chunk that is not.
void addChunk(DataFork& fork, const Job& job, const Packed& packed, Storage& out)
{
    if (packed.type == ChunkType::zero)
        return;
    BlockTable& table = fork.tables[job.extent];
    addZeros(table, job.firstSector, fork.length);
    table.chunks.push_back({packed.type, job.firstSector, job.sectorCount, fork.length, packed.payload.size()});
    table.checksum = crc32Combined(table.checksum, packed.expandedCrc, job.sectorCount * sectorSize);
    out.write(fork.length, packed.payload);
    fork.crc = crc32Combined(fork.crc, packed.payloadCrc, packed.payload.size());
    fork.length += packed.payload.size();
}

/// Free space needs one entry. Its place is where the data fork has grown to by then.
void closeTable(DataFork& fork, const DiskExtent& extent)
{
    BlockTable& table = fork.tables[fork.ends.size()];
    if (extent.kind == ExtentKind::free)
        table.chunks.push_back({ChunkType::ignored, 0, extent.count, fork.length, 0});
    else
        addZeros(table, extent.count, fork.length);
    fork.ends.push_back(fork.length);
}

DataFork writeDataFork(const Source& disk, const std::vector<DiskExtent>& extents, Storage& out,
                       const ConvertOptions& options)
{
    const std::vector<Job> jobs = jobsFor(disk, extents);
    DataFork fork;
    fork.tables = emptyTables(extents);
    auto packers = packersFor(disk, extents, jobs, options);
    const std::size_t window = 2 * packers.size() + 2;
    report(options, 0, jobs.size());
    Packers::run(jobs.size(), std::move(packers), window, [&](std::size_t index, const Packed& packed) {
        while (fork.ends.size() < jobs[index].extent)
            closeTable(fork, extents[fork.ends.size()]);
        addChunk(fork, jobs[index], packed, out);
        report(options, index + 1, jobs.size());
    });
    while (fork.ends.size() < extents.size())
        closeTable(fork, extents[fork.ends.size()]);
    return fork;
}

/// An element of one of the property list's arrays. Everything in it is text or data.
Plist::Dict plistEntry(Bytes data, std::int64_t id, const std::string& name)
{
    Plist::Dict entry;
    entry.emplace("Attributes", "0x0050");
    entry.emplace("Data", std::move(data));
    entry.emplace("ID", std::to_string(id));
    entry.emplace("Name", name);
    return entry;
}

/// A partition list that has lost its use and whose content has been fixed ever since; Apple's writers still add it.
Plist partitionListEntry()
{
    constexpr std::size_t mapSectorsOffset = 516;
    constexpr std::size_t entryCountOffset = 518;
    Bytes data(1032);
    putBE16(data.data() + mapSectorsOffset, 1);
    putBE16(data.data() + entryCountOffset, 1);
    return plistEntry(std::move(data), 0, "");
}

std::string plistFor(const DataFork& fork, const std::vector<DiskExtent>& extents, Format format)
{
    // Entries are numbered from -1; with a GUID partition map the tables inside count from 0 all the same.
    const bool isGpt = !extents.empty() && extents[0].kind == ExtentKind::protectiveMbr;
    Plist::Array entries;
    for (std::size_t i = 0; i < extents.size(); ++i) {
        const BlockTable& table = fork.tables[i];
        const std::int64_t id = static_cast<std::int64_t>(i) - 1;
        BlockTableHead head;
        head.buffersNeeded = format == Format::udzo && extents[i].kind != ExtentKind::free ? zlibBuffersNeeded : 0;
        head.descriptor = static_cast<std::uint32_t>(isGpt ? id + 1 : id);
        Plist::Dict entry = plistEntry(writeBlockTable(table, head, fork.ends[i]), id, table.name);
        entry.emplace("CFName", table.name);
        entries.emplace_back(std::move(entry));
    }
    Plist::Dict arrays;
    arrays.emplace("blkx", std::move(entries));
    arrays.emplace("plst", Plist::Array{partitionListEntry()});
    Plist::Dict list;
    list.emplace("resource-fork", std::move(arrays));
    return writeXmlPlist(list);
}

std::uint32_t masterCrc(const DataFork& fork)
{
    Bytes values;
    for (const BlockTable& table : fork.tables)
        appendBE32(values, table.checksum);
    return crc32(0, values);
}

/// An identifier in the form of a random one. The property list holds the CRC of every extent and the length of every
/// chunk.
Guid identifierFor(const std::string& plist, std::uint32_t dataCrc)
{
    Bytes content(plist.begin(), plist.end());
    appendBE32(content, dataCrc);
    std::array<std::uint8_t, SHA256_DIGEST_LENGTH> digest{};
    SHA256(content.data(), content.size(), digest.data());
    Guid id{};
    std::copy_n(digest.begin(), id.size(), id.begin());
    id[6] = static_cast<std::uint8_t>((id[6] & 0x0F) | 0x40);
    id[8] = static_cast<std::uint8_t>((id[8] & 0x3F) | 0x80);
    return id;
}

void writeUdif(const Source& disk, Storage& out, const ConvertOptions& options)
{
    const std::vector<DiskExtent> extents = readPartitions(disk);
    const DataFork fork = writeDataFork(disk, extents, out, options);
    const std::string plist = plistFor(fork, extents, options.format);
    out.write(fork.length, viewOf(plist));

    constexpr std::uint32_t wholeDisk = 1;
    constexpr std::uint32_t onePartition = 2;
    Trailer trailer;
    trailer.dataForkLength = fork.length;
    trailer.segmentId = options.segmentId != Guid{} ? options.segmentId : identifierFor(plist, fork.crc);
    trailer.dataChecksum = fork.crc;
    trailer.plistOffset = fork.length;
    trailer.plistLength = plist.size();
    trailer.masterChecksum = masterCrc(fork);
    trailer.imageVariant = extents.size() == 1 ? onePartition : wholeDisk;
    trailer.sectorCount = disk.size() / sectorSize;
    out.write(fork.length + plist.size(), writeTrailer(trailer));
}

} // namespace

void convert(const Source& disk, Storage& out, const ConvertOptions& options)
{
    if (disk.size() % sectorSize != 0)
        throw DiskImageError("The disk's size of " + std::to_string(disk.size()) +
                             " bytes is no whole number of sectors.");
    if (disk.size() / sectorSize > maximumSectorCount)
        throw DiskImageError("The disk is larger than an image can be.");
    if (options.zlibLevel < 1 || options.zlibLevel > 9)
        throw DiskImageError("The compression level " + std::to_string(options.zlibLevel) + " is not from 1 to 9.");
    if (out.size() != 0)
        throw DiskImageError("The image to be written is not empty.");
    if (options.format == Format::udrw)
        copyRaw(disk, out, options);
    else
        writeUdif(disk, out, options);
}

} // namespace velmora::diskimage::udif
