#include "support/volume_content.h"

#include "diskimage/base/checksum.h"
#include "diskimage/hfs/check.h"
#include "diskimage/hfs/volume_header.h"
#include "support/target.h"

#include <algorithm>

namespace velmora::fuzz
{

using namespace diskimage;
using namespace diskimage::hfs;

namespace
{

using Opener = std::function<std::unique_ptr<Source>()>;

std::uint32_t crcOfFork(std::uint32_t crc, const Opener& open, std::uint64_t size)
{
    constexpr std::uint64_t most = 4096;
    expect(size == 0 || open, "a fork with bytes can be opened");
    if (!open)
        return crc;
    const auto fork = attempt(open); // those of compressed files are refused
    if (!fork)
        return crc;
    expect((*fork)->size() == size, "a fork has the size that its entry says");
    const std::uint64_t count = std::min(size, most);
    crc = crc32(crc, (*fork)->read(0, static_cast<std::size_t>(count)));
    return crc32(crc, (*fork)->read(size - count, static_cast<std::size_t>(count)));
}

EntryDigest digestOf(const Entry& entry)
{
    std::uint32_t crc = crc32(0, viewOf(entry.linkTarget));
    for (const auto& [name, value] : entry.attributes)
        crc = crc32(crc32(crc, viewOf(name)), value);
    crc = crcOfFork(crc, entry.openData, entry.dataSize);
    crc = crcOfFork(crc, entry.openResource, entry.resourceSize);
    return {entry.kind, entry.id, entry.mode, entry.dataSize, entry.resourceSize, crc};
}

void collect(std::map<std::string, EntryDigest>& content, const Entry& folder, const std::string& path)
{
    for (const Entry& child : folder.children) {
        expect(child.name.find('/') == std::string::npos, "a name holds no slash");
        const std::string own = path + "/" + child.name;
        content.emplace(own, digestOf(child));
        collect(content, child, own);
    }
}

} // namespace

std::map<std::string, EntryDigest> contentOf(const Entry& root)
{
    std::map<std::string, EntryDigest> content;
    collect(content, root, "");
    return content;
}

std::vector<std::string> faultsOn(const Source& disk)
{
    const auto place = attempt([&] { return locateVolume(disk); });
    if (!place)
        return {"The volume's place cannot be found."};
    return checkVolume(*sliceOf(disk, place->offset, place->length));
}

} // namespace velmora::fuzz
