#include "app/settings/pages.h"

#include "app/about.h"
#include "app/kit/icons.h"
#include "app/kit/switch.h"
#include "app/plain_widgets.h"
#include "app/settings/setting_group.h"
#include "app/settings/theme_card.h"
#include "app/text.h"
#include "app/theme/theme_manager.h"
#include "app/window_size.h"
#include "l10n/labels.h"
#include "l10n/language_manager.h"
#include "platform/ports/desktop.h"
#include "update/app_links.h"
#include "update/updater.h"

#include <QAction>
#include <QButtonGroup>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <array>

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
        layout->setContentsMargins(points(28), points(24), points(28), points(24));
        layout->setSpacing(0);
        layout->addWidget(makeLabel(title, Type::pageTitle));
        layout->addSpacing(points(2));
        layout->addWidget(makeHint(intro, Type::control));
        layout->addSpacing(points(20));
    }
    [[nodiscard]] int points(double length) const { return lookOf(widget).length(length); }
    QWidget* finish()
    {
        layout->addStretch(1);
        return widget;
    }
};

QLabel* makeValue(const QString& text)
{
    QLabel* value = makeHint(text, Type::control);
    value->setWordWrap(false);
    return value;
}

Switch* makeSwitch(const QString& name, const char* objectName, bool on)
{
    auto* result = new Switch;
    result->setObjectName(QLatin1String(objectName));
    result->setAccessibleName(name);
    result->setChecked(on);
    return result;
}

/// A sign and a sentence that tell how a check ended.
class CheckOutcome : public QWidget
{
public:
    CheckOutcome() : m_sign(new QLabel), m_text(makeLabel(QString(), Type::control))
    {
        auto* layout = new QHBoxLayout(this);
        layout->setContentsMargins({});
        layout->setSpacing(lookOf(this).length(8));
        layout->addWidget(m_sign);
        layout->addWidget(m_text);
        hide();
    }
    void show(UpdateOutcome outcome)
    {
        m_outcome = outcome;
        m_text->setText(outcome == UpdateOutcome::failed ? localized("updates.check_fail_title")
                                                         : localized("updates.upto_date_title"));
        dress();
        setVisible(outcome != UpdateOutcome::newer);
    }

protected:
    void changeEvent(QEvent* event) override
    {
        if (event->type() == QEvent::PaletteChange)
            dress();
        QWidget::changeEvent(event);
    }

private:
    void dress()
    {
        const Look& look = lookOf(this);
        const bool failed = m_outcome == UpdateOutcome::failed;
        const QColor ink = failed ? look.roles.warning : look.roles.success;
        m_sign->setPixmap(iconPixmap(failed ? QStringLiteral("warning") : QStringLiteral("tick-circle"),
                                     look.length(16), devicePixelRatioF(), {ink, Qt::transparent}));
        QPalette colors = m_text->palette();
        colors.setColor(QPalette::WindowText, ink);
        m_text->setPalette(colors);
    }

    QLabel* m_sign;
    QLabel* m_text;
    UpdateOutcome m_outcome = UpdateOutcome::upToDate;
};

QString shortcutText(const QWidget* within, const char* action)
{
    // The menus know which keys stand for their commands.
    const auto* found = within ? within->findChild<QAction*>(QLatin1String(action)) : nullptr;
    return found ? found->shortcut().toString(QKeySequence::NativeText) : QString();
}

} // namespace

QWidget* makeThemePage(const AppContext& context)
{
    Page page(localized("theme.title"), localized("theme.intro"));
    ThemeManager& themes = context.themes;
    auto* current = makeLabel(QString(), Type::controlStrong);
    auto* line = new QHBoxLayout;
    line->setSpacing(page.points(6));
    line->addWidget(makeValue(localized("theme.current")));
    line->addWidget(current);
    line->addStretch(1);
    page.layout->addLayout(line);
    page.layout->addSpacing(page.points(12));

    auto* group = new QButtonGroup(page.widget);
    for (const AppTheme theme : allAppThemes) {
        // Only the light theme has the desktop's accent; its card shows it in every theme.
        auto* card = new ThemeCard(theme, [&themes] { return themes.systemAccent(); });
        QString name = qtText(displayName(theme)).remove(u' ');
        name[0] = name[0].toLower();
        card->setObjectName(QStringLiteral("settings.theme.") + name);
        group->addButton(card, static_cast<int>(theme));
        page.layout->addWidget(card);
        page.layout->addSpacing(page.points(12));
    }
    const auto refresh = [group, current, &themes] {
        group->button(static_cast<int>(themes.theme()))->setChecked(true);
        leadTabToChosen(*group);
        current->setText(qtText(displayName(themes.theme())));
    };
    QObject::connect(group, &QButtonGroup::idClicked, page.widget,
                     [&themes](int id) { themes.setTheme(static_cast<AppTheme>(id)); });
    QObject::connect(&themes, &ThemeManager::themeChanged, page.widget, refresh);
    refresh();
    return page.finish();
}

QWidget* makeUpdatesPage(const AppContext& context)
{
    Page page(localized("updates.software"), qtText(Labels::updatesIntro));
    Updater& updater = context.updater;
    auto* version = makeLabel(localized("about.version", qtText(updater.currentVersion())), Type::body);
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* automatic = makeSwitch(localized("updates.auto_check"), "settings.autoCheck", updater.autoCheck());
    automatic->setAccessibleDescription(qtText(Labels::updatesAutomatic));
    auto* group = new SettingGroup;
    group->addRow(localized("updates.current"), {}, {version});
    group->addRow(localized("updates.auto_check"), qtText(Labels::updatesAutomatic), {automatic});
    auto* now = makeLargeButton(localized("updates.check_now"), "settings.checkNow");
    now->setDefault(true);
    auto* outcome = new CheckOutcome;
    auto* line = new QHBoxLayout;
    line->setSpacing(page.points(16));
    line->addWidget(now);
    line->addWidget(outcome);
    line->addStretch(1);
    page.layout->addWidget(group);
    page.layout->addSpacing(page.points(16));
    page.layout->addLayout(line);

    QObject::connect(automatic, &QCheckBox::clicked, page.widget, [&updater](bool on) { updater.setAutoCheck(on); });
    QObject::connect(&updater, &Updater::autoCheckChanged, automatic, &QCheckBox::setChecked);
    QObject::connect(now, &QPushButton::clicked, page.widget, [&updater] { updater.check(true); });
    QObject::connect(&updater, &Updater::checkFinished, outcome, [outcome](UpdateOutcome ended, bool userInitiated) {
        if (userInitiated)
            outcome->show(ended);
    });
    return page.finish();
}

QWidget* makeLanguagePage(const AppContext& context)
{
    Page page(localized("lang.title"), localized("lang.intro"));
    LanguageManager& languages = context.languages;
    auto* current = makeValue(QString());
    auto* now = new SettingGroup;
    now->addRow(localized("lang.current"), {}, {current});
    page.layout->addWidget(now);

    auto* group = new QButtonGroup(page.widget);
    SettingGroup* rows = nullptr;
    std::string region;
    for (std::size_t i = 0; i < LanguageManager::catalog().size(); ++i) {
        const AppLanguage& language = LanguageManager::catalog()[i];
        if (!rows || language.region != region) {
            rows = new SettingGroup;
            region = language.region;
            page.layout->addSpacing(page.points(16));
            QLabel* heading = makeHint(qtText(region), Type::hintMedium);
            heading->setIndent(page.points(2));
            page.layout->addWidget(heading);
            page.layout->addSpacing(page.points(6));
            page.layout->addWidget(rows);
        }
        auto* choice =
            new ChoiceRow(language.code == "system" ? localized("lang.system") : qtText(language.menuLabel()));
        choice->setObjectName(QStringLiteral("settings.language.") + qtText(language.code));
        group->addButton(choice, static_cast<int>(i));
        rows->addRow(choice);
    }
    const auto refresh = [group, current, &languages] {
        for (QAbstractButton* button : group->buttons()) {
            if (LanguageManager::catalog()[static_cast<std::size_t>(group->id(button))].code == languages.code())
                button->setChecked(true);
        }
        leadTabToChosen(*group);
        const std::size_t packs = languages.embeddedPackCount();
        current->setText(qtText(languages.current().menuLabel()) +
                         qtText(packs == 1 ? Labels::languagePack : Labels::languagePacks).arg(packs));
    };
    QObject::connect(group, &QButtonGroup::idClicked, page.widget, [&languages](int id) {
        languages.setCode(LanguageManager::catalog()[static_cast<std::size_t>(id)].code);
    });
    QObject::connect(&languages, &LanguageManager::changed, page.widget, refresh);
    refresh();
    return page.finish();
}

QWidget* makeWindowPage(const AppContext& context, const WindowCommands& commands, const QWidget* menus)
{
    Page page(qtText(Labels::window), qtText(Labels::windowIntro));
    SettingsStore& settings = context.settings;
    auto* maximized =
        makeSwitch(localized("menu.open_maximized"), "settings.openMaximized", WindowPrefs::opensMaximized(settings));
    maximized->setAccessibleDescription(qtText(Labels::openMaximizedHint));
    const auto makeButton = [](const char* label, const QString& name, const char* objectName) {
        auto* button = makeLargeButton(qtText(label), objectName);
        button->setAccessibleName(name);
        return button;
    };
    auto* fill = makeButton(Labels::fillNow, localized("menu.fill_screen"), "settings.fillScreen");
    auto* normal = makeButton(Labels::apply, localized("menu.default_size"), "settings.defaultSize");
    const QString size = QStringLiteral("%1 × %2").arg(WindowPrefs::defaultWidth).arg(WindowPrefs::defaultHeight);
    const QString keys = shortcutText(menus, "menu.defaultSize");
    auto* group = new SettingGroup;
    group->addRow(localized("menu.open_maximized"), qtText(Labels::openMaximizedHint), {maximized});
    group->addRow(localized("menu.fill_screen"), {}, {makeValue(shortcutText(menus, "menu.fillScreen")), fill});
    group->addRow(localized("menu.default_size"), {},
                  {makeValue(keys.isEmpty() ? size : size + QStringLiteral(" · ") + keys), normal});
    page.layout->addWidget(group);
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
    auto* group = new SettingGroup;
    group->addRow(localized("help.website"), localized("help.website_hint"), {website});
    page.layout->addWidget(group);
    page.layout->addSpacing(page.points(24));
    page.layout->addWidget(makeLabel(qtText(Labels::helpCanvas), Type::bodyStrong));
    page.layout->addSpacing(page.points(10));
    auto* table = new QGridLayout;
    table->setHorizontalSpacing(page.points(24));
    table->setVerticalSpacing(page.points(8));
    table->setColumnStretch(1, 1);
    const auto native = [](int keys) { return QKeySequence(keys).toString(QKeySequence::NativeText); };
    const QString arrows = qtText(Labels::helpArrowKeys);
    const std::array<std::pair<QString, const char*>, 6> keys{{
        {native(Qt::Key_Tab), Labels::helpSelectNext},
        {arrows, Labels::helpMove},
        {native(Qt::ShiftModifier) + arrows, Labels::helpMoveFar},
        {native(Qt::Key_Return), Labels::helpEdit},
        {native(Qt::Key_Delete), Labels::helpRemove},
        {native(Qt::Key_Escape), Labels::helpGiveUp},
    }};
    for (const auto& [key, does] : keys) {
        const int row = table->rowCount();
        table->addWidget(makeValue(key), row, 0);
        table->addWidget(makeLabel(qtText(does), Type::control), row, 1);
    }
    page.layout->addLayout(table);
    QObject::connect(website, &QPushButton::clicked, page.widget,
                     [&desktop] { desktop.openAddress(AppLinks::website); });
    return page.finish();
}

} // namespace velmora
