// The resolution of PNG files: a stamped file has it, and is otherwise what it was.

#include "support/repair.h"
#include "support/target.h"
#include "tools/support/png_file.h"

#include <stdexcept>

using namespace velmora;
using namespace velmora::diskimage;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Bytes file(data, data + size);
    fuzz::repairPng(file);
    tools::PngHeader header;
    try {
        header = tools::readPngHeader(file);
    } catch (const std::runtime_error&) {
        return 0;
    }
    const Bytes stamped = tools::withResolution(file, {5669, 2835});
    const tools::PngHeader again = tools::readPngHeader(stamped);
    fuzz::expect(again.resolution && again.resolution->x == 5669 && again.resolution->y == 2835,
                 "a stamped picture has the resolution");
    fuzz::expect(again.width == header.width && again.height == header.height && again.bitDepth == header.bitDepth &&
                     again.colorType == header.colorType,
                 "a stamped picture has the format that it had");
    fuzz::expect(tools::withResolution(stamped, {5669, 2835}) == stamped, "a second stamp changes nothing");
    return 0;
}
