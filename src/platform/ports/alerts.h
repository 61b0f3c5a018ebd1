#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace velmora
{

enum class AlertStyle { informational, warning };

/// A question or message that blocks the application until it is answered.
struct Alert {
    std::string title{};
    std::string text{}; ///< informative text below the title
    AlertStyle style = AlertStyle::warning;
    /// Texts of the buttons, the default one first; empty means the platform's single default button.
    std::vector<std::string> buttons{};
    bool operator==(const Alert&) const = default;
};

/// Shows alerts to a person.
class Alerts
{
public:
    virtual ~Alerts() = default;
    /// Shows the alert and waits; returns the index of the button. Closing it without a choice is the last button.
    virtual std::size_t show(const Alert& alert) = 0;
};

} // namespace velmora
