#pragma once

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::tools
{

/// A command line that cannot be understood: the program shows its usage and ends with status 2.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// One option that a command knows.
struct OptionSpec {
    std::string_view name{};    ///< as written, dash included: "-volname"
    std::size_t valueCount = 0; ///< arguments that follow it and belong to it, whatever they look like
    bool mayRepeat = false;
};

/// A command line taken apart by a list of options: options may stand anywhere, everything else is an operand.
class Arguments
{
public:
    /// Throws UsageError for an unknown option, one given twice, one whose values are missing, and an operand count
    /// outside `minOperands`..`maxOperands`.
    Arguments(std::span<const std::string> arguments, std::span<const OptionSpec> specs, std::size_t minOperands,
              std::size_t maxOperands);

    [[nodiscard]] bool has(std::string_view option) const;
    /// The (first) value of an option, or nothing when it was not given.
    [[nodiscard]] std::optional<std::string> value(std::string_view option) const;
    /// The same; throws UsageError when the option was not given.
    [[nodiscard]] std::string require(std::string_view option) const;
    /// The values of each occurrence of a repeatable option, in order.
    [[nodiscard]] std::vector<std::vector<std::string>> all(std::string_view option) const;
    [[nodiscard]] const std::vector<std::string>& operands() const { return m_operands; }

private:
    struct Given {
        std::string name{};
        std::vector<std::string> values{};
    };
    std::vector<Given> m_given{};
    std::vector<std::string> m_operands{};
};

/// A decimal number of digits only, within the limits; throws UsageError naming `what` otherwise.
std::uint64_t parseNumber(std::string_view text, std::uint64_t minimum, std::uint64_t maximum, std::string_view what);

/// Bytes of a size such as "57m": a number with b (512-byte sectors), k, m, g or t. Throws UsageError for anything
/// else, zero, and what does not fit 62 bits.
std::uint64_t parseSize(std::string_view text);

} // namespace velmora::tools
