#include "app/settings/pages.h"

#include "app/about.h"
#include "app/plain_widgets.h"
#include "app/text.h"
#include "app/theme/theme_manager.h"
#include "app/window_size.h"
#include "l10n/labels.h"
#include "l10n/language_manager.h"
#include "platform/ports/desktop.h"
#include "update/app_links.h"
#include "update/updater.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace velmora
{
namespace
{

/// A page with its title and one sentence; what follows is added to its layout.
struct Page {
    QWidget* widget = new QWidget;
    QVBoxLayout* layout = new QVBoxLayout(widget);

    Page(const QString& title, const QString& intro)
    {
        const Look& look = lookOf(widget);
        layout->setContentsMargins(look.length(28), look.length(24), look.length(28), look.length(24));
        layout->setSpacing(look.length(8));
        layout->addWidget(makeLabel(title, Type::pageTitle));
        if (!intro.isEmpty())
            layout->addWidget(makeHint(intro, Type::control));
        layout->addSpacing(look.length(8));
    }
    QWidget* finish()
    {
        layout->addStretch(1);
        return widget;
    }
};

} // namespace

QWidget* makeThemePage(const AppContext& context)
{
    Page page(localized("theme.title"), localized("theme.intro"));
    ThemeManager& themes = context.themes;
    auto* group = new QButtonGroup(page.widget);
    for (const AppTheme theme : allAppThemes) {
        auto* choice = new QRadioButton(qtText(displayName(theme)));
        choice->setObjectName(QStringLiteral("settings.theme.") + qtText(displayName(theme)).toLower().remove(u' '));
        choice->setAccessibleName(qtText(displayName(theme)));
        choice->setAccessibleDescription(qtText(blurb(theme)));
        group->addButton(choice, static_cast<int>(theme));
        page.layout->addWidget(choice);
        page.layout->addWidget(makeHint(qtText(blurb(theme))));
    }
    const auto refresh = [group, &themes] { group->button(static_cast<int>(themes.theme()))->setChecked(true); };
    QObject::connect(group, &QButtonGroup::idClicked, page.widget,
                     [&themes](int id) { themes.setTheme(static_cast<AppTheme>(id)); });
    QObject::connect(&themes, &ThemeManager::themeChanged, page.widget, refresh);
    refresh();
    return page.finish();
}

QWidget* makeUpdatesPage(const AppContext& context)
{
    Page page(localized("updates.software"), {});
    Updater& updater = context.updater;
    page.layout->addWidget(
        makeLabel(localized("updates.current") + QStringLiteral(": ") + qtText(updater.currentVersion()), Type::body));
    auto* automatic = new QCheckBox(localized("updates.auto_check"));
    automatic->setObjectName(QStringLiteral("settings.autoCheck"));
    automatic->setChecked(updater.autoCheck());
    auto* now = makeLargeButton(localized("updates.check_now"), "settings.checkNow");
    page.layout->addWidget(automatic);
    page.layout->addWidget(now, 0, Qt::AlignLeft);
    QObject::connect(automatic, &QCheckBox::clicked, page.widget, [&updater](bool on) { updater.setAutoCheck(on); });
    QObject::connect(&updater, &Updater::autoCheckChanged, automatic, &QCheckBox::setChecked);
    QObject::connect(now, &QPushButton::clicked, page.widget, [&updater] { updater.check(true); });
    return page.finish();
}

QWidget* makeLanguagePage(const AppContext& context)
{
    Page page(localized("lang.title"), localized("lang.intro"));
    LanguageManager& languages = context.languages;
    auto* current = makeLabel(QString(), Type::body);
    page.layout->addWidget(current);
    auto* group = new QButtonGroup(page.widget);
    std::string region;
    for (std::size_t i = 0; i < LanguageManager::catalog().size(); ++i) {
        const AppLanguage& language = LanguageManager::catalog()[i];
        if (language.region != region)
            page.layout->addWidget(makeHint(qtText(language.region), Type::controlStrong));
        region = language.region;
        auto* choice =
            new QRadioButton(language.code == "system" ? localized("lang.system") : qtText(language.menuLabel()));
        choice->setObjectName(QStringLiteral("settings.language.") + qtText(language.code));
        group->addButton(choice, static_cast<int>(i));
        page.layout->addWidget(choice);
    }
    const auto refresh = [group, current, &languages] {
        for (QAbstractButton* button : group->buttons())
            button->setChecked(LanguageManager::catalog()[static_cast<std::size_t>(group->id(button))].code ==
                               languages.code());
        current->setText(localized("lang.current") + QStringLiteral(": ") + qtText(languages.current().menuLabel()) +
                         qtText(Labels::languagePacks).arg(languages.embeddedPackCount()));
    };
    QObject::connect(group, &QButtonGroup::idClicked, page.widget, [&languages](int id) {
        languages.setCode(LanguageManager::catalog()[static_cast<std::size_t>(id)].code);
    });
    QObject::connect(&languages, &LanguageManager::changed, page.widget, refresh);
    refresh();
    return page.finish();
}

QWidget* makeWindowPage(const AppContext& context, const WindowCommands& commands)
{
    Page page(qtText(Labels::window), qtText(Labels::windowIntro));
    SettingsStore& settings = context.settings;
    auto* maximized = new QCheckBox(localized("menu.open_maximized"));
    maximized->setObjectName(QStringLiteral("settings.openMaximized"));
    maximized->setChecked(WindowPrefs::opensMaximized(settings));
    auto* fill = makeLargeButton(localized("menu.fill_screen"), "settings.fillScreen");
    auto* normal = makeLargeButton(localized("menu.default_size"), "settings.defaultSize");
    page.layout->addWidget(maximized);
    page.layout->addWidget(fill, 0, Qt::AlignLeft);
    page.layout->addWidget(normal, 0, Qt::AlignLeft);
    QObject::connect(maximized, &QCheckBox::clicked, page.widget,
                     [&settings](bool on) { WindowPrefs::setOpensMaximized(settings, on); });
    QObject::connect(fill, &QPushButton::clicked, page.widget, commands.fillScreen);
    QObject::connect(normal, &QPushButton::clicked, page.widget, commands.defaultSize);
    return page.finish();
}

QWidget* makeAboutPage(const AppContext& context)
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(makeAboutContent(context.desktop, QStringLiteral("settings.about")), 0, Qt::AlignCenter);
    return page;
}

QWidget* makeHelpPage(const AppContext& context)
{
    Page page(localized("settings.help"), localized("help.intro"));
    Desktop& desktop = context.desktop;
    auto* website = makeLargeButton(localized("about.visit"), "settings.help.website");
    page.layout->addWidget(makeHint(localized("help.website_hint"), Type::control));
    page.layout->addWidget(website, 0, Qt::AlignLeft);
    QObject::connect(website, &QPushButton::clicked, page.widget,
                     [&desktop] { desktop.openAddress(AppLinks::website); });
    return page.finish();
}

} // namespace velmora
