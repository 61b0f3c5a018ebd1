#include "editor/app_state.h"

#include "editor/file_types.h"
#include "l10n/l10n.h"
#include "platform/ports/alerts.h"
#include "render/overlay_images.h"
#include "render/picture.h"

#include <QString>

namespace velmora
{

void AppState::fitWindowToImage()
{
    if (!hasBackgroundImage())
        return;
    const PicturePtr picture = readPicture(QString::fromStdString(m_project.backgroundImagePath));
    if (!picture)
        return;
    const UndoStep step(*this);
    change([&](DMGProject& project) { project.windowWidth = picture->pixels.width(); });
    change([&](DMGProject& project) { project.windowHeight = picture->pixels.height() + DMGProject::titleBarHeight; });
    markDirty();
}

void AppState::pickVolumeIcon()
{
    const auto files = m_ports.panels.open({.types = {FileTypes::pictures()}});
    if (!files.empty())
        edit({}, [&](DMGProject& project) { project.volumeIconPath = files.front().string(); });
}

void AppState::resetToDefaultSettings()
{
    const std::size_t answer =
        m_ports.alerts.show({.title = L10n::t("defaults.confirm_title"),
                             .text = L10n::t("defaults.confirm_message"),
                             .style = AlertStyle::informational,
                             .buttons = {L10n::t("defaults.confirm_action"), L10n::t("defaults.cancel")}});
    if (answer != 0)
        return;
    const UndoStep step(*this);
    for (const DMGOverlayImage& overlay : m_project.overlayImages)
        m_ports.pictures.remove(overlay.sourcePath);
    change([this](DMGProject& project) { project.applyDefaultSettingsPreservingContent(arrowFinder()); });
    setSelection({});
    setOverlaySelection(m_project.overlayImages.empty() ? std::nullopt
                                                        : std::optional(m_project.overlayImages.front().id));
    setEditorMode(EditorMode::contents);
    setInspectorTab(InspectorTab::layout);
    markDirty();
    emit objectChanged();
}

} // namespace velmora
