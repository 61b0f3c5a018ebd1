#include "app/kit/color_well.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"

#include <QColorDialog>
#include <QPainter>
#include <QPainterPath>

namespace velmora
{

ColorWell::ColorWell(QWidget* parent) : QAbstractButton(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, &ColorWell::openPanel);
}

void ColorWell::setColor(const QColor& color)
{
    if (m_color == color)
        return;
    m_color = color;
    update();
    if (m_panel && m_panel->currentColor() != color) {
        const QSignalBlocker quiet(m_panel);
        m_panel->setCurrentColor(color);
    }
}

QSize ColorWell::sizeHint() const
{
    return {lookOf(this).length(44), lookOf(this).length(measure::controlHeight)};
}

FocusShape ColorWell::focusShape() const
{
    return {rect(), static_cast<double>(lookOf(this).length(measure::buttonRadius))};
}

void ColorWell::take(const QColor& color)
{
    if (!color.isValid() || color == m_color)
        return;
    m_color = color;
    update();
    emit colorEdited(color);
}

void ColorWell::openPanel()
{
    if (m_panel) {
        m_panel->raise();
        m_panel->activateWindow();
        return;
    }
    m_panel = new QColorDialog(m_color, this);
    m_panel->setAttribute(Qt::WA_DeleteOnClose);
    m_panel->setOption(QColorDialog::ShowAlphaChannel);
    m_panel->setWindowTitle(accessibleName());
    connect(m_panel, &QColorDialog::currentColorChanged, this, &ColorWell::take);
    connect(m_panel, &QColorDialog::finished, this, [this, before = m_color](int result) {
        if (result != QDialog::Accepted)
            take(before);
        emit editingFinished();
    });
    m_panel->open();
}

void ColorWell::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    const double radius = look.length(measure::buttonRadius);
    const QColor edge = !isEnabled() ? look.roles.border : underMouse() ? look.roles.secondary : look.roles.control;
    drawBox(painter, rect(), radius, look.roles.field, edge);
    const double inset = 1 + look.length(2);
    const QRectF inner = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    QPainterPath shape;
    shape.addRoundedRect(inner, radius - inset, radius - inset);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : 0.4);
    QColor opaque = m_color;
    opaque.setAlpha(255);
    painter.fillPath(shape, opaque);
    if (m_color.alpha() < 255) {
        painter.setClipPath(shape);
        QRectF half = inner;
        half.setLeft(inner.center().x());
        drawColorChecker(painter, half, look.length(5));
        painter.fillRect(half, m_color);
    }
}

} // namespace velmora
