#include "diskimage/hfs/case_folding.h"

#include <array>
#include <cstdint>

// The folding that orders the catalogs of case-insensitive volumes (TN1150, "Case-Insensitive String Comparison
// Algorithm"). It was fixed when the format was made and differs from what Unicode says today, so it must never be
// replaced by a library's case functions: keys would be out of order on volumes that others wrote.
namespace velmora::diskimage::hfs
{
namespace
{

struct FoldedRange {
    char16_t first;
    char16_t last;
    char16_t step;
    char16_t delta;
};

constexpr FoldedRange foldedRanges[] = {
    // Latin, Greek, Cyrillic, full-width Latin
    {0x0041, 0x005A, 1, 0x20},
    {0x00C6, 0x00C6, 1, 0x20},
    {0x00D0, 0x00D0, 1, 0x20},
    {0x00D8, 0x00D8, 1, 0x20},
    {0x00DE, 0x00DE, 1, 0x20},
    {0x0391, 0x03A1, 1, 0x20},
    {0x03A3, 0x03A9, 1, 0x20},
    {0x0410, 0x0418, 1, 0x20},
    {0x041A, 0x042F, 1, 0x20},
    {0xFF21, 0xFF3A, 1, 0x20},
    // pairs of neighbours
    {0x0110, 0x0110, 1, 1},
    {0x0126, 0x0126, 1, 1},
    {0x0132, 0x0132, 1, 1},
    {0x013F, 0x013F, 1, 1},
    {0x0141, 0x0141, 1, 1},
    {0x014A, 0x014A, 1, 1},
    {0x0152, 0x0152, 1, 1},
    {0x0166, 0x0166, 1, 1},
    {0x0182, 0x0182, 1, 1},
    {0x0184, 0x0184, 1, 1},
    {0x0187, 0x0187, 1, 1},
    {0x018B, 0x018B, 1, 1},
    {0x0191, 0x0191, 1, 1},
    {0x0198, 0x0198, 1, 1},
    {0x01A2, 0x01A2, 1, 1},
    {0x01A4, 0x01A4, 1, 1},
    {0x01A7, 0x01A7, 1, 1},
    {0x01AC, 0x01AC, 1, 1},
    {0x01B3, 0x01B3, 1, 1},
    {0x01B5, 0x01B5, 1, 1},
    {0x01B8, 0x01B8, 1, 1},
    {0x01BC, 0x01BC, 1, 1},
    {0x01C5, 0x01C5, 1, 1},
    {0x01C8, 0x01C8, 1, 1},
    {0x01CB, 0x01CB, 1, 1},
    {0x01E4, 0x01E4, 1, 1},
    {0x01F2, 0x01F2, 1, 1},
    {0x03E2, 0x03EE, 2, 1},
    {0x0460, 0x0474, 2, 1},
    {0x0478, 0x0480, 2, 1},
    {0x0490, 0x04BE, 2, 1},
    {0x04C3, 0x04C3, 1, 1},
    {0x04C7, 0x04C7, 1, 1},
    {0x04CB, 0x04CB, 1, 1},
    // capital digraphs
    {0x01C4, 0x01C4, 1, 2},
    {0x01C7, 0x01C7, 1, 2},
    {0x01CA, 0x01CA, 1, 2},
    {0x01F1, 0x01F1, 1, 2},
    // Roman numerals
    {0x2160, 0x216F, 1, 0x10},
    // Armenian, Georgian
    {0x0531, 0x0556, 1, 0x30},
    {0x10A0, 0x10C5, 1, 0x30},
    // Cyrillic letters of single languages
    {0x0402, 0x0402, 1, 0x50},
    {0x0404, 0x0406, 1, 0x50},
    {0x0408, 0x040B, 1, 0x50},
    {0x040F, 0x040F, 1, 0x50},
};

constexpr char16_t foldedPairs[][2] = {
    {0x0181, 0x0253}, {0x0186, 0x0254}, {0x0189, 0x0256}, {0x018A, 0x0257}, {0x018E, 0x01DD},
    {0x018F, 0x0259}, {0x0190, 0x025B}, {0x0193, 0x0260}, {0x0194, 0x0263}, {0x0196, 0x0269},
    {0x0197, 0x0268}, {0x019C, 0x026F}, {0x019D, 0x0272}, {0x019F, 0x0275}, {0x01A9, 0x0283},
    {0x01AE, 0x0288}, {0x01B1, 0x028A}, {0x01B2, 0x028B}, {0x01B7, 0x0292},
};

constexpr char16_t ignoredRanges[][2] = {{0x200C, 0x200F}, {0x202A, 0x202E}, {0x206A, 0x206F}, {0xFEFF, 0xFEFF}};

using Table = std::array<char16_t, 0x10000>;

Table makeTable()
{
    Table table{};
    for (std::uint32_t unit = 0; unit < table.size(); ++unit) {
        table[unit] = static_cast<char16_t>(unit);
    }
    for (const auto& range : foldedRanges) {
        for (std::uint32_t unit = range.first; unit <= range.last; unit += range.step) {
            table[unit] = static_cast<char16_t>(unit + range.delta);
        }
    }
    for (const auto& pair : foldedPairs) {
        table[pair[0]] = pair[1];
    }
    for (const auto& range : ignoredRanges) {
        for (std::uint32_t unit = range[0]; unit <= range[1]; ++unit) {
            table[unit] = 0;
        }
    }
    table[0] = 0xFFFF; // a real NUL counts, and sorts last
    return table;
}

} // namespace

char16_t foldedUnit(char16_t unit)
{
    static const Table table = makeTable();
    return table[unit];
}

} // namespace velmora::diskimage::hfs
