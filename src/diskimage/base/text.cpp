#include "diskimage/base/text.h"

#include <cstdint>

namespace velmora::diskimage
{

static void appendCodePoint(std::string& out, std::uint32_t c)
{
    const auto put = [&out](std::uint32_t byte) { out += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | c >> 6);
        put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        put(0xE0 | c >> 12);
        put(0x80 | (c >> 6 & 0x3F));
        put(0x80 | (c & 0x3F));
    } else {
        put(0xF0 | c >> 18);
        put(0x80 | (c >> 12 & 0x3F));
        put(0x80 | (c >> 6 & 0x3F));
        put(0x80 | (c & 0x3F));
    }
}

std::string utf8FromUtf16(std::u16string_view utf16)
{
    std::string out;
    out.reserve(utf16.size());
    for (std::size_t i = 0; i < utf16.size(); ++i) {
        std::uint32_t c = utf16[i];
        const bool isHigh = c >= 0xD800 && c < 0xDC00;
        if (isHigh && i + 1 < utf16.size() && utf16[i + 1] >= 0xDC00 && utf16[i + 1] < 0xE000) {
            c = 0x10000 + ((c - 0xD800) << 10) + (utf16[++i] - 0xDC00U);
        } else if (c >= 0xD800 && c < 0xE000) {
            c = 0xFFFD;
        }
        appendCodePoint(out, c);
    }
    return out;
}

} // namespace velmora::diskimage
