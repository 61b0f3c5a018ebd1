#pragma once

#include "canvas/item_icons.h"

#include <QTimer>

class QWidget;

namespace velmora
{

/// The icons of items for a widget that draws some. Icons that take long to read show up later, by a repaint.
class IconSource
{
public:
    /// Repaints `widget`, which owns this.
    explicit IconSource(QWidget* widget);

    /// To be called at the beginning of each painting.
    void beginDrawing() { m_icons.beginDrawing(); }
    void draw(QPainter& painter, const DMGItem& item, const QRectF& square);
    /// Whether the item is a file that is not there.
    [[nodiscard]] bool isMissing(const DMGItem& item) { return m_icons.look(item).missing; }
    /// To be called at the end of each painting.
    void endDrawing();
    /// From now on files may have changed.
    void expire() { m_pictures.expire(); }

private:
    QWidget* m_widget;
    CanvasPictures m_pictures{};
    ItemIcons m_icons{m_pictures};
    QTimer m_reading{};
};

} // namespace velmora
