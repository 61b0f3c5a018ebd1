#include "canvas/hint_capsule.h"

#include "canvas/text_line.h"
#include "l10n/l10n.h"
#include "l10n/labels.h"

#include <QPainterPath>
#include <QPen>

#include <algorithm>

namespace velmora
{
namespace
{

constexpr double emptyFont = 13;
constexpr double emptyHeight = 32;
constexpr double padding = 16;
constexpr double sign = 16;
constexpr double signGap = 10;

QString commandName()
{
    return QString::fromStdString(L10n::t("toolbar.add_files"));
}

/// The sentence before the command's name.
QString lead()
{
    return QString::fromUtf8(Labels::canvasDropHint).section(QStringLiteral("%1"), 0, 0);
}

void drawTray(QPainter& painter, const QRectF& square, const QColor& ink)
{
    painter.save();
    painter.translate(square.topLeft());
    painter.scale(square.width() / 16, square.height() / 16);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(ink, 1.25, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    QPainterPath path;
    path.moveTo(8, 1.5);
    path.lineTo(8, 9.75);
    path.moveTo(4.75, 6.5);
    path.lineTo(8, 9.75);
    path.lineTo(11.25, 6.5);
    path.moveTo(1.75, 10.5);
    path.lineTo(1.75, 12.75);
    path.quadTo(1.75, 14.25, 3.25, 14.25);
    path.lineTo(12.75, 14.25);
    path.quadTo(14.25, 14.25, 14.25, 12.75);
    path.lineTo(14.25, 10.5);
    painter.drawPath(path);
    painter.restore();
}

} // namespace

void drawHintCapsule(QPainter& painter, const QRectF& content, const QString& text, double scale)
{
    constexpr double paddingX = 8;
    constexpr double paddingY = 4;
    constexpr double belowTitleBar = 12;
    const double fontSize = std::max(11 * scale, 9.0);
    const double room = content.width() - 2 * paddingX;
    if (room < 4 * fontSize)
        return;
    const TextLine line(TextLine::elided(text, fontSize, QFont::Normal, room), fontSize, QFont::Normal);
    // A capsule's ends are round: text right at them would touch the curve.
    const double height = line.size().height() + 2 * paddingY;
    const double width = std::min(line.size().width() + 2 * paddingX + height / 3, content.width());
    const QRectF capsule(content.center().x() - width / 2, content.top() + belowTitleBar, width, height);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgbF(0, 0, 0, 0.55F));
    painter.drawRoundedRect(capsule, height / 2, height / 2);
    line.draw(painter, {capsule.center().x() - line.size().width() / 2, capsule.top() + paddingY}, Qt::white);
    painter.restore();
}

EmptyHint::EmptyHint(const QRectF& window, const QSizeF& region)
{
    constexpr double below = 26;
    constexpr double edge = 10;
    const TextLine first(lead(), emptyFont, QFont::Normal);
    const TextLine command(commandName(), emptyFont, QFont::DemiBold);
    const double width = 2 * padding + sign + signGap + first.size().width() + command.size().width();
    const double y = std::min(window.bottom() + below, region.height() - emptyHeight - edge);
    const double center = std::clamp(window.center().x(), 0.0, region.width());
    m_area = QRectF(std::round(center - width / 2), std::round(y), width, emptyHeight);
    m_link = QRectF(m_area.right() - padding - command.size().width(), m_area.top(),
                    command.size().width() + padding / 2, emptyHeight);
}

void EmptyHint::draw(QPainter& painter, const QColor& ground, const ThemeRoles& roles, bool hovered) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(m_area, emptyHeight / 2, emptyHeight / 2);
    drawTray(painter, {m_area.left() + padding, m_area.center().y() - sign / 2, sign, sign}, roles.secondary);
    const TextLine first(lead(), emptyFont, QFont::Normal);
    const TextLine command(commandName(), emptyFont, QFont::DemiBold);
    const double y = m_area.center().y() - first.size().height() / 2;
    first.draw(painter, {m_area.left() + padding + sign + signGap, y}, roles.secondary);
    const QColor ink = hovered ? roles.accentText : roles.primary;
    command.draw(painter, {m_link.left(), y}, ink);
    if (hovered)
        painter.fillRect(QRectF(m_link.left(), y + command.size().height() - 1, command.size().width(), 1), ink);
    painter.restore();
}

} // namespace velmora
