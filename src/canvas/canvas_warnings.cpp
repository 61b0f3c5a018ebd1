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

/// For every name that occurs twice, the first two items of it.
struct Namesakes {
    const DMGItem* first = nullptr;
    const DMGItem* second = nullptr;
};

QHash<QString, Namesakes> namesakes(const DMGProject& project)
{
    QHash<QString, Namesakes> found;
    for (const DMGItem& item : project.items) {
        if (item.hidden)
            continue;
        Namesakes& each = found[folded(item)];
        (each.first ? each.second : each.first) = &item;
    }
    return found;
}

} // namespace

std::vector<CanvasWarning> canvasWarnings(const DMGProject& project, ItemIcons& icons)
{
    using Kind = CanvasWarning::Kind;
    std::vector<CanvasWarning> warnings;
    const Size content = project.contentSize();
    const auto names = namesakes(project);
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
        const Namesakes& alike = *names.constFind(folded(item));
        if (alike.second)
            warnings.push_back(
                {Kind::sameName,
                 item.id,
                 QString::fromUtf8(Labels::canvasSameName).arg(name, pathOf(*alike.first), pathOf(*alike.second)),
                 {}});
    }
    return warnings;
}

Rect edgeBadge(const CanvasWarning& warning, Size contentSize, double scale)
{
    constexpr double side = 16;
    constexpr double inset = 4;
    const auto inside = [=](double center, double extent) {
        return std::max(inset, std::min(center - side / 2, extent - side - inset));
    };
    return {inside(warning.place.x * scale, contentSize.width * scale),
            inside(warning.place.y * scale, contentSize.height * scale), side, side};
}

} // namespace velmora
