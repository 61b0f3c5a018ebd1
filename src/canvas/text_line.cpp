#include "canvas/text_line.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QTextLayout>
#include <QTextOption>

#include <map>

namespace velmora
{
namespace
{

// Qt rounds font sizes to whole pixels: text is laid out at this size and the painter scaled.
constexpr int referencePixels = 64;

QFont madeFont(QFont font, QFont::Weight weight)
{
    font.setPixelSize(referencePixels);
    font.setWeight(weight);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return font;
}

/// Fonts are looked up once: a new one of the same description would be looked up again.
QFont interfaceFont(QFont::Weight weight)
{
    static QFont base;
    static std::map<int, QFont> fonts;
    if (fonts.empty() || base != QGuiApplication::font()) {
        fonts.clear();
        base = QGuiApplication::font();
    }
    const auto known = fonts.find(weight);
    return known != fonts.end() ? known->second : fonts.emplace(weight, madeFont(base, weight)).first->second;
}

QTextLine layOut(QTextLayout& layout, double width)
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    if (line.isValid())
        line.setLineWidth(width);
    layout.endLayout();
    return line;
}

QString inOneLine(QString text)
{
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return text;
}

} // namespace

TextLine::TextLine(const QString& text, double pixelSize, QFont::Weight weight)
    : m_layout(std::make_unique<QTextLayout>(inOneLine(text), interfaceFont(weight))),
      m_zoom(pixelSize / referencePixels)
{
    m_layout->setCacheEnabled(true);
    constexpr double unlimited = 1e6;
    const QTextLine line = layOut(*m_layout, unlimited);
    const QFontMetricsF metrics(m_layout->font());
    const double height = (metrics.ascent() + metrics.descent()) * m_zoom;
    m_size = {line.isValid() ? line.naturalTextWidth() * m_zoom : 0, height};
}

TextLine::~TextLine() = default;
TextLine::TextLine(TextLine&&) noexcept = default;
TextLine& TextLine::operator=(TextLine&&) noexcept = default;

void TextLine::draw(QPainter& painter, QPointF topLeft, const QColor& color) const
{
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.translate(topLeft);
    painter.scale(m_zoom, m_zoom);
    painter.setPen(color);
    m_layout->draw(&painter, QPointF(0, 0));
    painter.restore();
}

QString TextLine::elided(const QString& text, double pixelSize, QFont::Weight weight, double width)
{
    const QFontMetricsF metrics(interfaceFont(weight));
    return metrics.elidedText(inOneLine(text), Qt::ElideMiddle, width * referencePixels / pixelSize);
}

qsizetype TextLine::fitting(const QString& text, double pixelSize, QFont::Weight weight, double width)
{
    QTextLayout layout(inOneLine(text), interfaceFont(weight));
    const QTextLine line = layOut(layout, width * referencePixels / pixelSize);
    return line.isValid() ? line.textLength() : 0;
}

} // namespace velmora
