#include "l10n/language_manager.h"

#include <gtest/gtest.h>

#include <map>

namespace velmora
{
namespace
{

/// Settings in memory that outlive the manager.
using Values = std::map<std::string, std::string>;

class MemoryStore : public SettingsStore
{
public:
    explicit MemoryStore(Values& values) : m_values(values) {}

    [[nodiscard]] std::optional<std::string> stringValue(const std::string& key) const override
    {
        const auto found = m_values.find(key);
        return found == m_values.end() ? std::nullopt : std::optional(found->second);
    }
    [[nodiscard]] std::optional<bool> boolValue(const std::string&) const override { return std::nullopt; }
    [[nodiscard]] std::optional<std::int64_t> intValue(const std::string&) const override { return std::nullopt; }
    void setString(const std::string& key, const std::string& value) override { m_values[key] = value; }
    void setBool(const std::string&, bool) override {}
    void setInt(const std::string&, std::int64_t) override {}

private:
    Values& m_values;
};

LanguageManager makeManager(Values& values, std::vector<std::string> preferred = {},
                            EmbeddedLanguagePacks::Packs packs = EmbeddedLanguagePacks::packs())
{
    return LanguageManager(
        std::make_unique<MemoryStore>(values), [preferred] { return preferred; }, std::move(packs));
}

TEST(LanguageManager, resolvesThePackInUse)
{
    EmbeddedLanguagePacks::Packs packs = EmbeddedLanguagePacks::packs();
    packs["de"] = {{"angle", "Winkel:"}};
    packs["pt-BR"] = {{"angle", "Ângulo:"}};
    const struct {
        const char* name;
        Values values;
        std::vector<std::string> preferred;
        std::string resolved;
        std::string current;
        std::string angle;
    } cases[] = {
        {"nothing stored", {}, {"de-DE"}, "en", "en", "Angle:"},
        {"chosen", {{"appLanguageCode", "de"}}, {}, "de", "system", "Winkel:"},
        {"system with a full code", {{"appLanguageCode", "system"}}, {"pt-BR", "de"}, "pt-BR", "system", "Ângulo:"},
        {"system with two letters", {{"appLanguageCode", "system"}}, {"de-AT", "fr"}, "de", "system", "Winkel:"},
        {"only the first preference counts",
         {{"appLanguageCode", "system"}},
         {"fr-FR", "de"},
         "en",
         "system",
         "Angle:"},
        {"system without preferences", {{"appLanguageCode", "system"}}, {}, "en", "system", "Angle:"},
        {"a code of another version", {{"appLanguageCode", "xx"}}, {"de"}, "xx", "system", "Angle:"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Values values = c.values;
        const LanguageManager manager = makeManager(values, c.preferred, packs);
        EXPECT_EQ(manager.resolvedCode(), c.resolved);
        EXPECT_EQ(manager.current().code, c.current);
        EXPECT_EQ(manager.string("angle"), c.angle);
        EXPECT_EQ(manager.string("menu.open"), "Open…");
        EXPECT_EQ(manager.string("Menu.open"), "Menu.open");
    }
}

TEST(LanguageManager, storesAChoiceAndTellsIt)
{
    Values values;
    LanguageManager manager = makeManager(values);
    std::vector<std::string> told;
    QObject::connect(&manager, &LanguageManager::changed,
                     [&] { told.push_back(manager.code() + values.at("appLanguageCode")); });
    manager.setCode("system");
    EXPECT_EQ(told, std::vector<std::string>{"systemsystem"});
    EXPECT_EQ(makeManager(values).code(), "system");
    EXPECT_EQ(manager.embeddedPackCount(), 1U);
}

TEST(AppLanguage, labelsTheCatalogsEntries)
{
    ASSERT_EQ(LanguageManager::catalog().size(), 2U);
    EXPECT_EQ(LanguageManager::catalog()[0].menuLabel(), "System Default");
    EXPECT_EQ(LanguageManager::catalog()[1].menuLabel(), "English — English");
}

TEST(EnglishPack, holdsOneUsableLineAKey)
{
    const auto table = EmbeddedLanguagePacks::english();
    EXPECT_EQ(table.size(), 131U);
    for (const auto& [key, text] : table) {
        SCOPED_TRACE(key);
        EXPECT_EQ(key.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789._"), std::string::npos);
        EXPECT_FALSE(text.empty());
        EXPECT_EQ(text.find_first_of("\n\r\t"), std::string::npos);
        EXPECT_EQ(text.find("..."), std::string::npos) << "the ellipsis is one character";
    }
    for (const char* const key : {"help.intro", "help.website_hint", "updates.check_fail_body"})
        EXPECT_NE(table.at(key).find("velmora.app"), std::string::npos) << key;
    for (const char* const key :
         {"about.version", "updates.available", "updates.available_body", "updates.upto_date_body"})
        EXPECT_NE(table.at(key).find("%@"), std::string::npos) << key;
}

} // namespace
} // namespace velmora
