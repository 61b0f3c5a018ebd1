// The run-length coding of icon pixels. Each channel is coded for itself, one after the other. A code byte below 128
// means that so many bytes and one more follow as they are; one from 128 on, that the next byte is repeated 3 to 130
// times.

#include "diskimage/base/error.h"
#include "diskimage/finder/icns.h"

#include <algorithm>
#include <array>

namespace velmora::diskimage::finder
{
namespace
{

constexpr std::uint32_t largestSide = 1024;
constexpr std::size_t shortestRun = 3;
constexpr std::size_t longestRun = 130;
constexpr std::size_t longestLiteral = 128;

/// Position of each ARGB channel in an RGBA pixel.
constexpr std::array<std::size_t, 4> argbChannels = {3, 0, 1, 2};

std::size_t pixelCount(std::uint32_t side)
{
    if (side == 0 || side > largestSide)
        throw DiskImageError("An icon cannot be " + std::to_string(side) + " pixels wide.");
    return std::size_t{side} * side;
}

std::size_t runLengthAt(ByteView bytes, std::size_t offset)
{
    const std::size_t limit = std::min(bytes.size() - offset, longestRun);
    std::size_t length = 1;
    while (length < limit && bytes[offset + length] == bytes[offset])
        ++length;
    return length;
}

void appendLiterals(Bytes& out, ByteView literals)
{
    while (!literals.empty()) {
        const std::size_t count = std::min(literals.size(), longestLiteral);
        out.push_back(static_cast<std::uint8_t>(count - 1));
        append(out, literals.first(count));
        literals = literals.subspan(count);
    }
}

void appendCoded(Bytes& out, ByteView channel)
{
    std::size_t literalStart = 0;
    for (std::size_t i = 0; i < channel.size();) {
        const std::size_t run = runLengthAt(channel, i);
        if (run >= shortestRun) {
            appendLiterals(out, channel.subspan(literalStart, i - literalStart));
            out.push_back(static_cast<std::uint8_t>(run + 125));
            out.push_back(channel[i]);
            literalStart = i + run;
        }
        i += run;
    }
    appendLiterals(out, channel.subspan(literalStart));
}

/// The first `size` bytes that the code expands to; what follows them is ignored.
Bytes expanded(ByteView code, std::size_t size)
{
    Bytes out;
    out.reserve(size + longestRun);
    for (std::size_t i = 0; out.size() < size;) {
        if (i >= code.size())
            throw DiskImageError("The icon's pixels are cut off.");
        const std::size_t byte = code[i++];
        const std::size_t needed = byte < 128 ? byte + 1 : 1;
        if (needed > code.size() - i)
            throw DiskImageError("The icon's pixels are cut off.");
        if (byte < 128)
            append(out, code.subspan(i, needed));
        else
            out.insert(out.end(), byte - 125, code[i]);
        i += needed;
    }
    out.resize(size);
    return out;
}

} // namespace

Bytes encodeArgb(const IconPixels& pixels)
{
    const std::size_t count = pixelCount(pixels.width);
    if (pixels.height != pixels.width || pixels.rgba.size() != count * 4)
        throw DiskImageError("An icon must be square.");
    Bytes out{'A', 'R', 'G', 'B'};
    Bytes channel(count);
    for (const std::size_t position : argbChannels) {
        for (std::size_t i = 0; i < count; ++i)
            channel[i] = pixels.rgba[i * 4 + position];
        appendCoded(out, channel);
    }
    out.push_back(0); // without it some decoders lose the last run of blue
    return out;
}

IconPixels decodeArgb(ByteView payload, std::uint32_t side)
{
    const std::size_t count = pixelCount(side);
    const ByteView magic = viewOf("ARGB");
    if (payload.size() < magic.size() || !std::equal(magic.begin(), magic.end(), payload.begin()))
        throw DiskImageError("The icon does not begin with \"ARGB\".");
    const Bytes planes = expanded(payload.subspan(magic.size()), count * 4);
    IconPixels result{side, side, Bytes(count * 4)};
    for (std::size_t channel = 0; channel < 4; ++channel) {
        for (std::size_t i = 0; i < count; ++i)
            result.rgba[i * 4 + argbChannels[channel]] = planes[channel * count + i];
    }
    return result;
}

IconPixels decodeRgb24(ByteView payload, ByteView mask, std::uint32_t side)
{
    const std::size_t count = pixelCount(side);
    if (!mask.empty() && mask.size() < count)
        throw DiskImageError("The icon's mask is cut off.");
    IconPixels result{side, side, Bytes(count * 4, 0xFF)};
    const bool raw = payload.size() == count * 3;
    Bytes planes;
    if (!raw) {
        constexpr std::uint32_t sideWithPrefix = 128; // "it32" alone begins with four zero bytes
        const bool prefixed = side == sideWithPrefix && payload.size() >= 4 && getBE32(payload.data()) == 0;
        planes = expanded(payload.subspan(prefixed ? 4 : 0), count * 3);
    }
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t channel = 0; channel < 3; ++channel)
            result.rgba[i * 4 + channel] = raw ? payload[i * 3 + channel] : planes[channel * count + i];
        if (!mask.empty())
            result.rgba[i * 4 + 3] = mask[i];
    }
    return result;
}

} // namespace velmora::diskimage::finder
