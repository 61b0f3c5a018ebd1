#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmora
{

/// A 128-bit identifier; all zero is the nil UUID.
struct Uuid {
    std::array<std::uint8_t, 16> bytes{};

    /// A fresh random (version 4) UUID.
    static Uuid random();
    /// Reads the canonical 36-character form (8-4-4-4-12 hexadecimal digits of either case); anything else is nothing.
    static std::optional<Uuid> parse(std::string_view text);
    /// The canonical form in upper case.
    [[nodiscard]] std::string toString() const;

    bool operator==(const Uuid&) const = default;
};

} // namespace velmora
