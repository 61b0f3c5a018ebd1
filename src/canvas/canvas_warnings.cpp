#include "canvas/canvas_warnings.h"

#include "diskimage/base/error.h"
#include "l10n/labels.h"
#include "pipeline/volume_order.h"

#include <algorithm>
#include <map>
#include <utility>

namespace velmora
{
namespace
{

QString pathOf(const DMGItem& item)
{
    return QString::fromStdString(item.isSymlink() ? item.symlinkTarget : item.sourcePath);
}

/// The first two items of a name.
struct Namesakes {
    const DMGItem* first = nullptr;
    const DMGItem* second = nullptr;
};

/// The visible items by what the volume takes for one name.
class ItemNames
{
public:
    explicit ItemNames(const DMGProject& project)
    {
        m_ofItems.reserve(project.items.size());
        for (const DMGItem& item : project.items)
            m_ofItems.push_back(item.hidden ? nullptr : add(item));
    }
    /// Null for an item that is left out, or whose name no volume holds, which is another check's business.
    [[nodiscard]] const Namesakes* of(std::size_t item) const { return m_ofItems[item]; }

private:
    const Namesakes* add(const DMGItem& item)
    {
        try {
            Namesakes& each = m_byName[diskimage::hfs::storedName(item.displayName)];
            if (!each.first)
                each.first = &item;
            else if (!each.second)
                each.second = &item;
            return &each;
        } catch (const diskimage::DiskImageError&) {
            return nullptr;
        }
    }

    std::map<std::u16string, Namesakes, VolumeOrder> m_byName{};
    std::vector<const Namesakes*> m_ofItems{};
};

} // namespace

std::vector<CanvasWarning> canvasWarnings(const DMGProject& project, ItemIcons& icons)
{
    using Kind = CanvasWarning::Kind;
    std::vector<CanvasWarning> warnings;
    const Size content = project.contentSize();
    const ItemNames names(project);
    for (std::size_t i = 0; i < project.items.size(); ++i) {
        const DMGItem& item = project.items[i];
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
        if (const Namesakes* alike = names.of(i); alike && alike->second)
            warnings.push_back(
                {Kind::sameName,
                 item.id,
                 QString::fromUtf8(Labels::canvasSameName).arg(name, pathOf(*alike->first), pathOf(*alike->second)),
                 {}});
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
