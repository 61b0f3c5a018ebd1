#pragma once

#include "app/app_context.h"

#include <QMainWindow>

#include <memory>

class QStackedWidget;

namespace velmora
{

class ArrowPicker;
class BuildSheet;
class CanvasView;
class Inspector;
class LicenseEditor;
class Menus;
class SettingsWindow;
class SheetHost;
class Toolbar;

/// The editor's one window: tools, work area, inspector, and the sheets over them. Closing it ends the program, after
/// the questions that are due.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(const AppContext& context);
    ~MainWindow() override;

    /// Shows the window for the first time, with the size that the user wants at launch.
    void showAtStart();
    /// A page of SettingsTab.
    void openSettings(int tab);

signals:
    /// The window was closed, its questions answered.
    void closed();

protected:
    bool focusNextPrevChild(bool next) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void layOut();
    void addMenus();
    void addShortcuts();
    [[nodiscard]] QList<QWidget*> focusAreas() const;
    void connectState();
    void updateTitle();
    void showMode();
    void showPicker();
    void openBuildSheet();
    void closeSheet();

    AppContext m_context;
    QWidget* m_frame;
    Toolbar* m_toolbar;
    QStackedWidget* m_work;
    CanvasView* m_canvas;
    LicenseEditor* m_license;
    Inspector* m_inspector;
    SheetHost* m_sheets;
    BuildSheet* m_buildSheet;
    ArrowPicker* m_picker = nullptr; ///< made when it is first shown: its pictures take time
    SettingsWindow* m_settings = nullptr;
    bool m_buildSheetWaits = false; ///< for the arrow picker to be closed
    std::unique_ptr<Menus> m_menus;
};

} // namespace velmora
