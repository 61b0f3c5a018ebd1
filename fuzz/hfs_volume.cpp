// HFS+ volumes: read whole, and checked. Reader and checker must agree. Input: a packed disk (support/sparse_disk.h).

#include "diskimage/hfs/volume.h"
#include "support/sparse_disk.h"
#include "support/target.h"
#include "support/volume_content.h"

using namespace velmora;
using namespace velmora::diskimage;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto disk = memoryStorage(fuzz::unpackDisk({data, size}));
    const auto faults = fuzz::faultsOn(*disk);
    const auto volume = fuzz::attempt([&] { return hfs::Volume(*disk); });
    if (!volume) {
        fuzz::expect(!faults.empty(), "what cannot be read has faults");
        return 0;
    }
    for (const auto& [path, digest] : fuzz::contentOf(volume->root())) {
        const auto* found = volume->find(path);
        fuzz::expect(!faults.empty() || (found && found->id == digest.id), "what was read is found by its path");
    }
    return 0;
}
