// Everything that is on the screen follows a change of the language.

#include "app/window_world.h"

#include "app/settings/settings_window.h"
#include "l10n/l10n.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

struct LanguageChange : ::testing::Test, WindowWorld {
    EmbeddedLanguagePacks::Packs packs = [] {
        EmbeddedLanguagePacks::Packs all = EmbeddedLanguagePacks::packs();
        all["de"] = {{"fit_to_image", "An Bild anpassen"},
                     {"defaults.cancel", "Abbrechen"},
                     {"lang.title", "Sprache"},
                     {"text_size", "Schriftgröße"}};
        return all;
    }();
    LanguageManager source{openSettingsFile(folder / "source.ini"), [] { return std::vector<std::string>{}; }, packs};

    void SetUp() override
    {
        L10n::setSource(&source);
        show();
    }
    void TearDown() override { L10n::setSource(nullptr); }
    void speak(const char* code)
    {
        source.setCode(code);
        languages.setCode("en"); // tells the window
        QCoreApplication::processEvents();
    }
    /// Whether a label below `root` says this.
    static bool says(const QWidget& root, const QString& text)
    {
        const auto labels = root.findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(),
                           [&](const QLabel* label) { return label->text().remove('&') == text; });
    }
};

TEST_F(LanguageChange, reachesPanelsSheetsAndSettings)
{
    state.setInspectorTab(InspectorTab::text);
    state.setInspectorTab(InspectorTab::layout);
    state.presentOverlayPicker();
    EXPECT_EQ(the<QPushButton>("picker.cancel").text(), "Cancel");
    window->openSettings(2);
    auto* preferences = window->findChild<SettingsWindow*>();
    ASSERT_TRUE(QTest::qWaitForWindowActive(preferences));
    the<QRadioButton>("settings.language.en").setFocus();

    speak("de");
    EXPECT_EQ(the<QPushButton>("layout.fitToImage").text(), "An Bild anpassen");
    EXPECT_TRUE(says(*preferences, "Sprache"));
    EXPECT_EQ(preferences->focusWidget(), &the("settings.language.en")) << "the hand is still there";
    preferences->close();
    EXPECT_FALSE(state.showArrowPicker());
    state.presentOverlayPicker();
    EXPECT_EQ(the<QPushButton>("picker.cancel").text(), "Abbrechen");
    state.setShowArrowPicker(false);
    state.setInspectorTab(InspectorTab::text);
    EXPECT_TRUE(says(the("inspector.page.text"), "Schriftgröße"));

    speak("en");
    EXPECT_FALSE(says(the("inspector.page.text"), "Schriftgröße"));
    state.edit({}, [](DMGProject& project) { project.textSize = 14; }); // nothing of the old panels listens
}

} // namespace
} // namespace velmora::testing
