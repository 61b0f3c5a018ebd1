#pragma once

#include "app/app_context.h"

#include <QWidget>

class QStackedWidget;

namespace velmora
{

class PageList;

/// What the pages of the settings ask of the main window.
struct WindowCommands {
    std::function<void()> fillScreen{};
    std::function<void()> defaultSize{};
};

/// The settings: a list of pages and the page. Every change takes effect at once.
class SettingsWindow : public QWidget
{
    Q_OBJECT

public:
    /// The settings key of the page shown last.
    static constexpr const char* storageKey = "settingsTab";

    SettingsWindow(const AppContext& context, const WindowCommands& commands, QWidget* parent = nullptr);

    /// Shows the window in front, on a page of SettingsTab.
    void showTab(int tab);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void makePages();
    void choose(int tab);

    AppContext m_context;
    WindowCommands m_commands;
    PageList* m_list;
    QStackedWidget* m_pages;
};

} // namespace velmora
