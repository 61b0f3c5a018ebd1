#include "render/text_drawing.h"

#include "render/blur.h"
#include "render/conversions.h"

#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace velmora
{
namespace
{

// A shadow softer than this is a haze without a shape; the limit bounds the margin around its mask.
constexpr double largestBlur = 500;
// The platform's standard tab stops.
constexpr double tabDistance = 28;
// Masks beyond these come from nonsensical projects only.
constexpr qint64 largestMaskPixels = 400'000'000;
constexpr double largestSigma = 20'000; // device pixels

/// The text engine breaks at U+2028 alone.
QString withLineSeparators(const std::string& utf8)
{
    QString text = QString::fromStdString(utf8);
    text.replace(QStringLiteral("\r\n"), QString(QChar::LineSeparator));
    for (QChar& c : text) {
        if (c == u'\n' || c == u'\r' || c == u'\v' || c == u'\f' || c == u'\u0085' || c == QChar::ParagraphSeparator)
            c = QChar::LineSeparator;
    }
    return text;
}

Fonts::LineMetrics metricsOf(const QTextLine& line)
{
    return {line.ascent(), line.descent(), std::max(0.0, line.leading())};
}

/// The metrics of a line that holds nothing but the font's own glyphs.
Fonts::LineMetrics ownMetrics(const QFont& font)
{
    QTextLayout layout(QStringLiteral("x"), font);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    return metricsOf(line);
}

/// A line's metrics; where only the font itself is on the line, those that it is to appear with.
Fonts::LineMetrics adjusted(const Fonts::LineMetrics& line, const Fonts::LineMetrics& own,
                            const std::optional<Fonts::LineMetrics>& wanted)
{
    constexpr double same = 0.05;
    const auto pick = [](double has, double natural, double instead) {
        return std::abs(has - natural) < same ? instead * Fonts::referencePixels : has;
    };
    if (!wanted)
        return line;
    return {pick(line.ascent, own.ascent, wanted->ascent), pick(line.descent, own.descent, wanted->descent),
            pick(line.leading, own.leading, wanted->leading)};
}

QImage tinted(const QImage& mask, const QColor& color)
{
    QImage image(mask.size(), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    image.fill(color);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(QPoint(0, 0), mask);
    return image;
}

} // namespace

TextBlock::TextBlock(const std::string& text, const Fonts::Resolved& font, double fontSize, double columnWidth,
                     TextHorizontalAlignment alignment)
    : m_zoom(std::min(largestSize, std::max(smallestSize, fontSize)) / Fonts::referencePixels)
{
    QString lines = withLineSeparators(text);
    m_cut = lines.size() > longestText;
    if (m_cut)
        lines.truncate(lines[longestText - 1].isHighSurrogate() ? longestText - 1 : longestText);
    if (lines.isEmpty())
        return;
    m_layout = std::make_unique<QTextLayout>(lines, font.font);
    m_layout->setCacheEnabled(true);
    QTextOption option(toQtAlignment(alignment));
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTabStopDistance(tabDistance / m_zoom);
    m_layout->setTextOption(option);

    const Fonts::LineMetrics own = ownMetrics(font.font);
    const double width = std::min(largestWidth, std::max(0.0, columnWidth)) / m_zoom;
    double y = 0;
    m_layout->beginLayout();
    for (QTextLine line = m_layout->createLine(); line.isValid(); line = m_layout->createLine()) {
        line.setLineWidth(width);
        const Fonts::LineMetrics metrics = adjusted(metricsOf(line), own, font.lines);
        // The engine's own line heights are rounded up to whole units, hence the sum.
        line.setPosition({0, y + metrics.ascent - line.ascent()});
        y += metrics.ascent + metrics.descent + metrics.leading;
    }
    m_layout->endLayout();
    m_height = y * m_zoom;
}

int TextBlock::lineCount() const
{
    return m_layout ? m_layout->lineCount() : 0;
}

void TextBlock::draw(QPainter& painter, QPointF topLeft, const QColor& color) const
{
    if (!m_layout)
        return;
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.translate(topLeft);
    painter.scale(m_zoom, m_zoom);
    painter.setPen(color);
    m_layout->draw(&painter, QPointF(0, 0));
    painter.restore();
}

void TextBlock::drawShadow(QPainter& painter, QPointF topLeft, const TextShadow& shadow, const QRectF& visible) const
{
    if (!m_layout || shadow.color.alpha() == 0)
        return;
    // The mask lies on the device's own pixels, so that nothing is resampled and 1x and 2x show the same softness.
    const QTransform toDevice = painter.deviceTransform();
    const double scale = std::sqrt(std::abs(toDevice.determinant()));
    const double blur = std::min(largestBlur, std::max(0.0, shadow.blur));
    // A blur radius covers two standard deviations.
    const double sigma = blur / 2 * scale;
    if (!(sigma <= largestSigma))
        return;
    const double reach = blurReach(sigma) + 1;

    // Slanted and swashed glyphs stand out of their column.
    const double overhang = m_zoom * Fonts::referencePixels;
    const QRectF ink = QRectF(topLeft + shadow.offset, QSizeF(m_layout->boundingRect().right() * m_zoom, m_height))
                           .adjusted(-overhang, -overhang, overhang, overhang);
    const QRectF area = toDevice.mapRect(ink).adjusted(-reach, -reach, reach, reach) &
                        toDevice.mapRect(visible).adjusted(-reach, -reach, reach, reach);
    const QRect pixels = area.toAlignedRect();
    if (pixels.isEmpty() || qint64{pixels.width()} * pixels.height() > largestMaskPixels)
        return;

    QImage mask(pixels.size(), QImage::Format_Alpha8);
    if (mask.isNull())
        return;
    mask.fill(0);
    QPainter maskPainter(&mask);
    maskPainter.setTransform(toDevice * QTransform::fromTranslate(-pixels.x(), -pixels.y()));
    draw(maskPainter, topLeft + shadow.offset, Qt::black);
    maskPainter.end();
    blurMask(mask, sigma);

    painter.drawImage(toDevice.inverted().mapRect(QRectF(pixels)), tinted(mask, shadow.color));
}

} // namespace velmora
