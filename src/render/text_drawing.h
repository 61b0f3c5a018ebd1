#pragma once

#include "model/enums.h"
#include "render/fonts.h"

#include <QColor>
#include <QPainter>
#include <QPointF>
#include <QTextLayout>

#include <memory>
#include <string>

namespace velmora
{

/// A shadow below text.
struct TextShadow {
    QColor color{};   ///< its alpha is the shadow's opacity
    QPointF offset{}; ///< points, y down
    double blur = 0;  ///< radius in points
};

/// Text wrapped into a column of a given width, with lines at their exact heights: the same breaks and places at every
/// resolution. Lengths are points; a text has no width of its own, it fills its column.
class TextBlock
{
public:
    /// Size and width are brought into `smallestSize`…`largestSize` and 0…`largestWidth`. Lines end at line breaks of
    /// any kind and at word boundaries, inside a word only where it is wider than the column.
    TextBlock(const std::string& text, const Fonts::Resolved& font, double fontSize, double columnWidth,
              TextHorizontalAlignment alignment);

    static constexpr double smallestSize = 6;
    static constexpr double largestSize = 4096;
    static constexpr double largestWidth = 100000;
    /// What comes after so many UTF-16 units is left out.
    static constexpr qsizetype longestText = 20000;

    /// Height of all lines with their leading; 0 for empty text.
    [[nodiscard]] double height() const { return m_height; }
    [[nodiscard]] int lineCount() const;
    /// Whether the text was too long and its end was left out.
    [[nodiscard]] bool isCut() const { return m_cut; }
    /// Draws with the column's top-left corner at `topLeft`, in a painter whose unit is a point and whose y axis points
    /// down; the painter is neither rotated nor mirrored.
    void draw(QPainter& painter, QPointF topLeft, const QColor& color) const;
    /// Draws what falls into `visible` (painter's points) of the shadow of the same text, without the text itself.
    void drawShadow(QPainter& painter, QPointF topLeft, const TextShadow& shadow, const QRectF& visible) const;

private:
    std::unique_ptr<QTextLayout> m_layout{}; ///< null for empty text
    double m_zoom = 1;                       ///< points a layout unit
    double m_height = 0;
    bool m_cut = false;
};

} // namespace velmora
