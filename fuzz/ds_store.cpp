// .DS_Store files: records and the window's layout survive being written and read again.

#include "diskimage/finder/ds_store.h"
#include "support/target.h"

#include <algorithm>
#include <tuple>

using namespace velmora;
using namespace velmora::diskimage;
using namespace velmora::diskimage::finder;

namespace
{

std::vector<DsRecord> sorted(std::vector<DsRecord> records)
{
    std::sort(records.begin(), records.end(),
              [](const DsRecord& a, const DsRecord& b) { return std::tie(a.name, a.code) < std::tie(b.name, b.code); });
    return records;
}

std::optional<std::vector<DsRecord>> recordsOf(const ReadLayout& read)
{
    return fuzz::attempt([&] { return layoutRecords(read.layout, read.background); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto records = fuzz::attempt([&] { return readDsStore({data, size}); });
    if (!records)
        return 0;
    if (const auto file = fuzz::attempt([&] { return writeDsStore(*records); })) {
        const auto again = readDsStore(*file);
        fuzz::expect(sorted(again) == sorted(*records), "a .DS_Store file holds the records put into it");
        fuzz::expect(writeDsStore(again) == *file, "the same records give the same bytes");
    }
    const auto layout = fuzz::attempt([&] { return readLayout(*records); });
    const auto normal = layout ? recordsOf(*layout) : std::nullopt;
    if (normal)
        fuzz::expect(recordsOf(readLayout(*normal)) == normal, "records say what the layout said");
    return 0;
}
