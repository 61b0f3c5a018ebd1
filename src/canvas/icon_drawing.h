#pragma once

#include "canvas/geometry/icon_areas.h"
#include "canvas/item_icons.h"
#include "canvas/text_line.h"
#include "model/project.h"

#include <QColor>
#include <QHash>
#include <QPainter>

#include <memory>
#include <string>
#include <vector>

namespace velmora
{

/// A name below its icon: up to two lines, the rest elided in the middle.
struct IconLabel {
    std::vector<TextLine> lines{};
    Size firstLine{}; ///< widest line and one line's height, view points
    double height = 0;
};

/// The labels of one scale, shaped once.
class IconLabels
{
public:
    /// Sizes in view points.
    const IconLabel& label(const std::string& name, double fontSize, double column, bool selected);

private:
    QHash<QString, std::shared_ptr<IconLabel>> m_labels{};
    double m_fontSize = 0;
    double m_column = 0;
};

/// How an icon is shown.
struct IconState {
    bool selected = false;
    bool faded = false; ///< background mode
    bool warning = false;
    QColor accent{};
};

/// Draws the items' icons and knows where they lie.
class IconDrawing
{
public:
    explicit IconDrawing(CanvasPictures& pictures) : m_icons(pictures) {}

    /// Where the item is drawn and hit, view points. A second line of the label hangs below and moves nothing.
    IconAreas areas(const DMGItem& item, const DMGProject& project, double scale, bool selected);
    /// Everything that drawing the item may touch, view points.
    Rect inkArea(const DMGItem& item, const DMGProject& project, double scale);
    /// The warning badge's square, view points.
    static Rect badge(const IconAreas& areas);
    /// Draws the item; the painter's origin is the corner of the content area, its unit a view point.
    void draw(QPainter& painter, const DMGItem& item, const DMGProject& project, double scale, double ratio,
              const IconState& state);

    /// Draws the sign of a warning, painter's units being points.
    void drawBadge(QPainter& painter, const Rect& square, double ratio);

    ItemIcons& icons() { return m_icons; }

private:
    ItemIcons m_icons;
    IconLabels m_labels{};
    QImage m_badge{};
};

} // namespace velmora
