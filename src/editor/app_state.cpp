#include "editor/app_state.h"

#include "editor/build_session.h"
#include "render/built_in_arrows.h"

#include <utility>

namespace velmora
{

AppState::AppState(EditorPorts ports, QObject* parent)
    : QObject(parent),
      m_ports(std::move(ports)),
      m_recent(m_ports.settings),
      m_project(DMGProject::starter(arrowFinder())),
      m_history(m_project)
{
}

AppState::~AppState() = default;

ArrowFileFinder AppState::arrowFinder() const
{
    return [&arrows = m_ports.arrows](std::string_view id) { return arrows.filePath(id); };
}

const DMGItem* AppState::selectedItem() const
{
    return findElement(m_project.items, m_selections.item);
}

const DMGOverlayImage* AppState::selectedOverlay() const
{
    return findElement(m_project.overlayImages, m_selections.overlay);
}

const DMGTextOverlay* AppState::selectedTextOverlay() const
{
    return findElement(m_project.textOverlays, m_selections.text);
}

bool AppState::hasBackgroundImage() const
{
    return m_project.backgroundKind == BackgroundKind::image && !m_project.backgroundImagePath.empty();
}

bool AppState::canRemoveSelection() const
{
    return m_selections.item || m_selections.overlay || m_selections.text || hasBackgroundImage();
}

std::string AppState::documentName() const
{
    return m_documentURL ? m_documentURL->filename().string() : "Untitled." + std::string(ext);
}

void AppState::setSelection(std::optional<Uuid> id)
{
    set(m_selections.item, id, &AppState::selectionChanged);
}

void AppState::setOverlaySelection(std::optional<Uuid> id)
{
    set(m_selections.overlay, id, &AppState::overlaySelectionChanged);
}

void AppState::setTextSelection(std::optional<Uuid> id)
{
    set(m_selections.text, id, &AppState::textSelectionChanged);
}

void AppState::clearSelections()
{
    setSelection({});
    setOverlaySelection({});
    setTextSelection({});
}

void AppState::setEditorMode(EditorMode mode)
{
    set(m_editorMode, mode, &AppState::editorModeChanged);
}

void AppState::setInspectorTab(int index)
{
    set(m_inspectorTab, index, &AppState::inspectorTabChanged);
}

void AppState::setShowArrowPicker(bool show)
{
    set(m_showArrowPicker, show, &AppState::showArrowPickerChanged);
}

void AppState::setDirty(bool dirty)
{
    set(m_isDirty, dirty, &AppState::isDirtyChanged);
}

void AppState::markDirty()
{
    setDirty(true);
}

void AppState::store(DMGProject project)
{
    m_project = std::move(project);
    emit projectChanged();
}

void AppState::change(const std::function<void(DMGProject&)>& change)
{
    DMGProject project = m_project;
    change(project);
    store(std::move(project));
}

void AppState::edit(const EditKey& key, const std::function<void(DMGProject&)>& change)
{
    const UndoStep step(*this, key);
    this->change(change);
    markDirty();
}

std::optional<ElementBinding<DMGItem>> AppState::binding(const Uuid& id)
{
    if (!findElement(m_project.items, id))
        return std::nullopt;
    return ElementBinding<DMGItem>(*this, id);
}

std::optional<ElementBinding<DMGOverlayImage>> AppState::overlayBinding(const Uuid& id)
{
    if (!findElement(m_project.overlayImages, id))
        return std::nullopt;
    return ElementBinding<DMGOverlayImage>(*this, id);
}

std::optional<ElementBinding<DMGTextOverlay>> AppState::textOverlayBinding(const Uuid& id)
{
    if (!findElement(m_project.textOverlays, id))
        return std::nullopt;
    return ElementBinding<DMGTextOverlay>(*this, id);
}

void AppState::migrateLegacyIconCoordinates()
{
    if (!m_project.iconUsesTopLeftCoords)
        return;
    endGesture();
    DMGProject project = m_project;
    project.migrateLegacyIconCoordinatesIfNeeded();
    m_history.amend(project);
    store(std::move(project));
}

} // namespace velmora
