#pragma once

#include <string>

namespace velmora
{

/// A language that the user may choose, identified by `code`.
struct AppLanguage {
    std::string code{};        ///< such as "en"; "system" follows the system's preference
    std::string englishName{}; ///< its name in English
    std::string nativeName{};  ///< its name in itself
    std::string region{};      ///< the group under which the settings list it

    /// "Native — English"; the native name alone for the system's preference.
    [[nodiscard]] std::string menuLabel() const;

    bool operator==(const AppLanguage&) const = default;
};

} // namespace velmora
