#include "app/settings/theme_card.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"
#include "app/text.h"
#include "app/theme/theme_roles.h"

#include <QPainter>

#include <array>

namespace velmora
{
namespace
{

constexpr double cardHeight = 80;
constexpr double cardRadius = 10;
constexpr double cardPadding = 10;
constexpr double miniatureWidth = 96;
constexpr double miniatureHeight = 60;
constexpr double miniatureRadius = 6;
constexpr double textLeft = cardPadding + miniatureWidth + 14;
constexpr double markSize = 16;
constexpr double swatchSize = 20;
constexpr double swatchesWidth = 2 * swatchSize + 4;
constexpr double rightPadding = 15;

/// The window as it looks in a theme, 96 × 60 points from the origin.
void drawMiniature(QPainter& painter, const ThemePalette& palette, const ThemeRoles& roles, bool dark)
{
    const QRectF frame(0, 0, miniatureWidth, miniatureHeight);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(frame, miniatureRadius, miniatureRadius);
    painter.setClipPath(shape);
    painter.fillRect(frame, palette.canvasBackground);
    drawChrome(painter, QRectF(0, 0, 14, miniatureHeight), palette);
    painter.fillRect(QRectF(74, 0, 22, miniatureHeight), roles.panel);
    const std::array tools{faded(roles.secondary, 0.7), palette.accent, faded(roles.secondary, 0.7)};
    for (std::size_t i = 0; i < tools.size(); ++i)
        drawBox(painter, QRectF(3.5, 5 + 7 * static_cast<double>(i), 7, 4), 2, tools[i], {});
    const std::array lines{faded(roles.primary, 0.75), faded(roles.secondary, 0.55), palette.accent};
    for (std::size_t i = 0; i < lines.size(); ++i)
        drawBox(painter, QRectF(78, 6.5 + 7 * static_cast<double>(i), 14, 3), 1.5, lines[i], {});

    const QRectF drawnWindow(23, 16, 42, 28);
    drawShadow(painter, drawnWindow, 3, {.blur = 6, .offset = 2, .color = QColor(0, 0, 0, dark ? 115 : 60)});
    drawBox(painter, drawnWindow, 3, QColor(0xD8, 0xDB, 0xE2), {});
    painter.setClipRect(QRectF(23, 16, 42, 6.5), Qt::IntersectClip);
    drawBox(painter, drawnWindow, 3, Qt::white, {});
    painter.restore();
}

} // namespace

ThemeCard::ThemeCard(AppTheme theme, std::function<QColor()> systemAccent, QWidget* parent)
    : QRadioButton(parent), m_theme(theme), m_systemAccent(std::move(systemAccent))
{
    setText(qtText(displayName(theme)));
    setAccessibleName(text());
    setAccessibleDescription(qtText(blurb(theme)));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize ThemeCard::sizeHint() const
{
    const Look& look = lookOf(this);
    return {look.length(400), look.length(cardHeight)};
}

FocusShape ThemeCard::focusShape() const
{
    return {rect(), static_cast<double>(lookOf(this).length(cardRadius)), true};
}

void ThemeCard::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    const QColor accent = m_systemAccent();
    const ThemePalette shown = velmora::palette(m_theme, accent);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = look.length(cardRadius);
    drawBox(painter, rect(), radius, look.roles.panel, isChecked() ? QColor() : look.roles.border);
    if (underMouse() && !isChecked())
        drawBox(painter, rect(), radius, look.palette.hoverFill, look.roles.control);
    if (isChecked())
        drawChosenRing(painter, rect(), radius, look);

    const int padding = look.length(cardPadding);
    painter.save();
    painter.translate(padding, padding);
    painter.scale(look.scale, look.scale);
    drawMiniature(painter, shown, velmora::roles(m_theme, accent), isDark(m_theme));
    painter.restore();
    drawBox(painter, QRectF(padding, padding, look.length(miniatureWidth), look.length(miniatureHeight)),
            look.length(miniatureRadius), {}, faded(look.roles.control, 0.6));

    const double middle = height() / 2.0;
    const double markLeft = width() - look.length(rightPadding + markSize);
    if (isChecked())
        drawAccentTick(
            painter,
            QRectF(markLeft, middle - look.length(markSize) / 2.0, look.length(markSize), look.length(markSize)), look);
    const double swatchLeft = markLeft - look.length(14 + swatchesWidth);
    double left = swatchLeft;
    for (const QColor& color : {shown.accent, shown.swatchSecondary}) {
        const double size = look.length(swatchSize);
        drawBox(painter, QRectF(left, middle - size / 2, size, size), size / 2, color, look.roles.control);
        left += look.length(swatchSize + 4);
    }

    const double textX = look.length(textLeft);
    const double room = swatchLeft - textX - look.length(8);
    const int nameHeight = look.lineHeight(Type::bodyStrong);
    const int blurbHeight = look.lineHeight(Type::control);
    const double top = middle - (nameHeight + blurbHeight + look.length(1)) / 2.0;
    drawLine(painter, QRectF(textX, top, room, nameHeight), Qt::AlignLeft | Qt::AlignVCenter, text(),
             look.font(Type::bodyStrong), look.roles.primary);
    drawLine(painter, QRectF(textX, top + nameHeight + look.length(1), room, blurbHeight),
             Qt::AlignLeft | Qt::AlignVCenter, accessibleDescription(), look.font(Type::control), look.roles.secondary);
}

} // namespace velmora
