#pragma once

#include "app/app_context.h"

#include <QAction>
#include <QObject>

#include <functional>
#include <vector>

class QKeySequence;
class QMenu;
class QMenuBar;

namespace velmora
{

/// What the menu commands reach that is not the editor state.
struct MenuTargets {
    std::function<void()> showAbout{};
    std::function<void(int tab)> openSettings{};
    std::function<void()> closeWindow{};
    std::function<void()> fillScreen{};
    std::function<void()> defaultSize{};
    std::function<void()> zoomIn{};
    std::function<void()> zoomOut{};
    std::function<void()> zoomToFit{};
    std::function<void()> selectNext{};
    /// A sheet covers the window: commands on the document wait until it is closed.
    std::function<bool()> sheetIsOpen{};
};

/// The menu bar: every command with its shortcut, enabled as the editor state allows, in the chosen language.
class Menus : public QObject
{
    Q_OBJECT

public:
    /// Fills `bar`, which owns the menus and outlives this.
    Menus(QMenuBar& bar, const AppContext& context, MenuTargets targets);

    /// Looks again at what is enabled.
    void update();

private:
    using Text = std::function<QString()>;
    using Condition = std::function<bool()>;

    struct Command {
        QAction* action;
        Text text;
        Condition enabled;
    };
    struct MenuEntry {
        QMenu* menu;
        Text title;
    };

    QMenu* addMenu(const char* name, Text title, QMenu* parent = nullptr);
    QAction* add(QMenu* menu, const char* name, Text text, const QList<QKeySequence>& shortcuts,
                 std::function<void()> act, Condition enabled = {}, QAction::MenuRole role = QAction::NoRole);
    void addApplicationMenu();
    void addFileMenu();
    void addEditMenu();
    void addViewMenu();
    void addBuildMenu();
    void addWindowMenu();
    void addHelpMenu();
    void fillRecent();
    void retranslate();
    [[nodiscard]] Condition onDocument(Condition condition = {}) const;

    QMenuBar& m_bar;
    AppContext m_context;
    MenuTargets m_targets;
    std::vector<MenuEntry> m_menus{};
    std::vector<Command> m_commands{};
    QMenu* m_recent = nullptr;
};

} // namespace velmora
