#pragma once

#include "diskimage/base/bytes.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velmora::diskimage
{

/// A property list value. Integers and reals are different types, as in the formats.
struct Plist {
    using Array = std::vector<Plist>;
    using Dict = std::map<std::string, Plist>;
    std::variant<std::monostate, bool, std::int64_t, double, std::string, Bytes, Array, Dict> value{};

    Plist() = default;
    template <typename T>
    Plist(T v) : value(std::move(v)) // NOLINT: values convert into a property list on purpose
    {
    }
    Plist(const char* text) : value(std::string(text)) {} // NOLINT

    /// The value as T, or null when it is of another type.
    template <typename T>
    [[nodiscard]] const T* as() const
    {
        return std::get_if<T>(&value);
    }
    /// The entry of a dictionary, or null when this is none or has no such key.
    [[nodiscard]] const Plist* find(std::string_view key) const;

    bool operator==(const Plist&) const = default;
};

/// Reads the binary ("bplist00") or XML form. Hostile input ends in DiskImageError: depth, counts and lengths are
/// bounded by the input's size. Dates are read as text.
Plist readPlist(ByteView bytes);

/// The binary form of a dictionary of scalars: keys sorted by bytes, equal objects shared, dictionary first, then keys,
/// then values as they first occur; reals take 8 bytes.
Bytes writeBinaryPlist(const Plist::Dict& dict);

/// The XML form, indented by tabs as Apple's writers do.
std::string writeXmlPlist(const Plist& plist);

} // namespace velmora::diskimage
