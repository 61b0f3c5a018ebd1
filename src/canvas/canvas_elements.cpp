#include "canvas/canvas_elements.h"

#include "render/built_in_arrows.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace velmora
{
namespace
{

using Kind = CanvasElement::Kind;

QString number(double value)
{
    return QString::number(std::round(value), 'f', 0);
}

QString place(double x, double y)
{
    return QStringLiteral("at %1, %2").arg(number(x), number(y));
}

QString placeAndSize(const Rect& box)
{
    return place(box.x, box.y) + QStringLiteral(", %1 by %2").arg(number(box.width), number(box.height));
}

QString kindOf(const DMGItem& item)
{
    if (item.isSymlink())
        return QStringLiteral("link to ") + QString::fromStdString(item.symlinkTarget);
    const QString path = QString::fromStdString(item.sourcePath);
    if (path.endsWith(u".app", Qt::CaseInsensitive))
        return QStringLiteral("application");
    return QFileInfo(path).isDir() ? QStringLiteral("folder") : QStringLiteral("file");
}

const Arrow* arrowOf(const DMGOverlayImage& overlay)
{
    return BuiltInArrowLibrary::find(overlay.builtInArrowID.value_or(""));
}

QString nameOf(const DMGOverlayImage& overlay)
{
    if (const Arrow* arrow = arrowOf(overlay))
        return QString::fromStdString(arrow->displayName());
    return QString::fromStdString(std::filesystem::path(overlay.sourcePath).filename().string());
}

QString nameOf(const DMGTextOverlay& text)
{
    return QString::fromStdString(text.text).simplified();
}

} // namespace

std::vector<CanvasElement> canvasElements(const DMGProject& project, EditorMode mode)
{
    std::vector<CanvasElement> elements;
    if (mode == EditorMode::background) {
        for (const DMGOverlayImage& overlay : project.overlayImages)
            elements.push_back({Kind::overlay, overlay.id});
        for (const DMGTextOverlay& text : project.textOverlays)
            elements.push_back({Kind::text, text.id});
        return elements;
    }
    for (const DMGItem& item : project.items) {
        if (!item.hidden)
            elements.push_back({Kind::item, item.id});
    }
    return elements;
}

std::optional<CanvasElement> selectedElement(const AppState& state)
{
    if (state.editorMode() == EditorMode::background) {
        if (const DMGTextOverlay* text = state.selectedTextOverlay())
            return CanvasElement{Kind::text, text->id};
        if (const DMGOverlayImage* overlay = state.selectedOverlay())
            return CanvasElement{Kind::overlay, overlay->id};
    }
    const DMGItem* item = state.selectedItem();
    return item && !item->hidden ? std::optional(CanvasElement{Kind::item, item->id}) : std::nullopt;
}

std::optional<CanvasElement> neighbour(const AppState& state, bool forward)
{
    const auto elements = canvasElements(state.project(), state.editorMode());
    if (elements.empty())
        return std::nullopt;
    const auto selected = selectedElement(state);
    const auto at = selected ? std::find(elements.begin(), elements.end(), *selected) : elements.end();
    if (at == elements.end())
        return forward ? elements.front() : elements.back();
    if (forward ? at + 1 == elements.end() : at == elements.begin())
        return std::nullopt;
    return forward ? *(at + 1) : *(at - 1);
}

void select(AppState& state, const CanvasElement& element)
{
    switch (element.kind) {
    case Kind::item:
        state.selectItem(element.id);
        break;
    case Kind::overlay:
        state.selectOverlay(element.id);
        break;
    case Kind::text:
        state.selectTextOverlay(element.id);
        break;
    }
}

void selectNothing(AppState& state)
{
    state.selectItem({});
    state.selectOverlay({});
    state.selectTextOverlay({});
}

QString nameOf(const CanvasElement& element, const DMGProject& project)
{
    if (element.kind == Kind::item) {
        const DMGItem* item = findElement(project.items, element.id);
        return item ? QString::fromStdString(item->displayName) : QString();
    }
    if (element.kind == Kind::overlay) {
        const DMGOverlayImage* overlay = findElement(project.overlayImages, element.id);
        return overlay ? nameOf(*overlay) : QString();
    }
    const DMGTextOverlay* text = findElement(project.textOverlays, element.id);
    return text ? nameOf(*text) : QString();
}

QString describe(const CanvasElement& element, const DMGProject& project)
{
    const auto joined = [](const QString& name, const QString& kind, const QString& where) {
        return QStringList{name, kind, where}.join(QStringLiteral(", "));
    };
    if (element.kind == Kind::item) {
        const DMGItem* item = findElement(project.items, element.id);
        return item ? joined(QString::fromStdString(item->displayName), kindOf(*item), place(item->x, item->y))
                    : QString();
    }
    if (element.kind == Kind::overlay) {
        const DMGOverlayImage* overlay = findElement(project.overlayImages, element.id);
        if (!overlay)
            return {};
        const QString kind = arrowOf(*overlay) ? QStringLiteral("arrow") : QStringLiteral("picture");
        return joined(nameOf(*overlay), kind, placeAndSize(overlay->bounds()));
    }
    const DMGTextOverlay* text = findElement(project.textOverlays, element.id);
    return text ? joined(nameOf(*text), QStringLiteral("caption"), placeAndSize(text->bounds())) : QString();
}

} // namespace velmora
