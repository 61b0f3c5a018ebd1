#pragma once

#include <functional>
#include <string>

namespace velmora
{

/// A font as the project stores it.
struct FontChoice {
    std::string postScriptName{};
    double pointSize = 12;
    bool operator==(const FontChoice&) const = default;
};

/// The platform's font panel: one at a time, not modal.
class FontPanel
{
public:
    virtual ~FontPanel() = default;
    /// Shows the panel with `current` chosen and calls `chosen` for every choice made in it, until it is presented
    /// again or closed. A choice of size alone hands the name back as it was given, even when no such font is
    /// installed.
    virtual void present(const FontChoice& current, std::function<void(const FontChoice&)> chosen) = 0;
};

} // namespace velmora
