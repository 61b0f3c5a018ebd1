#include "update/version_order.h"

#include <algorithm>
#include <cstddef>

namespace velmora
{
namespace
{

bool isDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

/// Cuts the run of digits off the front of `text` and returns it without leading zeros: of two such runs the longer has
/// the higher value, so no number is too long.
std::u16string_view takeNumber(std::u16string_view& text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
    auto number = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(number.size());
    number.remove_prefix(std::min(number.find_first_not_of(u'0'), number.size()));
    return number;
}

std::weak_ordering compareNumbers(std::u16string_view one, std::u16string_view other)
{
    if (one.size() != other.size())
        return one.size() <=> other.size();
    return one.compare(other) <=> 0;
}

} // namespace

std::weak_ordering compareVersions(std::u16string_view one, std::u16string_view other)
{
    while (!one.empty() && !other.empty()) {
        if (isDigit(one.front()) && isDigit(other.front())) {
            const auto order = compareNumbers(takeNumber(one), takeNumber(other));
            if (order != 0)
                return order;
            continue;
        }
        if (one.front() != other.front())
            return one.front() <=> other.front();
        one.remove_prefix(1);
        other.remove_prefix(1);
    }
    return one.size() <=> other.size();
}

} // namespace velmora
