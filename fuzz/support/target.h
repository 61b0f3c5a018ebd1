#pragma once

#include "diskimage/base/bytes.h"
#include "diskimage/base/error.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What the fuzz targets share. A target passes any bytes to a reader; it fails by a crash, by a report of a sanitizer,
/// by an exception that leaves it, or by an expectation that does not hold.
namespace velmora::fuzz
{

/// Ends the program as a crash does, saying what was expected, unless `holds`.
void expect(bool holds, const char* expectation);
/// The same for a list of faults that should be empty, the first of which is shown.
void expectNone(const std::vector<std::string>& faults, const char* expectation);

/// What `make` returns, or nothing when it refuses its input as readers do.
template <typename Make>
auto attempt(Make make) -> std::optional<decltype(make())>
{
    try {
        return make();
    } catch (const diskimage::DiskImageError&) {
        return std::nullopt;
    }
}

/// Takes integers and byte strings off the front of an input; what is not there is zero or empty.
class InputReader
{
public:
    explicit InputReader(diskimage::ByteView input) : m_rest(input) {}

    std::uint8_t byte();
    /// Big-endian.
    std::uint16_t word();
    diskimage::ByteView bytes(std::size_t most);
    diskimage::ByteView rest() { return bytes(m_rest.size()); }

private:
    diskimage::ByteView m_rest;
};

} // namespace velmora::fuzz
