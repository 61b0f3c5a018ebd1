#pragma once

#include "app/app_context.h"
#include "model/geometry.h"
#include "model/uuid.h"

#include <QWidget>

#include <array>

class QLabel;
class QScrollArea;
class QStackedWidget;

namespace velmora
{

class InspectorPanel;
class TabRail;

/// The column at the window's right: the panel of the chosen tab, and the tabs. A panel is made when it is first shown.
class Inspector : public QWidget
{
    Q_OBJECT

public:
    explicit Inspector(const AppContext& context, QWidget* parent = nullptr);

    /// In points.
    static constexpr double width = 360;

    /// What F6 steps through.
    [[nodiscard]] QWidget* panelArea() const;
    [[nodiscard]] QWidget* tabColumn() const;
    /// Gives the focus to the first field of the panel.
    void focusFirstField();
    /// Has the shown panel follow a box that is being dragged on the canvas. Content points.
    void showDraggedBox(const Uuid& id, const Rect& box);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void showTab();
    void retranslate();

    static constexpr int tabCount = 5;

    AppContext m_context;
    QLabel* m_title;
    QStackedWidget* m_stack;
    TabRail* m_rail;
    QWidget* m_panelArea;
    std::array<QScrollArea*, tabCount> m_pages{};
    std::array<InspectorPanel*, tabCount> m_panels{};
};

} // namespace velmora
