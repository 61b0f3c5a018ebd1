#include "canvas/canvas_warnings.h"

#include "l10n/labels.h"

#include <QHash>

#include <algorithm>

namespace velmora
{
namespace
{

QString pathOf(const DMGItem& item)
{
    return QString::fromStdString(item.isSymlink() ? item.symlinkTarget : item.sourcePath);
}

QString folded(const DMGItem& item)
{
    return QString::fromStdString(item.displayName).normalized(QString::NormalizationForm_D).toCaseFolded();
}

/// The first two items of a name.
struct Namesakes {
    const DMGItem* first = nullptr;
    const DMGItem* second = nullptr;
};

/// The namesakes of the visible items, in their order.
std::vector<Namesakes> namesakes(const DMGProject& project)
{
    QHash<QString, Namesakes> byName;
    std::vector<QString> names;
    for (const DMGItem& item : project.items) {
        if (item.hidden)
            continue;
        names.push_back(folded(item));
        Namesakes& each = byName[names.back()];
        (each.first ? each.second : each.first) = &item;
    }
    std::vector<Namesakes> result;
    for (const QString& name : names)
        result.push_back(byName.value(name));
    return result;
}

} // namespace

std::vector<CanvasWarning> canvasWarnings(const DMGProject& project, ItemIcons& icons)
{
    using Kind = CanvasWarning::Kind;
    std::vector<CanvasWarning> warnings;
    const Size content = project.contentSize();
    const auto names = namesakes(project);
    auto alike = names.begin();
    for (const DMGItem& item : project.items) {
        if (item.hidden)
            continue;
        const QString name = QString::fromStdString(item.displayName);
        if (icons.look(item).missing)
            warnings.push_back(
                {Kind::missingSource, item.id, QString::fromUtf8(Labels::canvasMissingSource).arg(pathOf(item)), {}});
        if (!(item.x >= 0 && item.x <= content.width && item.y >= 0 && item.y <= content.height)) {
            const Point edge{std::clamp(item.x, 0.0, std::max(content.width, 0.0)),
                             std::clamp(item.y, 0.0, std::max(content.height, 0.0))};
            warnings.push_back(
                {Kind::outsideWindow, item.id, QString::fromUtf8(Labels::canvasOutsideWindow).arg(name), edge});
        }
        if (alike->second)
            warnings.push_back(
                {Kind::sameName,
                 item.id,
                 QString::fromUtf8(Labels::canvasSameName).arg(name, pathOf(*alike->first), pathOf(*alike->second)),
                 {}});
        ++alike;
    }
    return warnings;
}

Rect edgeBadge(const CanvasWarning& warning, Size contentSize, double scale)
{
    constexpr double side = warningBadgeSize;
    constexpr double inset = 4;
    const auto inside = [=](double center, double extent) {
        return std::max(inset, std::min(center - side / 2, extent - side - inset));
    };
    return {inside(warning.place.x * scale, contentSize.width * scale),
            inside(warning.place.y * scale, contentSize.height * scale), side, side};
}

} // namespace velmora
