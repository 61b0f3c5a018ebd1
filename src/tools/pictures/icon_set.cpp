#include "tools/pictures/icon_set.h"

#include "diskimage/finder/icns.h"
#include "platform/file_tree.h"
#include "tools/pictures/decoded_png.h"
#include "tools/support/png_file.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace fs = std::filesystem;

namespace velmora::tools
{

using namespace diskimage;
using finder::IcnsElement;
using finder::IconPixels;
using finder::IconSlot;

namespace
{

bool isSlotName(const std::string& name)
{
    const auto& all = finder::standardIconSlots();
    return std::any_of(all.begin(), all.end(), [&](const IconSlot& slot) { return slot.fileName == name; });
}

IconPixels pixelsOf(const QImage& image)
{
    IconPixels pixels{static_cast<std::uint32_t>(image.width()), static_cast<std::uint32_t>(image.height()), {}};
    for (int y = 0; y < image.height(); ++y)
        append(pixels.rgba, ByteView(image.constScanLine(y), 4 * static_cast<std::size_t>(image.width())));
    return pixels;
}

QImage imageOf(const IconPixels& pixels)
{
    const QImage view(pixels.rgba.data(), static_cast<int>(pixels.width), static_cast<int>(pixels.height),
                      static_cast<qsizetype>(pixels.width) * 4, QImage::Format_RGBA8888);
    return view.copy();
}

IcnsElement elementFor(const IconSlot& slot, const fs::path& file)
{
    const DecodedPng png = readPng(file, 1024);
    const auto side = static_cast<int>(slot.pixels);
    if (png.pixels.width() != side || png.pixels.height() != side)
        throw std::runtime_error("\"" + file.string() + "\" has " + std::to_string(png.pixels.width()) + " x " +
                                 std::to_string(png.pixels.height()) + " pixels instead of " + std::to_string(side) +
                                 " x " + std::to_string(side));
    if (slot.argb)
        return {std::string(slot.type), finder::encodeArgb(pixelsOf(png.pixels))};
    const std::string payload = png.isPlainRgba ? png.file : encodePng(png.pixels);
    const ByteView bytes = viewOf(payload);
    return {std::string(slot.type), Bytes(bytes.begin(), bytes.end())};
}

/// The older elements that hold a picture of the small sizes: 24-bit colour with its mask, or PNG.
struct OlderElement {
    std::string_view slotType;
    std::string_view type;
    std::string_view maskType; ///< empty for PNG
};
constexpr OlderElement olderElements[] = {{"ic04", "is32", "s8mk"},
                                          {"ic04", "icp4", ""},
                                          {"ic05", "il32", "l8mk"},
                                          {"ic05", "icp5", ""},
                                          {"ic07", "it32", "t8mk"}};

const IcnsElement* find(const std::vector<IcnsElement>& elements, std::string_view type)
{
    const auto found =
        std::find_if(elements.begin(), elements.end(), [&](const IcnsElement& e) { return e.type == type; });
    return found == elements.end() ? nullptr : &*found;
}

/// A PNG or ARGB payload as a PNG file of the slot's size, or nothing for another form.
std::optional<std::string> pngOf(const Bytes& payload, std::uint32_t side)
{
    if (isPng(payload)) {
        const PngHeader header = readPngHeader(payload);
        return header.width == side && header.height == side ? std::optional(textOf(payload)) : std::nullopt;
    }
    if (textOf(ByteView(payload).first(std::min<std::size_t>(4, payload.size()))) == "ARGB")
        return encodePng(imageOf(finder::decodeArgb(payload, side)));
    return std::nullopt;
}

std::optional<std::string> pictureFor(const IconSlot& slot, const std::vector<IcnsElement>& elements)
{
    if (const IcnsElement* const element = find(elements, slot.type)) {
        if (auto png = pngOf(element->data, slot.pixels))
            return png;
    }
    for (const OlderElement& older : olderElements) {
        const IcnsElement* const element = older.slotType == slot.type ? find(elements, older.type) : nullptr;
        if (!element)
            continue;
        if (auto png = pngOf(element->data, slot.pixels))
            return png;
        if (older.maskType.empty())
            continue;
        const IcnsElement* const mask = find(elements, older.maskType);
        return encodePng(
            imageOf(finder::decodeRgb24(element->data, mask ? ByteView(mask->data) : ByteView{}, slot.pixels)));
    }
    return std::nullopt;
}

} // namespace

Bytes iconFileFromSet(const fs::path& iconSet)
{
    for (const std::string& name : listFolder(iconSet)) {
        if (name.front() != '.' && !isSlotName(name))
            throw std::runtime_error("\"" + (iconSet / name).string() + "\" is none of the pictures of an icon set");
    }
    std::vector<IcnsElement> elements;
    for (const IconSlot& slot : finder::standardIconSlots()) {
        const fs::path file = iconSet / slot.fileName;
        if (fs::exists(file))
            elements.push_back(elementFor(slot, file));
    }
    if (elements.empty())
        throw std::runtime_error("\"" + iconSet.string() +
                                 "\" holds no picture of an icon set, such as icon_16x16.png");
    return finder::writeIcns(elements);
}

void iconSetFromFile(ByteView iconFile, const fs::path& folder)
{
    const std::vector<IcnsElement> elements = finder::readIcns(iconFile);
    bool isEmpty = true;
    for (const IconSlot& slot : finder::standardIconSlots()) {
        if (const auto png = pictureFor(slot, elements)) {
            writeFile(folder / slot.fileName, *png);
            isEmpty = false;
        }
    }
    if (isEmpty)
        throw std::runtime_error("the icon file holds no picture that can be decoded");
}

} // namespace velmora::tools
