// Icon family files: "icns", the length of the file, then elements of type, length (its own 8 bytes included) and
// payload. All numbers are big-endian.

#include "diskimage/finder/icns.h"

#include "diskimage/base/error.h"

#include <algorithm>
#include <array>
#include <limits>

namespace velmora::diskimage::finder
{
namespace
{

constexpr std::size_t headerSize = 8;

bool beginsWith(ByteView bytes, std::string_view magic)
{
    const ByteView wanted = viewOf(magic);
    return bytes.size() >= wanted.size() && std::equal(wanted.begin(), wanted.end(), bytes.begin());
}

/// Whether `type` tells how to read a payload that does not say so itself.
bool isRgb24(std::string_view type)
{
    return type == "is32" || type == "il32" || type == "ih32" || type == "it32";
}

bool canBeShown(const IcnsElement& element)
{
    return beginsWith(element.data, "\x89PNG\r\n\x1A\n") || beginsWith(element.data, "ARGB") || isRgb24(element.type);
}

} // namespace

std::vector<IcnsElement> readIcns(ByteView file)
{
    if (file.size() < headerSize || !beginsWith(file, "icns"))
        throw DiskImageError("The file is not an icon family: it does not begin with \"icns\".");
    const std::size_t end = getBE32(file.data() + 4);
    if (end < headerSize || end > file.size())
        throw DiskImageError("The icon family is cut off: its header promises " + std::to_string(end) +
                             " bytes, the file has " + std::to_string(file.size()) + ".");
    std::vector<IcnsElement> elements;
    for (std::size_t offset = headerSize; offset < end;) {
        const std::size_t length = end - offset < headerSize ? 0 : getBE32(file.data() + offset + 4);
        if (length < headerSize || length > end - offset)
            throw DiskImageError("The icon family is damaged: its element at byte " + std::to_string(offset) +
                                 " has an impossible length.");
        const ByteView payload = file.subspan(offset + headerSize, length - headerSize);
        elements.push_back({textOf(file.subspan(offset, 4)), Bytes(payload.begin(), payload.end())});
        offset += length;
    }
    return elements;
}

Bytes writeIcns(const std::vector<IcnsElement>& elements)
{
    Bytes out(headerSize);
    for (const IcnsElement& element : elements) {
        if (element.type.size() != 4)
            throw DiskImageError("\"" + element.type + "\" is not an icon element's type: it needs four characters.");
        constexpr std::size_t limit = std::numeric_limits<std::uint32_t>::max() - headerSize;
        if (element.data.size() > limit || out.size() > limit - element.data.size())
            throw DiskImageError("The icons are too large for one icon family file.");
        append(out, element.type);
        appendBE32(out, static_cast<std::uint32_t>(headerSize + element.data.size()));
        append(out, element.data);
    }
    std::copy_n("icns", 4, out.begin());
    putBE32(out.data() + 4, static_cast<std::uint32_t>(out.size()));
    return out;
}

const std::vector<IconSlot>& standardIconSlots()
{
    // The small 1x slots are not PNG: some parts of the system read those as plain pixels and show noise.
    static const std::vector<IconSlot> slots = {
        {"icon_16x16.png", 16, "ic04", true},     {"icon_16x16@2x.png", 32, "ic11", false},
        {"icon_32x32.png", 32, "ic05", true},     {"icon_32x32@2x.png", 64, "ic12", false},
        {"icon_128x128.png", 128, "ic07", false}, {"icon_128x128@2x.png", 256, "ic13", false},
        {"icon_256x256.png", 256, "ic08", false}, {"icon_256x256@2x.png", 512, "ic14", false},
        {"icon_512x512.png", 512, "ic09", false}, {"icon_512x512@2x.png", 1024, "ic10", false},
    };
    return slots;
}

const IcnsElement* largestIcon(const std::vector<IcnsElement>& elements)
{
    static constexpr std::array<std::string_view, 18> largestFirst = {
        "ic10", "ic09", "ic14", "ic08", "ic13", "ic07", "it32", "ic12", "icp6",
        "ih32", "icp5", "ic05", "ic11", "il32", "icp4", "ic04", "is32", "icsb",
    };
    for (const std::string_view type : largestFirst) {
        for (const IcnsElement& element : elements) {
            if (element.type == type && canBeShown(element))
                return &element;
        }
    }
    return nullptr;
}

} // namespace velmora::diskimage::finder
