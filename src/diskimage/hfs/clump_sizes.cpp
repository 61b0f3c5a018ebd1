#include "diskimage/base/error.h"
#include "diskimage/hfs/writer.h"

#include <charconv>

namespace velmora::diskimage::hfs
{

static DiskImageError wrongPart(std::string_view part)
{
    return DiskImageError("\"" + std::string(part) +
                          "\" is no clump size: expected parts such as c=64, a=16 or e=16 (blocks).");
}

ClumpSizes parseClumpSizes(std::string_view text)
{
    constexpr std::string_view option = "-c ";
    if (text.substr(0, option.size()) == option) {
        text.remove_prefix(option.size());
    }
    // What the list does not name has the stock size.
    ClumpSizes sizes{0, 0, 0};
    for (bool isLast = false; !isLast;) {
        const auto comma = text.find(',');
        isLast = comma == text.npos;
        const auto part = text.substr(0, comma);
        text.remove_prefix(isLast ? text.size() : comma + 1);

        const char letter = part.empty() ? '\0' : part[0];
        auto* const size = letter == 'c'   ? &sizes.catalogBlocks
                           : letter == 'a' ? &sizes.attributesBlocks
                           : letter == 'e' ? &sizes.extentsBlocks
                                           : nullptr;
        if (size == nullptr || *size != 0 || part.size() < 3 || part[1] != '=') {
            throw wrongPart(part);
        }
        const auto* const end = part.data() + part.size();
        const auto result = std::from_chars(part.data() + 2, end, *size);
        if (result.ec != std::errc{} || result.ptr != end || *size == 0) {
            throw wrongPart(part);
        }
    }
    return sizes;
}

} // namespace velmora::diskimage::hfs
