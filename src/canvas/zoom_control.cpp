#include "canvas/zoom_control.h"

#include "canvas/canvas_colors.h"
#include "canvas/geometry/canvas_scale.h"
#include "canvas/text_line.h"
#include "l10n/labels.h"

#include <QAction>
#include <QActionGroup>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <cmath>

namespace velmora
{
namespace
{

constexpr double capsuleHeight = 24;
constexpr double fontSize = 11;
constexpr double paddingLeft = 12;
constexpr double paddingRight = 10;
constexpr double gap = 6;
constexpr double chevron = 8;

QString labelOf(const std::optional<double>& zoom)
{
    return QString::fromStdString(CanvasScale::zoomLabel(zoom));
}

} // namespace

ZoomControl::ZoomControl(ThemeManager& themes, QWidget* parent) : QAbstractButton(parent), m_themes(themes)
{
    setObjectName(QStringLiteral("canvas.zoom"));
    setFocusPolicy(Qt::TabFocus);
    setProperty("showsOwnFocus", true); // round the capsule, which is smaller than the widget
    setCursor(Qt::ArrowCursor);
    setAttribute(Qt::WA_Hover);
    setToolTip(QString::fromUtf8(Labels::canvasZoom));
    showZoom({});
    connect(this, &QAbstractButton::clicked, this, &ZoomControl::openMenu);
}

void ZoomControl::showZoom(const std::optional<double>& zoom)
{
    m_zoom = zoom;
    setText(labelOf(zoom));
    setAccessibleName(QString::fromUtf8(Labels::canvasZoom) + QStringLiteral(", ") + text());
    resize(sizeHint());
    update();
}

QSize ZoomControl::sizeHint() const
{
    const double wanted =
        paddingLeft + TextLine(text(), fontSize, QFont::Medium).size().width() + gap + chevron + paddingRight;
    return {static_cast<int>(std::ceil(wanted)) + 2 * margin, static_cast<int>(capsuleHeight) + 2 * margin};
}

void ZoomControl::paintEvent(QPaintEvent* /*event*/)
{
    const CanvasColors colors = canvasColors(m_themes);
    const QRectF capsule = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto shape = [](const QRectF& rect) {
        QPainterPath path;
        path.addRoundedRect(rect, rect.height() / 2, rect.height() / 2);
        return path;
    };
    painter.fillPath(shape(capsule), colors.roles.panel);
    if (isDown() || m_open)
        painter.fillPath(shape(capsule), colors.palette.dividerColor);
    else if (underMouse())
        painter.fillPath(shape(capsule), colors.palette.hoverFill);
    painter.setPen(QPen(colors.roles.border, 1));
    painter.drawPath(shape(capsule.adjusted(0.5, 0.5, -0.5, -0.5)));
    if (m_keyboardFocus) {
        painter.setPen(QPen(colors.roles.focus, 2));
        painter.drawPath(shape(capsule.adjusted(-2, -2, 2, 2)));
    }
    const TextLine label(text(), fontSize, QFont::Medium);
    label.draw(painter, {capsule.left() + paddingLeft, capsule.center().y() - label.size().height() / 2},
               colors.roles.primary);
    const QPointF tip(capsule.right() - paddingRight - chevron / 2, capsule.center().y() + chevron / 4);
    QPainterPath sign(tip + QPointF(-chevron / 2, -chevron / 2));
    sign.lineTo(tip);
    sign.lineTo(tip + QPointF(chevron / 2, -chevron / 2));
    painter.strokePath(sign, QPen(colors.roles.secondary, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

void ZoomControl::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Down)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void ZoomControl::focusInEvent(QFocusEvent* event)
{
    m_keyboardFocus = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    QAbstractButton::focusInEvent(event);
}

void ZoomControl::focusOutEvent(QFocusEvent* event)
{
    m_keyboardFocus = m_keyboardFocus && event->reason() == Qt::PopupFocusReason;
    QAbstractButton::focusOutEvent(event);
}

void ZoomControl::openMenu()
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto* group = new QActionGroup(menu);
    const auto offer = [&](const QString& name, std::optional<double> zoom) {
        QAction* action = menu->addAction(name);
        action->setCheckable(true);
        action->setChecked(m_zoom == zoom);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, zoom] { emit zoomChosen(zoom); });
    };
    offer(QString::fromUtf8(Labels::canvasFitToWindow), std::nullopt);
    menu->addSeparator();
    for (const double preset : CanvasScale::zoomPresets)
        offer(labelOf(preset), preset);
    connect(menu, &QMenu::aboutToHide, this, [this] {
        m_open = false;
        update();
    });
    m_open = true;
    update();
    const QSize size = menu->sizeHint();
    menu->popup(mapToGlobal(QPoint(width() - margin - size.width(), margin - size.height() - 4)));
}

} // namespace velmora
