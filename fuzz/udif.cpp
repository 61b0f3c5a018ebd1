// Disk image files, whole.

#include "support/image_reading.h"
#include "support/target.h"

using namespace velmora;
using namespace velmora::diskimage;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::readImage(*memoryStorage(Bytes(data, data + size)));
    return 0;
}
