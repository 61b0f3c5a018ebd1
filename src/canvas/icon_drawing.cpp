#include "canvas/icon_drawing.h"

#include "canvas/qt_rect.h"

#include <QPen>

#include <algorithm>
#include <utility>

namespace velmora
{
namespace
{

constexpr double labelPadding = 3;
constexpr qsizetype mostLabels = 5000;

QFont::Weight weightOf(bool selected)
{
    // White on the accent is weak in some themes.
    return selected ? QFont::DemiBold : QFont::Normal;
}

double columnOf(const DMGProject& project, double scale)
{
    return project.labelOnBottom ? iconLabelColumn(project.iconSize, scale)
                                 : iconLabelColumnBeside(project.iconSize, project.textSize, scale);
}

IconLabel shaped(const QString& name, double fontSize, double width, QFont::Weight weight)
{
    IconLabel label;
    const auto add = [&](TextLine line) {
        label.lines.push_back(std::move(line));
        const QSizeF size = label.lines.back().size();
        label.firstLine = {std::max(label.firstLine.width, size.width()), size.height()};
        label.height += size.height();
    };
    TextLine whole(name, fontSize, weight);
    if (whole.size().width() <= width) {
        add(std::move(whole));
        return label;
    }
    const qsizetype first = TextLine::fitting(name, fontSize, weight, width);
    add(TextLine(name.left(first).trimmed(), fontSize, weight));
    if (first < name.size())
        add(TextLine(TextLine::elided(name.mid(first).trimmed(), fontSize, weight, width), fontSize, weight));
    return label;
}

} // namespace

const IconLabel& IconLabels::label(const std::string& name, double fontSize, double column, bool selected)
{
    if (fontSize != m_fontSize || column != m_column || m_labels.size() > mostLabels) {
        m_labels.clear();
        m_fontSize = fontSize;
        m_column = column;
    }
    const QString text = QString::fromStdString(name);
    std::shared_ptr<IconLabel>& known = m_labels[(selected ? u'+' : u'-') + text];
    if (!known)
        known = std::make_shared<IconLabel>(shaped(text, fontSize, column - 2 * labelPadding, weightOf(selected)));
    return *known;
}

IconAreas IconDrawing::areas(const DMGItem& item, const DMGProject& project, double scale, bool selected)
{
    const IconLabel& label = m_labels.label(item.displayName, iconLabelFontSize(project.textSize, scale),
                                            columnOf(project, scale), selected);
    if (!project.labelOnBottom)
        return drawnIconAreasWithLabelBeside(item.position(), project.iconSize, columnOf(project, scale),
                                             {label.firstLine.width, label.height}, scale);
    IconAreas areas = drawnIconAreas(item.position(), project.iconSize, label.firstLine, scale);
    const double more = label.height - label.firstLine.height;
    areas.label.height += more;
    areas.block.height += more;
    areas.outline.height += more;
    return areas;
}

Rect IconDrawing::inkArea(const DMGItem& item, const DMGProject& project, double scale)
{
    // Whether or not it is selected: bold letters are wider and may need a second line.
    constexpr double margin = 6;
    const IconAreas areas = this->areas(item, project, scale, false);
    const double left = std::min(areas.outline.x, areas.picture.x) - margin;
    const double right = std::max(areas.outline.x + areas.outline.width, areas.picture.x + areas.picture.width) +
                         areas.label.width / 4 + margin;
    return {left, areas.outline.y - areas.label.height - margin, right - left,
            areas.outline.height + 2 * (areas.label.height + margin) + warningBadgeSize / 2};
}

Rect IconDrawing::badge(const IconAreas& areas)
{
    const Rect& picture = areas.picture;
    return {picture.x + picture.width - warningBadgeSize, picture.y + picture.height - warningBadgeSize,
            warningBadgeSize, warningBadgeSize};
}

void IconDrawing::drawBadge(QPainter& painter, const Rect& square, double ratio)
{
    if (m_badge.devicePixelRatio() != ratio || m_badge.isNull())
        m_badge = warningBadge(ratio);
    painter.drawImage(toQRectF(square).topLeft(), m_badge);
}

void IconDrawing::draw(QPainter& painter, const DMGItem& item, const DMGProject& project, double scale, double ratio,
                       const IconState& state)
{
    const IconAreas areas = this->areas(item, project, scale, state.selected);
    const ItemLook look = m_icons.look(item);
    const double opacity = state.faded ? 0.3 : 1;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(look.missing ? opacity * 0.5 : opacity);
    m_icons.draw(painter, look, toQRectF(areas.picture), ratio);
    painter.setOpacity(opacity);
    if (state.warning)
        drawBadge(painter, badge(areas), ratio);

    const QRectF ground = toQRectF(areas.label);
    if (state.selected) {
        constexpr double radius = 3;
        painter.setPen(Qt::NoPen);
        painter.setBrush(state.accent);
        painter.drawRoundedRect(ground, radius, radius);
    }
    const QColor ink = state.selected ? QColor(Qt::white) : QColor::fromRgbF(0, 0, 0, 0.9F);
    const IconLabel& label = m_labels.label(item.displayName, iconLabelFontSize(project.textSize, scale),
                                            columnOf(project, scale), state.selected);
    double y = ground.center().y() - label.height / 2;
    for (const TextLine& line : label.lines) {
        const double x =
            project.labelOnBottom ? ground.center().x() - line.size().width() / 2 : ground.left() + labelPadding;
        line.draw(painter, QPointF(x, y), ink);
        y += line.size().height();
    }
    if (state.selected) {
        constexpr double radius = 5;
        constexpr double width = 1.5;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(state.accent, width));
        painter.drawRoundedRect(toQRectF(areas.outline), radius, radius);
    }
    painter.restore();
}

} // namespace velmora
