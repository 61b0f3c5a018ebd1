#include "diskimage/base/property_list_text.h"

#include "diskimage/base/error.h"

#include <cstddef>
#include <cstdint>

namespace velmora::diskimage
{
namespace
{

[[noreturn]] void failInvalid(std::size_t offset)
{
    throw DiskImageError("The property list holds a text that is not valid UTF-8 (byte " + std::to_string(offset) +
                         " of the text).");
}

/// The character at `offset`, which moves past it.
char32_t nextCharacter(std::string_view text, std::size_t& offset)
{
    const std::size_t start = offset;
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byteAt(offset++);
    if (first < 0x80)
        return first;
    const unsigned more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    if (first < 0xC2 || first > 0xF4 || text.size() - offset < more)
        failInvalid(start);
    char32_t character = first & (0x3Fu >> more);
    for (unsigned i = 0; i < more; ++i) {
        const unsigned next = byteAt(offset++);
        if ((next & 0xC0) != 0x80)
            failInvalid(start);
        character = character << 6 | (next & 0x3F);
    }
    const char32_t smallest = more == 3 ? 0x10000 : more == 2 ? 0x800 : 0x80;
    if (character < smallest || character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF))
        failInvalid(start);
    return character;
}

} // namespace

std::u16string plistUtf16FromUtf8(std::string_view utf8)
{
    std::u16string result;
    result.reserve(utf8.size());
    for (std::size_t offset = 0; offset < utf8.size();) {
        const char32_t c = nextCharacter(utf8, offset);
        if (c < 0x10000) {
            result.push_back(static_cast<char16_t>(c));
        } else {
            result.push_back(static_cast<char16_t>(0xD7C0 + (c >> 10)));
            result.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FF)));
        }
    }
    return result;
}

} // namespace velmora::diskimage
