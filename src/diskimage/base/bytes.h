#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Integers in a given byte order, at a given place. Disk records are read and written with these, never by casting.
/// The caller has checked that the bytes are there.
namespace velmora::diskimage
{

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;
using MutableByteView = std::span<std::uint8_t>;

/// Whether there is nothing but zeros.
inline bool isZero(ByteView bytes)
{
    return bytes.empty() || (bytes[0] == 0 && std::memcmp(bytes.data(), bytes.data() + 1, bytes.size() - 1) == 0);
}

inline std::uint16_t getBE16(const std::uint8_t* p)
{
    return static_cast<std::uint16_t>(p[0] << 8 | p[1]);
}
inline std::uint32_t getBE32(const std::uint8_t* p)
{
    return std::uint32_t{getBE16(p)} << 16 | getBE16(p + 2);
}
inline std::uint64_t getBE64(const std::uint8_t* p)
{
    return std::uint64_t{getBE32(p)} << 32 | getBE32(p + 4);
}
inline std::uint16_t getLE16(const std::uint8_t* p)
{
    return static_cast<std::uint16_t>(p[1] << 8 | p[0]);
}
inline std::uint32_t getLE32(const std::uint8_t* p)
{
    return std::uint32_t{getLE16(p + 2)} << 16 | getLE16(p);
}
inline std::uint64_t getLE64(const std::uint8_t* p)
{
    return std::uint64_t{getLE32(p + 4)} << 32 | getLE32(p);
}

inline void putBE16(std::uint8_t* p, std::uint16_t v)
{
    p[0] = static_cast<std::uint8_t>(v >> 8);
    p[1] = static_cast<std::uint8_t>(v);
}
inline void putBE32(std::uint8_t* p, std::uint32_t v)
{
    putBE16(p, static_cast<std::uint16_t>(v >> 16));
    putBE16(p + 2, static_cast<std::uint16_t>(v));
}
inline void putBE64(std::uint8_t* p, std::uint64_t v)
{
    putBE32(p, static_cast<std::uint32_t>(v >> 32));
    putBE32(p + 4, static_cast<std::uint32_t>(v));
}
inline void putLE16(std::uint8_t* p, std::uint16_t v)
{
    p[0] = static_cast<std::uint8_t>(v);
    p[1] = static_cast<std::uint8_t>(v >> 8);
}
inline void putLE32(std::uint8_t* p, std::uint32_t v)
{
    putLE16(p, static_cast<std::uint16_t>(v));
    putLE16(p + 2, static_cast<std::uint16_t>(v >> 16));
}
inline void putLE64(std::uint8_t* p, std::uint64_t v)
{
    putLE32(p, static_cast<std::uint32_t>(v));
    putLE32(p + 4, static_cast<std::uint32_t>(v >> 32));
}

inline void appendBE16(Bytes& out, std::uint16_t v)
{
    out.resize(out.size() + 2);
    putBE16(out.data() + out.size() - 2, v);
}
inline void appendBE32(Bytes& out, std::uint32_t v)
{
    out.resize(out.size() + 4);
    putBE32(out.data() + out.size() - 4, v);
}
inline void appendBE64(Bytes& out, std::uint64_t v)
{
    out.resize(out.size() + 8);
    putBE64(out.data() + out.size() - 8, v);
}
inline void append(Bytes& out, ByteView bytes)
{
    out.insert(out.end(), bytes.begin(), bytes.end());
}
inline void append(Bytes& out, std::string_view text)
{
    out.insert(out.end(), text.begin(), text.end());
}

/// The bytes of a text, without a copy.
inline ByteView viewOf(std::string_view text)
{
    // Any object may be looked at as unsigned bytes.
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}
/// A copy of bytes as a text.
inline std::string textOf(ByteView bytes)
{
    return {bytes.begin(), bytes.end()};
}

} // namespace velmora::diskimage
