#include "tools/support/arguments.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace velmora::tools
{

namespace
{

std::string inQuotes(std::string_view text)
{
    return "\"" + std::string(text) + "\"";
}

} // namespace

Arguments::Arguments(std::span<const std::string> arguments, std::span<const OptionSpec> specs, std::size_t minOperands,
                     std::size_t maxOperands)
{
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument.empty() || argument.front() != '-') {
            m_operands.push_back(argument);
            continue;
        }
        const auto spec =
            std::find_if(specs.begin(), specs.end(), [&](const OptionSpec& s) { return s.name == argument; });
        if (spec == specs.end())
            throw UsageError("unknown option " + inQuotes(argument));
        if (!spec->mayRepeat && has(argument))
            throw UsageError("option " + argument + " is given twice");
        if (arguments.size() - i - 1 < spec->valueCount)
            throw UsageError("option " + argument + " needs a value");
        Given given{argument, {}};
        for (std::size_t n = 0; n < spec->valueCount; ++n)
            given.values.push_back(arguments[++i]);
        m_given.push_back(std::move(given));
    }
    if (m_operands.size() < minOperands)
        throw UsageError("a path is missing");
    if (m_operands.size() > maxOperands)
        throw UsageError("unexpected argument " + inQuotes(m_operands[maxOperands]));
    for (const std::string& operand : m_operands) {
        if (operand.empty())
            throw UsageError("an argument is empty");
    }
}

bool Arguments::has(std::string_view option) const
{
    return std::any_of(m_given.begin(), m_given.end(), [&](const Given& g) { return g.name == option; });
}

std::optional<std::string> Arguments::value(std::string_view option) const
{
    for (const Given& given : m_given) {
        if (given.name == option && !given.values.empty())
            return given.values.front();
    }
    return std::nullopt;
}

std::string Arguments::require(std::string_view option) const
{
    auto found = value(option);
    if (!found || found->empty())
        throw UsageError("option " + std::string(option) + " is missing or empty");
    return *std::move(found);
}

std::vector<std::vector<std::string>> Arguments::all(std::string_view option) const
{
    std::vector<std::vector<std::string>> result;
    for (const Given& given : m_given) {
        if (given.name == option)
            result.push_back(given.values);
    }
    return result;
}

std::uint64_t parseNumber(std::string_view text, std::uint64_t minimum, std::uint64_t maximum, std::string_view what)
{
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (text.empty() || error != std::errc{} || stop != end || number < minimum || number > maximum)
        throw UsageError(std::string(what) + " " + inQuotes(text) + " is not a number from " + std::to_string(minimum) +
                         " to " + std::to_string(maximum));
    return number;
}

std::uint64_t parseSize(std::string_view text)
{
    static constexpr std::string_view suffixes = "bkmgt";
    static constexpr unsigned shifts[] = {9, 10, 20, 30, 40};
    const auto suffix = text.empty() ? std::string_view::npos : suffixes.find(text.back());
    if (suffix == std::string_view::npos)
        throw UsageError("size " + inQuotes(text) + " needs a number and one of the suffixes b, k, m, g, t");
    const unsigned shift = shifts[suffix];
    return parseNumber(text.substr(0, text.size() - 1), 1, (std::uint64_t{1} << (62 - shift)) - 1, "size") << shift;
}

} // namespace velmora::tools
