// Binary property lists: "bplist00", the objects, a table with the offset of each, and a trailer of 32 bytes that says
// how wide offsets and references are, how many objects there are, and where the table begins. All numbers are
// big-endian. The low half of an object's first byte is its length, 15 meaning that an integer object with the length
// follows.

#include "diskimage/base/error.h"
#include "diskimage/base/property_list_forms.h"
#include "diskimage/base/property_list_text.h"
#include "diskimage/base/text.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <limits>

namespace velmora::diskimage
{
namespace
{

constexpr std::size_t headerSize = 8;
constexpr std::size_t trailerSize = 32;
/// Memory that the values may take.
constexpr std::uint64_t smallestBudget = std::uint64_t{64} << 20;
constexpr std::uint64_t largestBudget = std::uint64_t{1} << 30;

[[noreturn]] void fail(const std::string& why)
{
    throw DiskImageError("The binary property list is damaged: " + why + ".");
}

/// A big-endian number of 1 to 8 bytes.
std::uint64_t numberOf(ByteView bytes)
{
    std::uint64_t value = 0;
    for (const std::uint8_t byte : bytes)
        value = value << 8 | byte;
    return value;
}

/// Seconds since 2001 as the XML form writes a date.
std::string dateText(double seconds)
{
    constexpr double farthest = 2.5e11; // about 8,000 years to either side
    if (!std::isfinite(seconds) || std::abs(seconds) > farthest)
        fail("a date lies out of range");
    using namespace std::chrono;
    const auto whole = static_cast<std::int64_t>(std::floor(seconds));
    const std::int64_t days = (whole >= 0 ? whole : whole - 86399) / 86400;
    const auto time = static_cast<int>(whole - days * 86400);
    const year_month_day date(sys_days(2001y / January / 1d) + std::chrono::days(static_cast<int>(days)));
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), time / 3600, time / 60 % 60,
                  time % 60);
    return text;
}

class BinaryReader
{
public:
    explicit BinaryReader(ByteView bytes) : m_bytes(bytes)
    {
        if (bytes.size() < headerSize + trailerSize)
            fail("it is too short");
        const std::uint8_t* trailer = bytes.data() + bytes.size() - trailerSize;
        m_offsetWidth = trailer[6];
        m_referenceWidth = trailer[7];
        m_count = getBE64(trailer + 8);
        m_top = getBE64(trailer + 16);
        m_tableOffset = getBE64(trailer + 24);
        const std::uint64_t tableEnd = bytes.size() - trailerSize;
        if (m_offsetWidth < 1 || m_offsetWidth > 8 || m_referenceWidth < 1 || m_referenceWidth > 8)
            fail("its numbers have an impossible width");
        if (m_tableOffset < headerSize || m_tableOffset > tableEnd ||
            m_count > (tableEnd - m_tableOffset) / m_offsetWidth)
            fail("its offset table lies outside");
        // Objects may be shared, and a tree of values repeats what is shared: a small file could otherwise unfold
        // without end. A reference of one byte becomes a whole value, too.
        m_budget = std::min(smallestBudget + std::uint64_t{bytes.size()} * 16, largestBudget);
    }

    Plist read() { return object(m_top, 0); }

private:
    [[nodiscard]] ByteView range(std::uint64_t offset, std::uint64_t length) const
    {
        if (offset > m_tableOffset || length > m_tableOffset - offset)
            fail("an object reaches beyond the end");
        return m_bytes.subspan(offset, length);
    }

    void spend(std::uint64_t cost)
    {
        if (cost > m_budget)
            fail("it unfolds to far more than its size");
        m_budget -= cost;
    }

    [[nodiscard]] std::uint64_t referenceAt(std::uint64_t offset) const
    {
        return numberOf(range(offset, m_referenceWidth));
    }

    /// The length that follows a first byte; `offset` moves past it.
    [[nodiscard]] std::uint64_t lengthAt(std::uint64_t& offset, unsigned low) const
    {
        if (low != 15)
            return low;
        const unsigned marker = range(offset, 1)[0];
        if (marker >> 4 != 1 || (marker & 15) > 3)
            fail("a length is not an integer");
        const std::uint64_t width = std::uint64_t{1} << (marker & 15);
        const std::uint64_t length = numberOf(range(offset + 1, width));
        offset += 1 + width;
        return length;
    }

    [[nodiscard]] std::int64_t integer(std::uint64_t offset, unsigned log2Width) const
    {
        if (log2Width > 4)
            fail("an integer has an impossible width");
        const std::uint64_t width = std::uint64_t{1} << log2Width;
        if (width < 16)
            return static_cast<std::int64_t>(numberOf(range(offset, width)));
        const std::uint64_t high = numberOf(range(offset, 8));
        const auto low = static_cast<std::int64_t>(numberOf(range(offset + 8, 8)));
        // Sixteen bytes may hold any 64-bit value, signed or not: only what fits is taken.
        if (high != (low < 0 ? ~std::uint64_t{0} : 0))
            fail("an integer is too large");
        return low;
    }

    [[nodiscard]] double real(std::uint64_t offset, unsigned log2Width) const
    {
        if (log2Width == 2)
            return double{std::bit_cast<float>(getBE32(range(offset, 4).data()))};
        if (log2Width != 3)
            fail("a real number has an impossible width");
        return std::bit_cast<double>(getBE64(range(offset, 8).data()));
    }

    [[nodiscard]] std::string asciiText(ByteView bytes) const
    {
        for (const std::uint8_t byte : bytes) {
            if (byte >= 0x80)
                fail("a plain text holds a byte that is not ASCII");
        }
        return textOf(bytes);
    }

    [[nodiscard]] std::string wideText(std::uint64_t offset, std::uint64_t units) const
    {
        if (units > m_bytes.size() / 2)
            fail("a text reaches beyond the end");
        const ByteView bytes = range(offset, units * 2);
        std::u16string text;
        text.reserve(units);
        for (std::size_t i = 0; i < bytes.size(); i += 2)
            text.push_back(static_cast<char16_t>(getBE16(bytes.data() + i)));
        return utf8FromUtf16(text);
    }

    void checkReferences(std::uint64_t offset, std::uint64_t count, std::uint64_t perElement) const
    {
        if (count > m_bytes.size() / (m_referenceWidth * perElement))
            fail("a collection reaches beyond the end");
        (void)range(offset, count * m_referenceWidth * perElement);
    }

    Plist array(std::uint64_t offset, std::uint64_t count, int depth)
    {
        checkReferences(offset, count, 1);
        Plist::Array result;
        for (std::uint64_t i = 0; i < count; ++i)
            result.push_back(object(referenceAt(offset + i * m_referenceWidth), depth + 1));
        return result;
    }

    Plist dict(std::uint64_t offset, std::uint64_t count, int depth)
    {
        checkReferences(offset, count, 2);
        Plist::Dict result;
        for (std::uint64_t i = 0; i < count; ++i) {
            const Plist key = object(referenceAt(offset + i * m_referenceWidth), depth + 1);
            const auto* name = key.as<std::string>();
            if (!name)
                fail("a key is not a text");
            result[*name] = object(referenceAt(offset + (count + i) * m_referenceWidth), depth + 1);
        }
        return result;
    }

    Plist simple(unsigned low) const
    {
        switch (low) {
        case 0:
            return {};
        case 8:
            return false;
        case 9:
            return true;
        default:
            fail("it holds an object of an unknown kind");
        }
    }

    Plist object(std::uint64_t reference, int depth)
    {
        // A collection that contains itself ends here as well.
        if (depth > maximumPlistDepth)
            fail("its collections are nested too deeply");
        if (reference >= m_count)
            fail("a reference names no object");
        std::uint64_t offset = numberOf(m_bytes.subspan(m_tableOffset + reference * m_offsetWidth, m_offsetWidth));
        const unsigned marker = range(offset, 1)[0];
        const unsigned low = marker & 15;
        ++offset;
        spend(sizeof(Plist));
        switch (marker >> 4) {
        case 0x0:
            return simple(low);
        case 0x1:
            return integer(offset, low);
        case 0x2:
            return real(offset, low);
        case 0x3:
            if (low != 3)
                fail("a date has an impossible width");
            return dateText(real(offset, 3));
        case 0x8: // the object number of an archive
            if (low > 7)
                fail("an object number is too large");
            return static_cast<std::int64_t>(numberOf(range(offset, low + 1)));
        default: {
            const std::uint64_t length = lengthAt(offset, low);
            return sized(marker >> 4, offset, length, depth);
        }
        }
    }

    /// An object with a length; its content begins at `offset`.
    Plist sized(unsigned kind, std::uint64_t offset, std::uint64_t length, int depth)
    {
        spend(length);
        switch (kind) {
        case 0x4: {
            const ByteView bytes = range(offset, length);
            return Bytes(bytes.begin(), bytes.end());
        }
        case 0x5:
            return asciiText(range(offset, length));
        case 0x6:
            spend(length);
            return wideText(offset, length);
        case 0xA:
        case 0xC: // a set, which is kept as it is stored
            return array(offset, length, depth);
        case 0xD:
            return dict(offset, length, depth);
        default:
            fail("it holds an object of an unknown kind");
        }
    }

    ByteView m_bytes;
    std::uint64_t m_offsetWidth = 0;
    std::uint64_t m_referenceWidth = 0;
    std::uint64_t m_count = 0;
    std::uint64_t m_top = 0;
    std::uint64_t m_tableOffset = 0;
    std::uint64_t m_budget = 0; ///< bytes
};

void appendNumber(Bytes& out, std::uint64_t value, std::size_t width)
{
    for (std::size_t i = width; i > 0; --i)
        out.push_back(static_cast<std::uint8_t>(value >> (8 * (i - 1))));
}

void appendInteger(Bytes& out, std::int64_t value)
{
    const auto bits = static_cast<std::uint64_t>(value);
    const unsigned log2Width = bits <= 0xFF ? 0 : bits <= 0xFFFF ? 1 : bits <= 0xFFFFFFFF ? 2 : 3;
    out.push_back(static_cast<std::uint8_t>(0x10 | log2Width));
    appendNumber(out, bits, std::size_t{1} << log2Width);
}

void appendMarker(Bytes& out, unsigned kind, std::size_t length)
{
    out.push_back(static_cast<std::uint8_t>(kind << 4 | (length < 15 ? length : 15)));
    if (length >= 15)
        appendInteger(out, static_cast<std::int64_t>(length));
}

void appendText(Bytes& out, const std::string& text)
{
    const std::u16string units = plistUtf16FromUtf8(text);
    if (units.size() == text.size()) { // one byte a unit: all ASCII
        appendMarker(out, 0x5, text.size());
        append(out, text);
        return;
    }
    appendMarker(out, 0x6, units.size());
    for (const char16_t unit : units)
        appendBE16(out, static_cast<std::uint16_t>(unit));
}

void appendScalar(Bytes& out, const Plist& object)
{
    if (const auto* flag = object.as<bool>()) {
        out.push_back(*flag ? 0x09 : 0x08);
    } else if (const auto* integer = object.as<std::int64_t>()) {
        appendInteger(out, *integer);
    } else if (const auto* real = object.as<double>()) {
        out.push_back(0x23);
        appendBE64(out, std::bit_cast<std::uint64_t>(*real));
    } else if (const auto* text = object.as<std::string>()) {
        appendText(out, *text);
    } else if (const auto* data = object.as<Bytes>()) {
        appendMarker(out, 0x4, data->size());
        append(out, *data);
    } else {
        throw DiskImageError("A binary property list is written for texts, numbers, booleans and data only.");
    }
}

std::size_t widthFor(std::uint64_t value)
{
    return value <= 0xFF ? 1 : value <= 0xFFFF ? 2 : value <= 0xFFFFFFFF ? 4 : 8;
}

} // namespace

Plist readBinaryPlist(ByteView bytes)
{
    return BinaryReader(bytes).read();
}

Bytes writeBinaryPlist(const Plist::Dict& dict)
{
    // An object is known by its bytes, which hold its type: equal ones of different types stay apart.
    std::vector<Bytes> objects;
    std::map<Bytes, std::size_t> known;
    const auto referenceTo = [&](const Plist& scalar) {
        Bytes bytes;
        appendScalar(bytes, scalar);
        const auto [entry, isNew] = known.try_emplace(bytes, objects.size() + 1);
        if (isNew)
            objects.push_back(std::move(bytes));
        return entry->second;
    };
    std::vector<std::size_t> references;
    for (const auto& [key, value] : dict)
        references.push_back(referenceTo(key));
    for (const auto& [key, value] : dict)
        references.push_back(referenceTo(value));

    Bytes out;
    append(out, "bplist00");
    std::vector<std::size_t> offsets{out.size()};
    const std::size_t referenceWidth = widthFor(objects.size());
    appendMarker(out, 0xD, dict.size());
    for (const std::size_t reference : references)
        appendNumber(out, reference, referenceWidth);
    for (const Bytes& object : objects) {
        offsets.push_back(out.size());
        append(out, object);
    }
    const std::size_t tableOffset = out.size();
    const std::size_t offsetWidth = widthFor(tableOffset);
    for (const std::size_t offset : offsets)
        appendNumber(out, offset, offsetWidth);
    appendNumber(out, 0, 6);
    appendNumber(out, offsetWidth, 1);
    appendNumber(out, referenceWidth, 1);
    appendBE64(out, offsets.size());
    appendBE64(out, 0);
    appendBE64(out, tableOffset);
    return out;
}

} // namespace velmora::diskimage
