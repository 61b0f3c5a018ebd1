#include "tools/support/png_file.h"

#include "diskimage/base/checksum.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <stdexcept>
#include <string>

namespace velmora::tools
{

using namespace diskimage;

namespace
{

constexpr std::array<std::uint8_t, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::size_t chunkOverhead = 12; // length, type, CRC
constexpr std::size_t headerLength = 13;
constexpr std::size_t resolutionLength = 9;
constexpr std::uint32_t largestLength = 0x7FFFFFFF;
constexpr double metresPerInch = 0.0254;

struct PngChunk {
    std::string_view type{};
    ByteView data{};
    ByteView whole{};
};

[[noreturn]] void fail(const std::string& reason)
{
    throw std::runtime_error("damaged PNG file: " + reason);
}

PngChunk chunkAt(ByteView file, std::size_t offset)
{
    const std::string where = " at byte " + std::to_string(offset);
    if (file.size() - offset < chunkOverhead)
        fail("it ends inside a chunk" + where);
    const std::uint32_t length = getBE32(file.data() + offset);
    if (length > largestLength || length > file.size() - offset - chunkOverhead)
        fail("a chunk reaches beyond the end" + where);
    const ByteView whole = file.subspan(offset, chunkOverhead + length);
    if (crc32(0, whole.subspan(4, 4 + length)) != getBE32(whole.data() + 8 + length))
        fail("wrong checksum of the chunk" + where);
    const ByteView type = whole.subspan(4, 4);
    return {.type = {reinterpret_cast<const char*>(type.data()), type.size()}, // any bytes may be looked at as text
            .data = whole.subspan(8, length),
            .whole = whole};
}

/// Calls `visit` for each chunk from IHDR to IEND. What follows is not part of the picture.
void forEachChunk(ByteView file, const std::function<void(const PngChunk&)>& visit)
{
    if (!isPng(file))
        throw std::runtime_error("not a PNG file");
    bool hasPixels = false;
    for (std::size_t offset = signature.size();;) {
        const PngChunk chunk = chunkAt(file, offset);
        if ((offset == signature.size()) != (chunk.type == "IHDR"))
            fail("its header is not the first chunk");
        if (chunk.type == "IHDR" && chunk.data.size() != headerLength)
            fail("its header has a wrong length");
        if (chunk.type == "pHYs" && chunk.data.size() != resolutionLength)
            fail("its resolution has a wrong length");
        hasPixels = hasPixels || chunk.type == "IDAT";
        visit(chunk);
        if (chunk.type == "IEND")
            break;
        offset += chunk.whole.size();
    }
    if (!hasPixels)
        fail("it has no pixels");
}

void appendResolutionChunk(Bytes& out, PngResolution resolution)
{
    appendBE32(out, resolutionLength);
    const std::size_t start = out.size();
    append(out, "pHYs");
    appendBE32(out, resolution.x);
    appendBE32(out, resolution.y);
    out.push_back(1); // the unit is the metre
    appendBE32(out, crc32(0, ByteView(out).subspan(start)));
}

} // namespace

bool isPng(ByteView file)
{
    return file.size() >= signature.size() && std::equal(signature.begin(), signature.end(), file.begin());
}

PngHeader readPngHeader(ByteView file)
{
    PngHeader header;
    forEachChunk(file, [&](const PngChunk& chunk) {
        if (chunk.type == "IHDR") {
            header.width = getBE32(chunk.data.data());
            header.height = getBE32(chunk.data.data() + 4);
            header.bitDepth = chunk.data[8];
            header.colorType = chunk.data[9];
        } else if (chunk.type == "pHYs" && chunk.data[8] == 1) {
            header.resolution = PngResolution{getBE32(chunk.data.data()), getBE32(chunk.data.data() + 4)};
        }
    });
    if (header.width == 0 || header.height == 0 || header.width > largestLength || header.height > largestLength)
        fail("its size is impossible");
    return header;
}

Bytes withResolution(ByteView file, PngResolution resolution)
{
    readPngHeader(file);
    Bytes out(signature.begin(), signature.end());
    std::size_t copied = signature.size();
    forEachChunk(file, [&](const PngChunk& chunk) {
        copied += chunk.whole.size();
        if (chunk.type == "pHYs")
            return;
        append(out, chunk.whole);
        if (chunk.type == "IHDR") // anywhere before the pixels and after the header will do
            appendResolutionChunk(out, resolution);
    });
    append(out, file.subspan(copied));
    return out;
}

std::uint32_t dotsPerMetre(double perInch)
{
    return static_cast<std::uint32_t>(std::lround(perInch / metresPerInch));
}

double dotsPerInch(std::uint32_t perMetre)
{
    return std::round(perMetre * metresPerInch);
}

} // namespace velmora::tools
