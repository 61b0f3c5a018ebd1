// Disk images put together from their parts, so that a changed input reaches the block tables and what they point to
// without passing base64 and XML. Input: the number of sectors that the trailer promises beside those of the tables,
// the number of tables, for each its length (16 bits) and its bytes; what remains is the data fork.

#include "diskimage/base/property_list.h"
#include "diskimage/udif/format.h"
#include "support/image_reading.h"
#include "support/target.h"

using namespace velmora;
using namespace velmora::diskimage;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t sectorCountOffset = 16;
    fuzz::InputReader input({data, size});
    udif::Trailer trailer;
    trailer.sectorCount = input.byte();
    Plist::Array entries;
    for (unsigned left = input.byte(); left > 0; --left) {
        const ByteView table = input.bytes(input.word());
        if (table.size() >= sectorCountOffset + 8)
            trailer.sectorCount += getBE64(table.data() + sectorCountOffset);
        Plist::Dict entry;
        entry.emplace("Name", "extent");
        entry.emplace("Data", Bytes(table.begin(), table.end()));
        entries.emplace_back(std::move(entry));
    }
    Plist::Dict arrays;
    arrays.emplace("blkx", std::move(entries));
    Plist::Dict top;
    top.emplace("resource-fork", std::move(arrays));
    const std::string list = writeXmlPlist(top);
    const ByteView dataFork = input.rest();
    trailer.dataForkLength = dataFork.size();
    trailer.plistOffset = dataFork.size();
    trailer.plistLength = list.size();
    Bytes file(dataFork.begin(), dataFork.end());
    append(file, list);
    append(file, udif::writeTrailer(trailer));
    fuzz::readImage(*memoryStorage(std::move(file)));
    return 0;
}
