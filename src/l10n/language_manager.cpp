#include "l10n/language_manager.h"

#include <algorithm>

namespace velmora
{
namespace
{

constexpr const char* fallbackCode = "en";
constexpr const char* systemCode = "system";

} // namespace

const std::vector<AppLanguage>& LanguageManager::catalog()
{
    static const std::vector<AppLanguage> languages{
        {"system", "System", "System Default", "General"},
        {"en", "English", "English", "Europe"},
    };
    return languages;
}

LanguageManager::LanguageManager(std::unique_ptr<SettingsStore> store, PreferredLanguages preferred,
                                 EmbeddedLanguagePacks::Packs packs)
    : m_store(std::move(store)),
      m_preferred(std::move(preferred)),
      m_packs(std::move(packs)),
      m_code(m_store->stringValue(storageKey).value_or(fallbackCode))
{
}

LanguageManager& LanguageManager::shared()
{
    static LanguageManager manager(openUserSettings(), systemPreferredLanguages);
    return manager;
}

void LanguageManager::setCode(const std::string& code)
{
    m_code = code;
    m_store->setString(storageKey, code);
    emit changed();
}

std::string LanguageManager::resolvedCode() const
{
    if (m_code != systemCode)
        return m_code;
    const std::vector<std::string> preferred = m_preferred();
    if (preferred.empty())
        return fallbackCode;
    for (const std::string& code : {preferred.front(), preferred.front().substr(0, 2)}) {
        if (m_packs.count(code) != 0)
            return code;
    }
    return fallbackCode;
}

const AppLanguage& LanguageManager::current() const
{
    const std::vector<AppLanguage>& languages = catalog();
    const auto found =
        std::find_if(languages.begin(), languages.end(), [this](const AppLanguage& l) { return l.code == m_code; });
    return found == languages.end() ? languages.front() : *found;
}

std::string LanguageManager::string(std::string_view key) const
{
    const std::string* text = find(resolvedCode(), key);
    if (text == nullptr)
        text = find(fallbackCode, key);
    return text == nullptr ? std::string(key) : *text;
}

const std::string* LanguageManager::find(std::string_view code, std::string_view key) const
{
    const auto pack = m_packs.find(code);
    if (pack == m_packs.end())
        return nullptr;
    const auto text = pack->second.find(key);
    return text == pack->second.end() ? nullptr : &text->second;
}

} // namespace velmora
