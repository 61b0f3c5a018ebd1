#include "model/utf8.h"

namespace velmora
{

std::size_t utf8SequenceLength(std::string_view text, std::size_t at)
{
    const auto byte = [&](std::size_t offset) {
        return at + offset < text.size() ? static_cast<unsigned char>(text[at + offset]) : 0U;
    };
    const auto continues = [&](std::size_t offset) { return (byte(offset) & 0xC0) == 0x80; };
    if (at >= text.size())
        return 0;
    const unsigned first = byte(0);
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first <= 0xDF)
        return continues(1) ? 2 : 0;
    // The Unicode Standard, table 3-7: the second byte's range excludes over-long forms, surrogates and what lies
    // beyond the last plane.
    if (first >= 0xE0 && first <= 0xEF) {
        const bool second = continues(1) && (first != 0xE0 || byte(1) >= 0xA0) && (first != 0xED || byte(1) <= 0x9F);
        return second && continues(2) ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        const bool second = continues(1) && (first != 0xF0 || byte(1) >= 0x90) && (first != 0xF4 || byte(1) <= 0x8F);
        return second && continues(2) && continues(3) ? 4 : 0;
    }
    return 0;
}

} // namespace velmora
