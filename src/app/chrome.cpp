#include "app/chrome.h"

#include "app/kit/look.h"

#include <QLinearGradient>
#include <QPainter>

namespace velmora
{

void paintChrome(QPainter& painter, const QRect& area, const Look& look)
{
    QLinearGradient ground(area.topLeft(), area.bottomLeft());
    ground.setColorAt(0, look.palette.chromeGradient[0]);
    ground.setColorAt(1, look.palette.chromeGradient[1]);
    painter.fillRect(area, ground);
}

} // namespace velmora
