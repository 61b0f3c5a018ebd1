#include "diskimage/hfs/entry.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/catalog_records.h"
#include "diskimage/hfs/names.h"

#include <optional>
#include <utility>

namespace velmora::diskimage::hfs
{
namespace
{

std::optional<std::u16string> storedNameOrNothing(std::string_view name)
{
    try {
        return storedName(name);
    } catch (const DiskImageError&) {
        return std::nullopt; // no volume made by the rules holds such a name
    }
}

} // namespace

std::uint16_t Entry::finderFlags() const
{
    return getBE16(finderInfo.data() + finderFlagsOffset);
}

void Entry::setFinderFlags(std::uint16_t flags)
{
    putBE16(finderInfo.data() + finderFlagsOffset, flags);
}

const Entry* findChild(const Entry& folder, std::string_view posixName, NameOrder order)
{
    for (const auto& child : folder.children) {
        if (child.name == posixName) {
            return &child;
        }
    }
    const auto wanted = storedNameOrNothing(posixName);
    if (!wanted) {
        return nullptr;
    }
    for (const auto& child : folder.children) {
        const auto name = storedNameOrNothing(child.name);
        if (name && compareNames(*name, *wanted, order) == 0) {
            return &child;
        }
    }
    return nullptr;
}

Entry* findChild(Entry& folder, std::string_view posixName, NameOrder order)
{
    return const_cast<Entry*>(findChild(std::as_const(folder), posixName, order));
}

} // namespace velmora::diskimage::hfs
