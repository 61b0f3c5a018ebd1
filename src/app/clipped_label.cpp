#include "app/clipped_label.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace velmora
{

ClippedLabel::ClippedLabel(Type type, int lines, QPalette::ColorRole role, QWidget* parent)
    : QWidget(parent), m_type(type), m_lines(lines)
{
    setForegroundRole(role);
    setFont(lookOf(this).font(type));
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(lines > 1);
    setSizePolicy(policy);
}

void ClippedLabel::setText(const QString& text)
{
    if (text == m_text)
        return;
    m_text = text;
    setAccessibleName(text);
    updateToolTip();
    updateGeometry();
    update();
}

QStringList ClippedLabel::linesFor(int width) const
{
    const QFontMetrics metrics(font());
    QString flat = m_text;
    if (m_lines == 1)
        return {metrics.elidedText(flat.replace(QLatin1Char('\n'), QLatin1Char(' ')), Qt::ElideMiddle, width)};
    QStringList lines;
    for (const QString& paragraph : m_text.split(QLatin1Char('\n'))) {
        QTextLayout layout(paragraph, font());
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(width);
            const bool last = lines.size() + 1 == m_lines;
            // The rest of everything goes into the last line, which is then shortened.
            const qsizetype length = last ? -1 : line.textLength();
            lines << paragraph.mid(line.textStart(), length).trimmed();
            if (last)
                break;
        }
        layout.endLayout();
        if (lines.size() == m_lines)
            break;
    }
    if (!lines.isEmpty())
        lines.last() = metrics.elidedText(lines.last(), Qt::ElideRight, width);
    return lines;
}

int ClippedLabel::heightForWidth(int width) const
{
    return std::max(1, static_cast<int>(linesFor(width).size())) * lookOf(this).lineHeight(m_type);
}

QSize ClippedLabel::sizeHint() const
{
    return {0, heightForWidth(std::max(width(), 100))};
}

QSize ClippedLabel::minimumSizeHint() const
{
    return {0, lookOf(this).lineHeight(m_type)};
}

void ClippedLabel::updateToolTip()
{
    const QStringList lines = linesFor(width());
    const bool whole = !lines.isEmpty() && lines.join(QString()).size() >= m_text.size() - lines.size() &&
                       !lines.last().endsWith(QChar(u'…'));
    // Tooltips guess whether a text is markup: what cannot begin a tag is none.
    setToolTip(whole ? QString() : QLatin1String("<p style='white-space:pre-wrap'>") + m_text.toHtmlEscaped());
}

void ClippedLabel::resizeEvent(QResizeEvent*)
{
    updateToolTip();
}

void ClippedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.setFont(font());
    const int step = lookOf(this).lineHeight(m_type);
    int y = 0;
    for (const QString& line : linesFor(width())) {
        painter.drawText(QRect(0, y, width(), step), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, line);
        y += step;
    }
}

} // namespace velmora
