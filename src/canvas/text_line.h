#pragma once

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QPointF>
#include <QSizeF>
#include <QString>

#include <memory>

class QTextLayout;

namespace velmora
{

/// One line of the interface's font at any size, fractions included, alike at every resolution. Shaped once.
class TextLine
{
public:
    TextLine(const QString& text, double pixelSize, QFont::Weight weight);
    ~TextLine();
    TextLine(TextLine&&) noexcept;
    TextLine& operator=(TextLine&&) noexcept;

    /// The width of the text and the height of a line.
    [[nodiscard]] QSizeF size() const { return m_size; }
    void draw(QPainter& painter, QPointF topLeft, const QColor& color) const;

    /// The text, its middle left out where it is wider than `width`.
    static QString elided(const QString& text, double pixelSize, QFont::Weight weight, double width);
    /// How many of the text's characters fit into `width` when the line is broken after them.
    static qsizetype fitting(const QString& text, double pixelSize, QFont::Weight weight, double width);

private:
    std::unique_ptr<QTextLayout> m_layout;
    double m_zoom = 1;
    QSizeF m_size{};
};

} // namespace velmora
