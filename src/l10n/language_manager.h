#pragma once

#include "l10n/app_language.h"
#include "l10n/embedded_language_packs.h"
#include "platform/languages.h"
#include "platform/settings.h"

#include <QObject>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velmora
{

/// The chosen language and the texts in it. Used on the user-interface thread.
class LanguageManager : public QObject
{
    Q_OBJECT

public:
    /// The settings key of the chosen code.
    static constexpr const char* storageKey = "appLanguageCode";

    /// The languages offered, in order; the first one is the system's preference.
    static const std::vector<AppLanguage>& catalog();

    /// Starts with the code that the store holds, else with English.
    LanguageManager(std::unique_ptr<SettingsStore> store, PreferredLanguages preferred,
                    EmbeddedLanguagePacks::Packs packs = EmbeddedLanguagePacks::packs());

    /// The program's one manager, made on first use over the user's settings.
    static LanguageManager& shared();

    /// The chosen code; it may be one without a pack.
    [[nodiscard]] const std::string& code() const { return m_code; }
    /// Chooses a language: stores the code at once and emits changed().
    void setCode(const std::string& code);

    /// The code of the pack in use: the chosen one, or for "system" the user's first preference as far as there is a
    /// pack for it or for its first two letters, else "en".
    [[nodiscard]] std::string resolvedCode() const;
    /// The catalog's entry for the chosen code, else the catalog's first.
    [[nodiscard]] const AppLanguage& current() const;
    [[nodiscard]] std::size_t embeddedPackCount() const { return m_packs.size(); }
    /// The text for a key in the pack in use, else in English, else the key itself. The comparison is exact.
    [[nodiscard]] std::string string(std::string_view key) const;

signals:
    /// The language changed: whoever shows texts shows them anew.
    void changed();

private:
    [[nodiscard]] const std::string* find(std::string_view code, std::string_view key) const;

    std::unique_ptr<SettingsStore> m_store;
    PreferredLanguages m_preferred;
    EmbeddedLanguagePacks::Packs m_packs;
    std::string m_code;
};

} // namespace velmora
