#include "app/inspector/item_list.h"

#include "app/kit/icons.h"
#include "app/kit/look.h"
#include "app/kit/paint.h"
#include "app/text.h"
#include "l10n/labels.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyledItemDelegate>
#include <QToolTip>

#include <algorithm>

namespace velmora
{
namespace
{

constexpr double iconSize = 18;
constexpr double eyeSize = 16;
constexpr double signSize = 14;
constexpr double margin = 8; ///< at the left, and between icon and name
constexpr double leftOutStrength = 0.45;

} // namespace

/// Draws a row: icon, name, eye, hairline.
class ItemDelegate : public QStyledItemDelegate
{
public:
    explicit ItemDelegate(ItemList& list) : QStyledItemDelegate(&list), m_list(list) {}

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        return {0, lookOf(&m_list).length(ItemList::rowHeight)};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const Look& look = lookOf(&m_list);
        const DMGItem& item = m_list.m_model.item(index.row());
        const QRect& row = option.rect;
        painter->save();
        drawGround(*painter, option, look);
        drawHorizontalHairline(*painter, row.left(), row.right() + 1, row.bottom(), look.palette.dividerColor);

        const int side = look.length(iconSize);
        const int left = row.left() + look.length(margin);
        const QRect square(left, row.top() + (row.height() - 1 - side) / 2, side, side);
        painter->setOpacity(item.hidden ? leftOutStrength : 1);
        m_list.m_icons.draw(*painter, item, square);
        painter->setOpacity(1);

        const QRect eye = m_list.eyeOf(index);
        const int textLeft = square.right() + 1 + look.length(margin);
        const bool missing = m_list.m_icons.isMissing(item);
        const int textRight = eye.left() - (missing ? look.length(signSize) : 0);
        const QRect text(textLeft, row.top(), textRight - textLeft, row.height() - 1);
        const QFont font = look.font(Type::control);
        QString name = qtText(item.displayName);
        name.replace(QLatin1Char('\n'), QLatin1Char(' '));
        drawLine(*painter, text, Qt::AlignLeft | Qt::AlignVCenter,
                 QFontMetricsF(font).elidedText(name, Qt::ElideMiddle, text.width()), font, inkOf(item, option, look));
        if (missing)
            drawSign(*painter, {text.right() + 1, row.top()}, row.height(), look);
        drawEye(*painter, eye, item.hidden, m_list.m_hoveredEye == index, look);
        painter->restore();
    }

private:
    void drawGround(QPainter& painter, const QStyleOptionViewItem& option, const Look& look) const
    {
        // The list stands in a rounded frame, which its first row must not square.
        const double radius = look.length(measure::noteRadius) - 1;
        QPainterPath inside;
        inside.addRoundedRect(QRectF(m_list.viewport()->rect()).adjusted(0, 0, 0, 2 * radius), radius, radius);
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath row;
        row.addRect(option.rect);
        const QPainterPath ground = row.intersected(inside);
        if (option.state & QStyle::State_Selected)
            painter.fillPath(ground, faded(look.roles.selection, option.state & QStyle::State_Active ? 1 : 0.6));
        else if (option.state & QStyle::State_MouseOver)
            painter.fillPath(ground, look.palette.hoverFill);
    }

    /// What is left out stands back, but has to be read on the ground of a selected row too.
    static QColor inkOf(const DMGItem& item, const QStyleOptionViewItem& option, const Look& look)
    {
        if (!item.hidden)
            return look.roles.primary;
        return option.state & QStyle::State_Selected ? look.roles.secondary : look.roles.disabled;
    }

    void drawSign(QPainter& painter, const QPoint& corner, int height, const Look& look) const
    {
        const int side = look.length(signSize);
        painter.drawPixmap(corner.x(), corner.y() + (height - 1 - side) / 2,
                           iconPixmap(QStringLiteral("warning"), side, m_list.devicePixelRatioF(),
                                      {look.roles.warning, Qt::transparent}));
    }

    void drawEye(QPainter& painter, const QRect& eye, bool leftOut, bool hovered, const Look& look) const
    {
        const int side = look.length(eyeSize);
        const QPoint place(eye.right() + 1 - look.length(margin) - side, eye.top() + (eye.height() - 1 - side) / 2);
        const QColor ink = hovered ? look.roles.primary : look.roles.secondary;
        painter.drawPixmap(place, iconPixmap(leftOut ? QStringLiteral("eye-off") : QStringLiteral("eye"), side,
                                             m_list.devicePixelRatioF(), {ink, Qt::transparent}));
    }

    ItemList& m_list;
};

ItemList::ItemList(AppState& state, QWidget* parent)
    : QListView(parent), m_state(state), m_model(state), m_icons(viewport())
{
    setObjectName(QStringLiteral("fileInfo.items"));
    setAccessibleName(qtText(Labels::items));
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    setDragDropMode(DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setDragDropOverwriteMode(false);
    setItemDelegate(new ItemDelegate(*this));
    setModel(&m_model);
}

void ItemList::refresh()
{
    m_showing = true;
    m_model.refresh();
    const int row = m_model.rowOf(m_state.selection());
    if (row < 0) {
        setCurrentIndex({});
        clearSelection();
    } else if (const QModelIndex index = m_model.index(row);
               index != currentIndex() || !selectionModel()->isSelected(index)) {
        setCurrentIndex(index);
    }
    m_showing = false;
}

void ItemList::expireIcons()
{
    m_icons.expire();
    viewport()->update();
}

QRect ItemList::eyeOf(const QModelIndex& index) const
{
    QRect area = visualRect(index);
    area.setLeft(area.right() + 1 - lookOf(this).length(eyeWidth));
    return area;
}

FocusShape ItemList::focusShape() const
{
    // Round the frame that the list stands in.
    const QWidget* frame = parentWidget();
    return {QRectF(mapFromParent(QPoint(0, 0)), frame->size()),
            static_cast<double>(lookOf(this).length(measure::noteRadius))};
}

void ItemList::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QListView::currentChanged(current, previous);
    if (!m_showing && current.isValid())
        m_state.selectItem(m_model.item(current.row()).id);
}

void ItemList::switchLeftOut(const QModelIndex& index)
{
    const Uuid id = m_model.item(index.row()).id;
    m_state.edit({}, [&](DMGProject& project) {
        if (DMGItem* item = findElement(project.items, id))
            item->hidden = !item->hidden;
    });
}

void ItemList::moveRow(int by)
{
    const int row = currentIndex().row();
    const int to = row + by;
    if (row < 0 || to < 0 || to >= m_model.rowCount())
        return;
    m_state.moveItem(m_model.item(row).id, static_cast<std::size_t>(by > 0 ? to + 1 : to));
}

void ItemList::removeSelected()
{
    const int row = currentIndex().row();
    if (row < 0)
        return;
    m_state.remove(m_model.item(row).id);
    // The next one takes its place, so that several can be removed in turn.
    const auto& left = m_state.project().items;
    if (!left.empty())
        m_state.selectItem(left[std::min(static_cast<std::size_t>(row), left.size() - 1)].id);
}

bool ItemList::event(QEvent* event)
{
    // Before a command of the menus takes the key.
    if (event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Delete || key == Qt::Key_Backspace || key == Qt::Key_Space) {
            event->accept();
            return true;
        }
    }
    return QListView::event(event);
}

void ItemList::keyPressEvent(QKeyEvent* event)
{
    const int key = event->key();
    const bool alt = event->modifiers() & Qt::AltModifier;
    if (alt && (key == Qt::Key_Up || key == Qt::Key_Down))
        moveRow(key == Qt::Key_Up ? -1 : 1);
    else if (key == Qt::Key_Space && currentIndex().isValid())
        switchLeftOut(currentIndex());
    else if (key == Qt::Key_Delete || key == Qt::Key_Backspace)
        removeSelected();
    else
        QListView::keyPressEvent(event);
}

QPersistentModelIndex ItemList::eyeAt(const QPoint& point) const
{
    const QModelIndex index = indexAt(point);
    return index.isValid() && eyeOf(index).contains(point) ? index : QModelIndex();
}

void ItemList::setHoveredEye(const QPersistentModelIndex& index)
{
    if (index == m_hoveredEye)
        return;
    m_hoveredEye = index;
    viewport()->update();
}

void ItemList::mousePressEvent(QMouseEvent* event)
{
    m_pressedEye = event->button() == Qt::LeftButton ? eyeAt(event->pos()) : QPersistentModelIndex();
    if (!m_pressedEye.isValid())
        QListView::mousePressEvent(event);
}

void ItemList::mouseDoubleClickEvent(QMouseEvent* event)
{
    mousePressEvent(event);
}

void ItemList::mouseMoveEvent(QMouseEvent* event)
{
    setHoveredEye(event->buttons() ? QPersistentModelIndex() : eyeAt(event->pos()));
    if (!m_pressedEye.isValid())
        QListView::mouseMoveEvent(event);
}

void ItemList::mouseReleaseEvent(QMouseEvent* event)
{
    const QPersistentModelIndex pressed = std::exchange(m_pressedEye, {});
    if (!pressed.isValid())
        QListView::mouseReleaseEvent(event);
    else if (eyeAt(event->pos()) == pressed)
        switchLeftOut(pressed);
}

bool ItemList::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::Leave)
        setHoveredEye({});
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        if (const QPersistentModelIndex eye = eyeAt(help->pos()); eye.isValid()) {
            const bool leftOut = m_model.item(eye.row()).hidden;
            QToolTip::showText(help->globalPos(), qtText(leftOut ? Labels::includeInImage : Labels::leaveOut), this,
                               eyeOf(eye));
            return true;
        }
    }
    return QListView::viewportEvent(event);
}

void ItemList::paintEvent(QPaintEvent* event)
{
    m_icons.beginDrawing();
    QListView::paintEvent(event);
    m_icons.endDrawing();
}

} // namespace velmora
