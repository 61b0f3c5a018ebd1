#include "diskimage/hfs/names.h"

#include "diskimage/base/error.h"
#include "diskimage/base/text.h"
#include "diskimage/hfs/case_folding.h"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace velmora::diskimage::hfs
{
namespace
{

constexpr char16_t symbolForNul = 0x2400;

/// Whether a character was in Unicode by the given version.
bool isAsOldAs(char16_t c, std::uint8_t major, std::uint8_t minor)
{
    UVersionInfo age{};
    u_charAge(c, age);
    // An unassigned character has age 0.0.
    return age[0] != 0 && (age[0] < major || (age[0] == major && age[1] <= minor));
}

/// Characters that stay composed although Unicode decomposes them (TN1150, "Unicode Subtleties"; Unicode 3.2 since
/// Mac OS X 10.3).
bool staysComposed(char16_t c)
{
    return (c >= 0x2000 && c <= 0x2FFF) || (c >= 0xF900 && c <= 0xFAFF) || (c >= 0xD800 && c <= 0xDFFF) ||
           !isAsOldAs(c, 3, 2);
}

/// Classes as of Unicode 4.0: later characters do not move.
std::uint8_t combiningClass(char16_t c)
{
    return isAsOldAs(c, 4, 0) ? u_getCombiningClass(c) : std::uint8_t{0};
}

const UNormalizer2& decomposer()
{
    static const UNormalizer2* const instance = [] {
        UErrorCode error = U_ZERO_ERROR;
        const auto* found = unorm2_getNFDInstance(&error);
        if (U_FAILURE(error)) {
            throw DiskImageError("The Unicode library has no decomposition data: " + std::string(u_errorName(error)) +
                                 ".");
        }
        return found;
    }();
    return *instance;
}

void appendDecomposed(std::u16string& out, char16_t c)
{
    std::array<char16_t, 32> buffer{};
    UErrorCode error = U_ZERO_ERROR;
    const auto length = c < 0x80 || staysComposed(c)
                            ? -1
                            : unorm2_getDecomposition(&decomposer(), c, buffer.data(), buffer.size(), &error);
    if (length < 0 || U_FAILURE(error)) {
        out += c;
    } else {
        out.append(buffer.data(), static_cast<std::size_t>(length));
    }
}

void sortCombiningMarks(std::u16string& text)
{
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] < 0x300) {
            continue; // no marks below; spares almost every name the search
        }
        const auto mark = text[i];
        const auto markClass = combiningClass(mark);
        auto place = i;
        for (; markClass != 0 && place > 0 && combiningClass(text[place - 1]) > markClass; --place) {
            text[place] = text[place - 1];
        }
        text[place] = mark;
    }
}

/// `name` is quoted as far as a message can show it.
DiskImageError wrongName(std::string_view name, const std::string& why)
{
    constexpr std::size_t shown = 300;
    const auto part = name.substr(0, std::min(shown, name.find('\0')));
    return DiskImageError("The name \"" + std::string(part) + (part.size() < name.size() ? "…" : "") + "\" " + why +
                          ".");
}

int compareBinary(std::u16string_view a, std::u16string_view b)
{
    const auto order = a.compare(b);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

/// The next unit that counts, folded; 0 at the end.
char16_t nextFolded(std::u16string_view text, std::size_t& i)
{
    while (i < text.size()) {
        if (const auto unit = foldedUnit(text[i++])) {
            return unit;
        }
    }
    return 0;
}

} // namespace

std::u16string utf16FromUtf8(std::string_view utf8)
{
    // One unit a byte is always enough.
    constexpr std::size_t longest = 1 << 24;
    if (utf8.size() > longest) {
        throw DiskImageError("A text of " + std::to_string(utf8.size()) + " bytes is too long.");
    }
    std::u16string utf16(utf8.size(), u'\0');
    std::int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8(utf16.data(), static_cast<std::int32_t>(utf16.size()), &length, utf8.data(),
                  static_cast<std::int32_t>(utf8.size()), &error);
    if (U_FAILURE(error)) {
        throw wrongName(utf8, "is not valid UTF-8");
    }
    utf16.resize(static_cast<std::size_t>(length));
    return utf16;
}

std::u16string storedName(std::string_view posixName)
{
    if (posixName.empty()) {
        throw DiskImageError("A name is empty.");
    }
    if (posixName == "." || posixName == "..") {
        throw wrongName(posixName, "is reserved");
    }
    if (posixName.find_first_of(std::string_view("/\0", 2)) != std::string_view::npos) {
        throw wrongName(posixName, "holds a slash or a NUL");
    }
    std::u16string stored;
    for (const auto unit : utf16FromUtf8(posixName)) {
        appendDecomposed(stored, unit == u':' ? u'/' : unit == symbolForNul ? u'\0' : unit);
    }
    if (stored.size() > maximumNameLength) {
        throw wrongName(posixName, "is too long: it takes " + std::to_string(stored.size()) + " of at most " +
                                       std::to_string(maximumNameLength) + " units");
    }
    sortCombiningMarks(stored);
    return stored;
}

std::string posixName(std::u16string_view stored)
{
    std::u16string units(stored);
    for (auto& unit : units) {
        unit = unit == u'/' ? u':' : unit == u'\0' ? symbolForNul : unit;
    }
    return utf8FromUtf16(units);
}

int compareNames(std::u16string_view a, std::u16string_view b, NameOrder order)
{
    if (order == NameOrder::binary) {
        return compareBinary(a, b);
    }
    std::size_t i = 0;
    std::size_t k = 0;
    while (true) {
        const auto left = nextFolded(a, i);
        const auto right = nextFolded(b, k);
        if (left != right) {
            return left < right ? -1 : 1;
        }
        if (left == 0) {
            return 0;
        }
    }
}

} // namespace velmora::diskimage::hfs
