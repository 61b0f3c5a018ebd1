#include "editor/app_state.h"

#include "canvas/geometry/overlay_snap.h"
#include "model/project_defaults.h"
#include "platform/ports/font_panel.h"

#include <QPointer>

#include <algorithm>

namespace velmora
{

void AppState::addTextOverlay()
{
    const UndoStep step(*this);
    setEditorMode(EditorMode::background);
    const auto number = static_cast<int>(m_project.textOverlays.size()) + 1;
    const DMGTextOverlay text = DMGProjectDefaults::makeDefaultInstallText(m_project.contentSize(), number);
    change([&](DMGProject& project) { project.textOverlays.push_back(text); });
    selectTextOverlay(text.id);
    markDirty();
}

void AppState::removeTextOverlay(Uuid id)
{
    const UndoStep step(*this);
    change([&](DMGProject& project) {
        std::erase_if(project.textOverlays, [&](const auto& text) { return text.id == id; });
    });
    if (m_selections.text == id)
        setTextSelection({});
    markDirty();
}

void AppState::removeSelectedTextOverlay()
{
    if (m_selections.text)
        removeTextOverlay(*m_selections.text);
}

void AppState::centerTextOverlayOnCanvas(bool horizontal, bool vertical, const Uuid& id)
{
    const Size content = m_project.contentSize();
    editElement<DMGTextOverlay>(id, [&](DMGTextOverlay& text) {
        text.setBounds(OverlaySnap::centeredBounds(text.bounds(), content, horizontal, vertical));
    });
}

void AppState::commitTextOverlayBounds(const Uuid& id, const Rect& bounds)
{
    editElement<DMGTextOverlay>(id, [&](DMGTextOverlay& text) { text.setBounds(bounds); });
}

void AppState::presentFontPanel(const Uuid& id)
{
    const DMGTextOverlay* text = findElement(m_project.textOverlays, id);
    if (!text)
        return;
    constexpr double smallestShown = 8;
    const FontChoice current{text->fontName, std::max(text->fontSize, smallestShown)};
    // The panel outlives a document, and may outlive the editor.
    m_ports.fontPanel.present(current, [self = QPointer<AppState>(this), id,
                                        panelName = current.postScriptName](const FontChoice& choice) mutable {
        const DMGTextOverlay* box = self ? findElement(self->m_project.textOverlays, id) : nullptr;
        if (!box)
            return;
        // Only a name that was picked replaces the stored one, which may be of a font that this machine lacks.
        const bool namePicked = choice.postScriptName != panelName;
        panelName = choice.postScriptName;
        self->setFont(id, namePicked ? choice.postScriptName : box->fontName, choice.pointSize);
    });
}

void AppState::setFont(const Uuid& id, const std::string& name, double size)
{
    const UndoStep step(*this, {"font", id});
    const auto changeBox = [&](const auto& changeFont) {
        change([&](DMGProject& project) {
            if (DMGTextOverlay* box = findElement(project.textOverlays, id))
                changeFont(*box);
        });
    };
    changeBox([&](DMGTextOverlay& box) { box.fontName = name; });
    changeBox([&](DMGTextOverlay& box) { box.fontSize = size; });
    markDirty();
    emit objectChanged();
}

} // namespace velmora
