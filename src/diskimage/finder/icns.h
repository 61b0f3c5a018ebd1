#pragma once

#include "diskimage/base/bytes.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::diskimage::finder
{

/// One element of an icon family file: a four-character type and its payload.
struct IcnsElement {
    std::string type{};
    Bytes data{};
    bool operator==(const IcnsElement&) const = default;
};

/// The file's elements; lengths are checked. Throws DiskImageError.
std::vector<IcnsElement> readIcns(ByteView file);
Bytes writeIcns(const std::vector<IcnsElement>& elements);

/// One of the ten pictures of an icon set.
struct IconSlot {
    std::string_view fileName; ///< in the ".iconset" folder
    std::uint32_t pixels;
    std::string_view type; ///< element type
    bool argb;             ///< stored as run-length coded ARGB instead of PNG
};
/// The ten standard icons in the icon set's order.
const std::vector<IconSlot>& standardIconSlots();

/// Straight RGBA pixels, rows from the top.
struct IconPixels {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    Bytes rgba{};
};

/// The run-length coded "ARGB" payload of a square icon, and back.
Bytes encodeArgb(const IconPixels& pixels);
IconPixels decodeArgb(ByteView payload, std::uint32_t side);

/// The classic 24-bit icon types (is32, il32, ih32, it32) with their mask, raw or run-length coded.
IconPixels decodeRgb24(ByteView payload, ByteView mask, std::uint32_t side);

/// The element best suited for showing the icon large, whose payload is PNG, ARGB or 24-bit; null when there is none.
const IcnsElement* largestIcon(const std::vector<IcnsElement>& elements);

} // namespace velmora::diskimage::finder
