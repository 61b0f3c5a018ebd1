#include "app/kit/paint.h"
#include "app/kit/style_parts.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyleOption>

namespace velmora::parts
{
namespace
{

constexpr double rowHeight = 24;
constexpr double separatorHeight = 9;
constexpr double sideMargin = 4; ///< from the menu's edge to the row that is lit
constexpr double markColumn = 20;
constexpr double shortcutGap = 28;

QString labelOf(const QStyleOptionMenuItem& option)
{
    return option.text.section(QLatin1Char('\t'), 0, 0);
}

QString shortcutOf(const QStyleOptionMenuItem& option)
{
    return option.text.section(QLatin1Char('\t'), 1);
}

int textFlags(Qt::Alignment alignment, const QStyleOptionMenuItem& option)
{
    const bool hidden = option.state & QStyle::State_NoChange;
    return static_cast<int>(alignment) | Qt::TextSingleLine | (hidden ? Qt::TextHideMnemonic : Qt::TextShowMnemonic);
}

} // namespace

void drawMenuPanel(QPainter& painter, const QRect& rect, bool rounded, const Look& look)
{
    const QColor edge = look.dark() ? look.roles.border : faded(Qt::black, 0.18);
    drawBox(painter, rect, rounded ? look.length(measure::toolRadius) : 0, look.roles.sheet, edge);
}

void drawMenuItem(QPainter& painter, const QStyleOptionMenuItem& option, const Look& look)
{
    const QRect& rect = option.rect;
    const int margin = look.length(sideMargin);
    if (option.menuItemType == QStyleOptionMenuItem::Separator) {
        drawHorizontalHairline(painter, rect.left() + look.length(10), rect.right() + 1 - look.length(10),
                               rect.center().y(), look.palette.dividerColor);
        return;
    }
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool lit = enabled && option.state & QStyle::State_Selected;
    if (lit)
        drawBox(painter, rect.adjusted(margin, 0, -margin, 0), look.length(5), look.roles.accentFill, {});
    const QColor ink = lit ? look.roles.onAccent : look.ink(enabled);
    const QColor quiet = lit ? look.roles.onAccent : enabled ? look.roles.secondary : look.roles.disabled;
    const int left = rect.left() + margin + look.length(markColumn);
    const int right = rect.right() + 1 - margin - look.length(10);
    const QRect mark(rect.left() + margin + look.length(2), rect.center().y() - look.length(8) + 1, look.length(16),
                     look.length(16));
    if (option.checkType != QStyleOptionMenuItem::NotCheckable && option.checked)
        drawTick(painter, mark, ink);
    else if (!option.icon.isNull())
        option.icon.paint(&painter, mark, Qt::AlignCenter, enabled ? QIcon::Normal : QIcon::Disabled);
    // A pop-up's rows come with the font of the pop-up.
    painter.setFont(option.font);
    painter.setPen(ink);
    painter.drawText(QRect(left, rect.top(), right - left, rect.height()),
                     textFlags(Qt::AlignLeft | Qt::AlignVCenter, option) | Qt::TextDontClip, labelOf(option));
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu) {
        painter.save();
        painter.translate(right - look.length(3), QRectF(rect).center().y());
        painter.rotate(-90);
        drawChevron(painter, {0, 0}, look.length(8), false, quiet);
        painter.restore();
    } else {
        drawLine(painter, QRectF(left, rect.top(), right - left, rect.height()), Qt::AlignRight | Qt::AlignVCenter,
                 shortcutOf(option), option.font, quiet);
    }
}

QSize menuItemSize(const QStyleOptionMenuItem& option, const Look& look)
{
    if (option.menuItemType == QStyleOptionMenuItem::Separator)
        return {look.length(40), look.length(separatorHeight)};
    const QFontMetrics metrics(option.font);
    int width = metrics.size(Qt::TextShowMnemonic | Qt::TextSingleLine, labelOf(option)).width();
    const QString shortcut = shortcutOf(option);
    if (!shortcut.isEmpty() || option.menuItemType == QStyleOptionMenuItem::SubMenu)
        width += look.length(shortcutGap) + metrics.horizontalAdvance(shortcut);
    return {width + look.length(2 * sideMargin + markColumn + 14), look.length(rowHeight)};
}

void drawMenuBarGround(QPainter& painter, const QRect& rect, const Look& look)
{
    painter.fillRect(rect, look.palette.chromeGradient[0]);
    drawHorizontalHairline(painter, rect.left(), rect.right() + 1, rect.bottom(), look.palette.dividerColor);
}

void drawMenuBarItem(QPainter& painter, const QStyleOptionMenuItem& option, const Look& look)
{
    const bool enabled = option.state & QStyle::State_Enabled;
    drawMenuBarGround(painter, option.rect, look);
    if (enabled && option.state & QStyle::State_Selected) {
        const bool open = option.state & QStyle::State_Sunken;
        drawBox(painter, option.rect.adjusted(0, 3, 0, -4), look.length(5),
                open ? look.palette.dividerColor : look.palette.hoverFill, {});
    }
    painter.setFont(look.font(Type::body));
    painter.setPen(look.ink(enabled));
    painter.drawText(option.rect.adjusted(0, 0, 0, -1), textFlags(Qt::AlignCenter, option), option.text);
}

} // namespace velmora::parts
