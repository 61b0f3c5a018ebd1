// Partition tables, and the conversion of disks that have one. Input: a packed disk (support/sparse_disk.h).

#include "support/image_reading.h"
#include "support/repair.h"
#include "support/sparse_disk.h"
#include "support/target.h"

using namespace velmora;
using namespace velmora::diskimage;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Bytes disk = fuzz::unpackDisk({data, size});
    fuzz::repairGpt(disk);
    fuzz::convertDisk(*memoryStorage(std::move(disk)));
    return 0;
}
