#include "render/icon_pictures.h"

#include "diskimage/base/error.h"
#include "diskimage/finder/icns.h"

#include <optional>
#include <string_view>

namespace velmora
{
namespace
{

using namespace diskimage::finder;

struct RawIcon {
    std::string_view type;
    std::uint32_t side;
    std::string_view maskType; ///< empty for types with alpha of their own
};
constexpr RawIcon rawIcons[] = {
    {"ic04", 16, ""},     {"ic05", 32, ""},     {"icsb", 18, ""},      {"is32", 16, "s8mk"},
    {"il32", 32, "l8mk"}, {"ih32", 48, "h8mk"}, {"it32", 128, "t8mk"},
};

const IcnsElement* find(const std::vector<IcnsElement>& elements, std::string_view type)
{
    for (const IcnsElement& element : elements) {
        if (element.type == type)
            return &element;
    }
    return nullptr;
}

QImage toImage(const IconPixels& icon)
{
    const int width = static_cast<int>(icon.width);
    const int height = static_cast<int>(icon.height);
    return QImage(icon.rgba.data(), width, height, width * 4, QImage::Format_RGBA8888).copy();
}

QImage decodeRaw(const IcnsElement& element, const std::vector<IcnsElement>& all)
{
    for (const RawIcon& raw : rawIcons) {
        if (raw.type != element.type)
            continue;
        if (raw.maskType.empty())
            return toImage(decodeArgb(element.data, raw.side));
        const IcnsElement* mask = find(all, raw.maskType);
        return toImage(
            decodeRgb24(element.data, mask ? diskimage::ByteView(mask->data) : diskimage::ByteView(), raw.side));
    }
    return {};
}

QImage decode(const IcnsElement& element, const std::vector<IcnsElement>& all,
              QImage (*decodePng)(const QByteArray& png))
{
    const QByteArray bytes(reinterpret_cast<const char*>(element.data.data()),
                           static_cast<qsizetype>(element.data.size()));
    if (bytes.startsWith("\x89PNG"))
        return decodePng(bytes);
    try {
        return decodeRaw(element, all);
    } catch (const diskimage::DiskImageError&) {
        return {}; // the next smaller icon may be sound
    }
}

} // namespace

QImage decodeIconFamily(const QByteArray& bytes, QImage (*decodePng)(const QByteArray& png))
{
    std::vector<IcnsElement> elements;
    try {
        elements =
            readIcns(diskimage::viewOf(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size()))));
    } catch (const diskimage::DiskImageError&) {
        return {};
    }
    constexpr int attempts = 16; // a sound family has a picture of each size once
    for (int i = 0; i < attempts; ++i) {
        const IcnsElement* largest = largestIcon(elements);
        if (!largest)
            break;
        const QImage image = decode(*largest, elements, decodePng);
        if (!image.isNull())
            return image;
        elements.erase(elements.begin() + (largest - elements.data()));
    }
    return {};
}

} // namespace velmora
