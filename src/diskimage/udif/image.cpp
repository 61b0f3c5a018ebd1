#include "diskimage/udif/image.h"

#include "diskimage/base/error.h"
#include "diskimage/base/property_list.h"
#include "diskimage/udif/expanded_disk.h"
#include "diskimage/udif/format.h"

#include <algorithm>

namespace velmora::diskimage::udif
{
namespace
{

/// The property list of the largest disk with the smallest usual chunks stays below this.
constexpr std::uint64_t maximumPlistLength = std::uint64_t{256} << 20;

void refuseEncrypted(const Source& file)
{
    constexpr std::size_t magicSize = 8;
    const std::uint64_t size = file.size();
    if (size < magicSize)
        return;
    // The older form has its header at the end.
    if (textOf(file.read(0, magicSize)) == "encrcdsa" || textOf(file.read(size - magicSize, magicSize)) == "cdsaencr")
        throw DiskImageError("The disk image is encrypted; encrypted images cannot be read.");
}

const Plist& required(const Plist& dict, const char* key)
{
    const Plist* value = dict.find(key);
    if (!value)
        throw DiskImageError(std::string("The disk image is damaged: its property list has no \"") + key + "\".");
    return *value;
}

std::string nameIn(const Plist& entry)
{
    for (const char* key : {"CFName", "Name"}) { // old writers had only the second
        const Plist* value = entry.find(key);
        if (const auto* name = value ? value->as<std::string>() : nullptr)
            return *name;
    }
    return {};
}

std::vector<BlockTable> readTables(const Source& file, const Trailer& trailer)
{
    if (trailer.plistLength == 0)
        throw DiskImageError("The disk image has no property list; such old ones cannot be read.");
    if (trailer.plistLength > maximumPlistLength)
        throw DiskImageError("The disk image is damaged: its property list is far too long.");
    const Plist plist = readPlist(file.read(trailer.plistOffset, static_cast<std::size_t>(trailer.plistLength)));
    const auto* entries = required(required(plist, "resource-fork"), "blkx").as<Plist::Array>();
    if (!entries)
        throw DiskImageError("The disk image is damaged: its property list has no list of block tables.");
    std::vector<BlockTable> tables;
    for (const Plist& entry : *entries) {
        const auto* data = required(entry, "Data").as<Bytes>();
        if (!data)
            throw DiskImageError("The disk image is damaged: a block table is not data.");
        tables.push_back(readBlockTable(*data, nameIn(entry), trailer.dataForkLength));
    }
    return tables;
}

/// Every sector of the disk belongs to exactly one table.
void checkCoverage(const std::vector<BlockTable>& tables, std::uint64_t sectorCount)
{
    std::vector<const BlockTable*> sorted;
    for (const BlockTable& table : tables)
        sorted.push_back(&table);
    std::sort(sorted.begin(), sorted.end(), [](const BlockTable* a, const BlockTable* b) {
        return a->firstSector != b->firstSector ? a->firstSector < b->firstSector : a->sectorCount < b->sectorCount;
    });
    std::uint64_t next = 0;
    for (const BlockTable* table : sorted) {
        if (table->firstSector != next)
            throw DiskImageError("The disk image is damaged: its block tables overlap or leave a gap before \"" +
                                 table->name + "\".");
        next += table->sectorCount;
    }
    if (next != sectorCount)
        throw DiskImageError("The disk image is damaged: its block tables cover " + std::to_string(next) + " of " +
                             std::to_string(sectorCount) + " sectors.");
}

} // namespace

struct Image::Impl {
    const Source& file;
    std::optional<Trailer> trailer{};
    std::vector<BlockTable> tables{};
    std::unique_ptr<Source> disk{}; ///< of a UDIF file
};

Image::Image(const Source& file) : m_impl(new Impl{file})
{
    refuseEncrypted(file);
    const std::uint64_t size = file.size();
    const Bytes end = size < trailerSize ? Bytes() : file.read(size - trailerSize, trailerSize);
    if (!isTrailer(end))
        return;
    m_impl->trailer = readTrailer(end, size);
    m_impl->tables = readTables(file, *m_impl->trailer);
    checkCoverage(m_impl->tables, m_impl->trailer->sectorCount);
    m_impl->disk = expandedDisk(file, m_impl->trailer->dataForkOffset, m_impl->tables);
}

Image::~Image() = default;

ImageKind Image::kind() const
{
    return m_impl->trailer ? ImageKind::udif : ImageKind::raw;
}

std::string Image::formatCode() const
{
    if (!m_impl->trailer)
        return "UDRW";
    constexpr std::pair<ChunkType, const char*> codes[] = {
        {ChunkType::lzfse, "ULFO"}, {ChunkType::lzma, "ULMO"}, {ChunkType::bzip2, "UDBZ"},
        {ChunkType::adc, "UDCO"},   {ChunkType::zlib, "UDZO"},
    };
    for (const auto& [type, code] : codes) {
        for (const BlockTable& table : m_impl->tables) {
            const auto isOfType = [wanted = type](const Chunk& chunk) { return chunk.type == wanted; };
            if (std::any_of(table.chunks.begin(), table.chunks.end(), isOfType))
                return code;
        }
    }
    return "UDRO";
}

const std::optional<Trailer>& Image::trailer() const
{
    return m_impl->trailer;
}

const std::vector<BlockTable>& Image::tables() const
{
    return m_impl->tables;
}

const Source& Image::disk() const
{
    return m_impl->disk ? *m_impl->disk : m_impl->file;
}

} // namespace velmora::diskimage::udif
