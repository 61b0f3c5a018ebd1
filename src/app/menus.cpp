#include "app/menus.h"

#include "app/mnemonics.h"
#include "app/operating_system.h"
#include "app/settings/settings_pages.h"
#include "app/text.h"
#include "app/typing.h"
#include "app/window_size.h"
#include "editor/app_state.h"
#include "l10n/labels.h"
#include "l10n/language_manager.h"
#include "platform/ports/desktop.h"
#include "update/app_links.h"
#include "update/updater.h"

#include <QHash>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

#include <map>
#include <utility>

namespace velmora
{
namespace
{

std::function<QString()> fromTable(const char* key)
{
    return [key] { return localized(key); };
}

std::function<QString()> label(const char* text)
{
    return [text] { return qtText(text); };
}

/// Window commands take the control key beside the command key on a Mac, the shift key elsewhere.
QKeySequence windowShortcut(Qt::Key key)
{
    return isMac() ? QKeySequence(Qt::META | Qt::CTRL | key) : QKeySequence(Qt::CTRL | Qt::SHIFT | key);
}

bool hasSelection(const AppState& state)
{
    return state.selection() || state.overlaySelection() || state.textSelection();
}

QString withName(const char* command, const std::string& name)
{
    return name.empty() ? qtText(command) : qtText(command) + QLatin1Char(' ') + qtText(name);
}

} // namespace

Menus::Menus(QMenuBar& bar, const AppContext& context, MenuTargets targets)
    : m_bar(bar), m_context(context), m_targets(std::move(targets))
{
    addApplicationMenu();
    addFileMenu();
    addEditMenu();
    addViewMenu();
    addBuildMenu();
    addWindowMenu();
    addHelpMenu();
    fillRecent();
    retranslate();

    const AppState* state = &m_context.state;
    for (const auto changed :
         {&AppState::selectionChanged, &AppState::overlaySelectionChanged, &AppState::textSelectionChanged,
          &AppState::isBuildingChanged, &AppState::editorModeChanged})
        connect(state, changed, this, &Menus::update);
    connect(state, &AppState::historyChanged, this, &Menus::retranslate);
    connect(state, &AppState::recentDocumentsChanged, this, [this] {
        fillRecent();
        retranslate();
    });
    connect(&m_context.languages, &LanguageManager::changed, this, &Menus::retranslate);
}

QMenu* Menus::addMenu(const char* name, Text title, QMenu* parent)
{
    QMenu* menu = parent ? parent->addMenu(QString()) : m_bar.addMenu(QString());
    menu->setObjectName(QLatin1String("menu.") + QLatin1String(name));
    m_menus.push_back({menu, std::move(title)});
    return menu;
}

QAction* Menus::add(QMenu* menu, const char* name, Text text, const QList<QKeySequence>& shortcuts,
                    std::function<void()> act, Condition enabled, QAction::MenuRole role)
{
    QAction* action = menu->addAction(QString());
    action->setObjectName(QLatin1String("menu.") + QLatin1String(name));
    action->setShortcuts(shortcuts);
    action->setMenuRole(role);
    connect(action, &QAction::triggered, this, [act = std::move(act)] {
        commitTyping();
        act();
    });
    m_commands.push_back({action, std::move(text), std::move(enabled)});
    return action;
}

Menus::Condition Menus::onDocument(Condition condition) const
{
    return [open = m_targets.sheetIsOpen, condition = std::move(condition)] {
        return !(open && open()) && (!condition || condition());
    };
}

void Menus::addApplicationMenu()
{
    QMenu* menu = addMenu("velmora", label("Velmora"));
    const auto openSettings = [this](int tab) { return [this, tab] { m_targets.openSettings(tab); }; };
    const auto own = QAction::ApplicationSpecificRole;
    add(menu, "about", fromTable("menu.about"), {}, m_targets.showAbout, {}, QAction::AboutRole);
    menu->addSeparator();
    add(menu, "theme", fromTable("menu.theme"), {}, openSettings(SettingsTab::theme), {}, own);
    add(menu, "language", fromTable("menu.language"), {}, openSettings(SettingsTab::language), {}, own);
    add(
        menu, "checkUpdates", fromTable("menu.check_updates"), {}, [this] { m_context.updater.check(true); }, {}, own);
    menu->addSeparator();
    add(menu, "settings", label(Labels::settings), {QKeySequence(Qt::CTRL | Qt::Key_Comma)},
        openSettings(SettingsTab::last), {}, QAction::PreferencesRole);
    menu->addSeparator();
    // The window asks; closing it ends the program.
    add(menu, "quit", label(Labels::quit), {QKeySequence(Qt::CTRL | Qt::Key_Q)}, m_targets.closeWindow, {},
        QAction::QuitRole);
}

void Menus::addFileMenu()
{
    AppState& state = m_context.state;
    QMenu* menu = addMenu("file", label(Labels::file));
    add(
        menu, "newProject", fromTable("menu.new_project"), {QKeySequence(Qt::CTRL | Qt::Key_N)},
        [&state] { state.newProject(); }, onDocument());
    add(
        menu, "open", fromTable("menu.open"), {QKeySequence(Qt::CTRL | Qt::Key_O)}, [&state] { state.open(); },
        onDocument());
    m_recent = addMenu("openRecent", label(Labels::openRecent), menu);
    menu->addSeparator();
    add(menu, "close", label(Labels::close), {QKeySequence(Qt::CTRL | Qt::Key_W)}, m_targets.closeWindow);
    add(
        menu, "save", fromTable("menu.save"), {QKeySequence(Qt::CTRL | Qt::Key_S)}, [&state] { state.save(); },
        onDocument());
    add(
        menu, "saveAs", fromTable("menu.save_as"), {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S)},
        [&state] { state.saveAs(); }, onDocument());
    menu->addSeparator();
    add(
        menu, "defaultSettings", fromTable("menu.default_settings"), {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_D)},
        [&state] { state.resetToDefaultSettings(); }, onDocument());
}

void Menus::addEditMenu()
{
    AppState& state = m_context.state;
    QMenu* menu = addMenu("edit", label(Labels::edit));
    add(
        menu, "undo", [&state] { return withName(Labels::undo, state.undoName()); },
        {QKeySequence(Qt::CTRL | Qt::Key_Z)}, [&state] { state.undo(); },
        onDocument([&state] { return state.canUndo(); }));
    add(
        menu, "redo", [&state] { return withName(Labels::redo, state.redoName()); },
        {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)},
        [&state] { state.redo(); }, onDocument([&state] { return state.canRedo(); }));
    menu->addSeparator();
    const auto selected = onDocument([&state] { return hasSelection(state); });
    QAction* remove = add(
        menu, "delete", label(Labels::deleteSelection), {QKeySequence(Qt::Key_Delete)},
        [&state] {
            if (hasSelection(state))
                state.removeSelectedOrBackground();
        },
        selected);
    // Shown in the menu; the key itself belongs to whatever has the focus.
    remove->setShortcutContext(Qt::WidgetShortcut);
    add(menu, "selectNext", label(Labels::selectNext), {}, m_targets.selectNext,
        onDocument([&state] { return state.editorMode() != EditorMode::licenses; }));
}

void Menus::addViewMenu()
{
    AppState& state = m_context.state;
    QMenu* menu = addMenu("view", label(Labels::view));
    const auto onCanvas = onDocument([&state] { return state.editorMode() != EditorMode::licenses; });
    add(menu, "zoomIn", label(Labels::zoomIn),
        {QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)}, m_targets.zoomIn, onCanvas);
    add(menu, "zoomOut", label(Labels::zoomOut), {QKeySequence(Qt::CTRL | Qt::Key_Minus)}, m_targets.zoomOut, onCanvas);
    add(menu, "zoomToFit", label(Labels::zoomToFit), {QKeySequence(Qt::CTRL | Qt::Key_9)}, m_targets.zoomToFit,
        onCanvas);
}

void Menus::addBuildMenu()
{
    AppState& state = m_context.state;
    QMenu* menu = addMenu("build", fromTable("menu.build"));
    add(
        menu, "buildDmg", fromTable("menu.build_dmg"), {QKeySequence(Qt::CTRL | Qt::Key_B)},
        [&state] { state.build(); }, onDocument([&state] { return !state.isBuilding(); }));
}

void Menus::addWindowMenu()
{
    QMenu* menu = addMenu("window", label(Labels::window));
    SettingsStore& settings = m_context.settings;
    QAction* maximized = add(menu, "openMaximized", fromTable("menu.open_maximized"), {}, [] {});
    maximized->setCheckable(true);
    connect(maximized, &QAction::toggled, this, [&settings](bool on) { WindowPrefs::setOpensMaximized(settings, on); });
    // The settings window has the same switch.
    connect(menu, &QMenu::aboutToShow, maximized, [maximized, &settings] {
        const QSignalBlocker quiet(maximized);
        maximized->setChecked(WindowPrefs::opensMaximized(settings));
    });
    {
        const QSignalBlocker quiet(maximized);
        maximized->setChecked(WindowPrefs::opensMaximized(settings));
    }
    add(menu, "fillScreen", fromTable("menu.fill_screen"), {windowShortcut(Qt::Key_F)}, m_targets.fillScreen);
    add(menu, "defaultSize", fromTable("menu.default_size"), {windowShortcut(Qt::Key_0)}, m_targets.defaultSize);
}

void Menus::addHelpMenu()
{
    QMenu* menu = addMenu("help", fromTable("settings.help"));
    add(menu, "helpWebsite", fromTable("menu.help_website"), {},
        [this] { m_context.desktop.openAddress(AppLinks::website); });
    add(menu, "helpPreferences", fromTable("menu.help_preferences"), {},
        [this] { m_targets.openSettings(SettingsTab::help); });
}

void Menus::fillRecent()
{
    std::erase_if(m_commands, [this](const Command& c) { return m_recent->actions().contains(c.action); });
    m_recent->clear();
    const auto files = m_context.state.recentDocuments();
    std::map<std::string, int> names;
    for (const auto& file : files)
        ++names[file.filename().string()];
    for (const auto& file : files) {
        QString text = qtPath(file.filename());
        if (names[file.filename().string()] > 1)
            text += QStringLiteral(" — ") + qtPath(file.parent_path());
        add(
            m_recent, "recentDocument", [text] { return text; }, {},
            [this, file] { m_context.state.openHandedOver(file); }, onDocument());
    }
    m_recent->addSeparator();
    add(
        m_recent, "clearRecent", label(Labels::clearMenu), {}, [this] { m_context.state.clearRecentDocuments(); },
        [this] { return !m_context.state.recentDocuments().empty(); });
}

void Menus::retranslate()
{
    QHash<const QAction*, QString> plain;
    for (const MenuEntry& entry : m_menus)
        plain[entry.menu->menuAction()] = entry.title();
    for (const Command& command : m_commands)
        plain[command.action] = command.text();
    update();
    // Each text is set once and whole: this runs at every step of a drag, and menus follow each text that changes.
    const auto mark = [&plain](const QList<QAction*>& actions) {
        QList<QAction*> shown;
        QStringList texts;
        for (QAction* action : actions) {
            if (action->isSeparator())
                continue;
            shown << action;
            texts << plain.value(action);
        }
        // Menus on a Mac have no mnemonics.
        const QStringList marked = isMac() ? texts : withMnemonics(texts);
        for (qsizetype i = 0; i < shown.size(); ++i)
            shown[i]->setText(isMac() ? withoutMnemonics(marked[i]) : marked[i]);
    };
    mark(m_bar.actions());
    for (const MenuEntry& entry : m_menus)
        mark(entry.menu->actions());
}

void Menus::update()
{
    for (const Command& command : m_commands)
        command.action->setEnabled(!command.enabled || command.enabled());
}

} // namespace velmora
