#include "app/settings/chosen_mark.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"

#include <QPainter>

namespace velmora
{

void drawChosenMark(QPainter& painter, const QRectF& box, const Look& look)
{
    drawBox(painter, box, box.width() / 2, look.roles.accentFill, {});
    drawTick(painter, box, look.roles.onAccent);
}

} // namespace velmora
