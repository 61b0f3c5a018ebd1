#pragma once

class QPainter;
class QRectF;

namespace velmora
{

struct Look;

/// The tick on a round accent ground that marks the chosen one of several.
void drawChosenMark(QPainter& painter, const QRectF& box, const Look& look);

} // namespace velmora
