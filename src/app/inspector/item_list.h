#pragma once

#include "app/inspector/icon_source.h"
#include "app/inspector/item_list_model.h"
#include "app/kit/focus_ring.h"

#include <QListView>

namespace velmora
{

/// The list of all items. Up and Down select, Space and the eye switch "left out", Delete removes, Alt with Up and Down
/// moves the row; so does dragging it. It selects as the editor state does and the other way round.
class ItemList : public QListView, public HasFocusShape
{
    Q_OBJECT

public:
    explicit ItemList(AppState& state, QWidget* parent = nullptr);

    static constexpr double rowHeight = 28; ///< points
    static constexpr double eyeWidth = 44;  ///< the clickable part at the right, points

    /// Shows the items and the selection as they are now.
    void refresh();
    void removeSelected();
    /// Files may have changed: their icons are looked at again.
    void expireIcons();
    [[nodiscard]] const ItemListModel& items() const { return m_model; }
    /// The eye of a row, in the viewport's coordinates.
    [[nodiscard]] QRect eyeOf(const QModelIndex& index) const;
    [[nodiscard]] FocusShape focusShape() const override;

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    friend class ItemDelegate;
    void switchLeftOut(const QModelIndex& index);
    void moveRow(int by);
    [[nodiscard]] QPersistentModelIndex eyeAt(const QPoint& point) const;
    void setHoveredEye(const QPersistentModelIndex& index);

    AppState& m_state;
    ItemListModel m_model;
    IconSource m_icons;
    QPersistentModelIndex m_pressedEye{};
    QPersistentModelIndex m_hoveredEye{};
    bool m_showing = false; ///< the selection is taken over, not made
};

} // namespace velmora
