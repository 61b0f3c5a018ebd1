#include "editor/app_state.h"

namespace velmora
{

void AppState::selectItem(std::optional<Uuid> id)
{
    endTypingRun();
    setSelection(id);
    if (!id)
        return;
    setOverlaySelection({});
    setTextSelection({});
}

void AppState::selectOverlay(std::optional<Uuid> id)
{
    endTypingRun();
    setOverlaySelection(id);
    if (!id)
        return;
    setSelection({});
    setTextSelection({});
    setEditorMode(EditorMode::background);
    setInspectorTab(InspectorTab::arrange);
}

void AppState::selectTextOverlay(std::optional<Uuid> id)
{
    endTypingRun();
    setTextSelection(id);
    if (!id)
        return;
    setSelection({});
    setOverlaySelection({});
    setEditorMode(EditorMode::background);
    setInspectorTab(InspectorTab::arrange);
}

void AppState::editBackground()
{
    endTypingRun();
    setEditorMode(EditorMode::background);
    setInspectorTab(InspectorTab::layout);
    setSelection({});
}

void AppState::editContents()
{
    endTypingRun();
    setEditorMode(EditorMode::contents);
    setOverlaySelection({});
    setTextSelection({});
}

void AppState::editLicenses()
{
    endTypingRun();
    setEditorMode(EditorMode::licenses);
}

void AppState::presentOverlayPicker()
{
    endTypingRun();
    setEditorMode(EditorMode::background);
    setShowArrowPicker(true);
}

void AppState::removeSelectedOrBackground()
{
    if (m_selections.text)
        removeTextOverlay(*m_selections.text);
    else if (m_selections.overlay)
        removeOverlay(*m_selections.overlay);
    else if (m_selections.item)
        removeSelected();
    else if (hasBackgroundImage())
        clearBackgroundImage();
}

void AppState::nudgeSelection(double dx, double dy)
{
    const auto move = [&](auto& element) {
        element.x += dx;
        element.y += dy;
    };
    // The presses of an arrow key are one run.
    const std::string run = "nudge";
    if (const DMGTextOverlay* text = selectedTextOverlay())
        editElement<DMGTextOverlay>(text->id, move, run);
    else if (const DMGOverlayImage* overlay = selectedOverlay())
        editElement<DMGOverlayImage>(overlay->id, move, run);
    else if (const DMGItem* item = selectedItem())
        editElement<DMGItem>(item->id, move, run);
}

} // namespace velmora
