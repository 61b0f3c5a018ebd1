#pragma once

#include "app/theme/theme_roles.h"

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QString>

namespace velmora
{

/// The capsule with a hint at the top of the content area. `content` is in the painter's units, points.
void drawHintCapsule(QPainter& painter, const QRectF& content, const QString& text, double scale);

/// The hint of a window without files, below it: a sentence that ends in the command that adds some.
class EmptyHint
{
public:
    /// Lays it out below the window, or at the region's lower edge when there is no room.
    EmptyHint(const QRectF& window, const QSizeF& region);
    [[nodiscard]] QRectF area() const { return m_area; }
    /// What takes a press.
    [[nodiscard]] QRectF link() const { return m_link; }
    void draw(QPainter& painter, const QColor& ground, const ThemeRoles& roles, bool hovered) const;

private:
    QRectF m_area{};
    QRectF m_link{};
};

} // namespace velmora
