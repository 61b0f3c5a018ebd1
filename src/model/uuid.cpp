#include "model/uuid.h"

#include <random>

namespace velmora
{
namespace
{

constexpr std::string_view digits = "0123456789ABCDEF";

/// Hyphens stand before these bytes.
constexpr bool startsGroup(std::size_t byte)
{
    return byte == 4 || byte == 6 || byte == 8 || byte == 10;
}

std::optional<std::uint8_t> digitValue(char c)
{
    if (c >= '0' && c <= '9')
        return static_cast<std::uint8_t>(c - '0');
    if (c >= 'A' && c <= 'F')
        return static_cast<std::uint8_t>(c - 'A' + 10);
    if (c >= 'a' && c <= 'f')
        return static_cast<std::uint8_t>(c - 'a' + 10);
    return std::nullopt;
}

} // namespace

Uuid Uuid::random()
{
    std::random_device source;
    Uuid uuid;
    for (std::size_t i = 0; i < uuid.bytes.size(); i += 4) {
        const std::uint32_t word = source();
        for (std::size_t j = 0; j < 4; ++j)
            uuid.bytes[i + j] = static_cast<std::uint8_t>(word >> (8 * j));
    }
    // RFC 9562: version 4, variant 10.
    uuid.bytes[6] = static_cast<std::uint8_t>((uuid.bytes[6] & 0x0F) | 0x40);
    uuid.bytes[8] = static_cast<std::uint8_t>((uuid.bytes[8] & 0x3F) | 0x80);
    return uuid;
}

std::optional<Uuid> Uuid::parse(std::string_view text)
{
    if (text.size() != 36)
        return std::nullopt;
    Uuid uuid;
    std::size_t position = 0;
    for (std::size_t i = 0; i < uuid.bytes.size(); ++i) {
        if (startsGroup(i) && text[position++] != '-')
            return std::nullopt;
        const auto high = digitValue(text[position++]);
        const auto low = digitValue(text[position++]);
        if (!high || !low)
            return std::nullopt;
        uuid.bytes[i] = static_cast<std::uint8_t>(*high * 16 + *low);
    }
    return uuid;
}

std::string Uuid::toString() const
{
    std::string text;
    text.reserve(36);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (startsGroup(i))
            text += '-';
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 0x0F];
    }
    return text;
}

} // namespace velmora
