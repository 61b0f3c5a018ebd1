// Alias records: what is read and can be written says the same when it is read again.

#include "diskimage/finder/alias.h"
#include "diskimage/hfs/names.h"
#include "support/target.h"

using namespace velmora;
using namespace velmora::diskimage;
using namespace velmora::diskimage::finder;

namespace
{

std::string asOnVolume(const std::string& name)
{
    return hfs::posixName(hfs::storedName(name));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    auto target = fuzz::attempt([&] { return readAlias({data, size}); });
    if (!target)
        return 0;
    const auto record = fuzz::attempt([&] { return writeAlias(*target); });
    if (!record)
        return 0;
    target->volumeName = asOnVolume(target->volumeName);
    for (std::string& name : target->path)
        name = asOnVolume(name);
    fuzz::expect(readAlias(*record) == *target, "an alias says what was put into it");
    return 0;
}
