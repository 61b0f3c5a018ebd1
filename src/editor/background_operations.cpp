#include "editor/app_state.h"

#include "editor/file_types.h"

namespace velmora
{

void AppState::pickBackgroundImage()
{
    const auto files = m_ports.panels.open(
        {.message = "Choose a background image for the DMG window", .types = {FileTypes::pictures()}});
    if (files.empty())
        return;
    const UndoStep step(*this);
    change([&](DMGProject& project) { project.backgroundImagePath = files.front().string(); });
    change([](DMGProject& project) { project.backgroundKind = BackgroundKind::image; });
    resetBackgroundImageAdjustments();
    setEditorMode(EditorMode::background);
    setInspectorTab(InspectorTab::layout);
    markDirty();
    emit objectChanged();
}

void AppState::clearBackgroundImage()
{
    const UndoStep step(*this);
    change([](DMGProject& project) { project.backgroundImagePath.clear(); });
    resetBackgroundImageAdjustments();
    change([](DMGProject& project) { project.backgroundKind = BackgroundKind::image; });
    setEditorMode(EditorMode::background);
    setInspectorTab(InspectorTab::layout);
    markDirty();
    emit objectChanged();
}

void AppState::resetBackgroundImageAdjustments()
{
    const UndoStep step(*this);
    change([](DMGProject& project) { project.backgroundImageFit = BackgroundImageFit::fill; });
    change([](DMGProject& project) { project.backgroundImageScale = 1; });
    change([](DMGProject& project) { project.backgroundImageOffsetX = 0; });
    change([](DMGProject& project) { project.backgroundImageOffsetY = 0; });
    markDirty();
}

void AppState::nudgeBackgroundImage(double dx, double dy)
{
    if (!hasBackgroundImage())
        return;
    const UndoStep step(*this, {"nudgeBackground", {}});
    change([&](DMGProject& project) { project.backgroundImageOffsetX += dx; });
    change([&](DMGProject& project) { project.backgroundImageOffsetY += dy; });
    markDirty();
}

} // namespace velmora
