#include "app/kit/paint.h"
#include "app/kit/style_parts.h"

#include <QDateTime>
#include <QPainter>
#include <QStyleOption>
#include <QTimer>
#include <QWidget>

namespace velmora::parts
{
namespace
{

constexpr int shownAfterScrolling = 900; ///< milliseconds
constexpr const char* positionKey = "velmora.shownPosition";
constexpr const char* untilKey = "velmora.shownUntil";

/// Whether an overlay bar is to be seen: for a while after its position changed. It notices that by itself, because
/// only the repaint tells it.
bool movedLately(const QStyleOptionSlider& option)
{
    auto* bar = qobject_cast<QWidget*>(option.styleObject);
    if (!bar)
        return true;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const QVariant before = bar->property(positionKey);
    if (!before.isValid() || before.toInt() != option.sliderPosition) {
        bar->setProperty(positionKey, option.sliderPosition);
        if (!before.isValid())
            return false;
        bar->setProperty(untilKey, now + shownAfterScrolling);
        QTimer::singleShot(shownAfterScrolling + 30, bar, [bar] { bar->update(); });
    }
    return now < bar->property(untilKey).toLongLong();
}

} // namespace

void drawScrollBar(QPainter& painter, const QStyleOptionSlider& option, const QRect& handle, const Look& look)
{
    if (option.maximum <= option.minimum)
        return;
    const bool near = option.state & QStyle::State_MouseOver || option.activeSubControls & QStyle::SC_ScrollBarSlider;
    const bool held = option.state & QStyle::State_Sunken;
    const bool lately = movedLately(option);
    if (!near && !held && !lately)
        return;
    const double width = look.length(near || held ? 8 : 6);
    const int margin = look.length(near || held ? 2 : 3);
    QRectF box = handle;
    if (option.orientation == Qt::Vertical)
        box = QRectF(option.rect.right() + 1 - width - margin, handle.top() + 2, width, handle.height() - 4);
    else
        box = QRectF(handle.left() + 2, option.rect.bottom() + 1 - width - margin, handle.width() - 4, width);
    drawBox(painter, box, width / 2, faded(look.roles.primary, held ? 0.55 : near ? 0.45 : 0.32), {});
}

void drawItemGround(QPainter& painter, const QStyleOptionViewItem& option, const Look& look)
{
    if (option.state & QStyle::State_Selected)
        painter.fillRect(option.rect, faded(look.roles.selection, option.state & QStyle::State_Active ? 1 : 0.6));
    else if (option.state & QStyle::State_MouseOver && option.state & QStyle::State_Enabled)
        painter.fillRect(option.rect, look.palette.hoverFill);
    else if (option.backgroundBrush.style() != Qt::NoBrush)
        painter.fillRect(option.rect, option.backgroundBrush);
}

} // namespace velmora::parts
