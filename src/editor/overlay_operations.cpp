#include "editor/app_state.h"

#include "editor/file_types.h"
#include "l10n/l10n.h"
#include "render/built_in_arrows.h"
#include "render/overlay_images.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace velmora
{
namespace
{

/// Larger pictures come into the window at this length of their longer side.
constexpr double largestNewSide = 220;

Rect boxOfNewOverlay(Size picture, std::optional<Point> center, Size content)
{
    const double scale = std::min(largestNewSide / std::max(picture.width, picture.height), 1.0);
    const double width = picture.width * scale;
    const double height = picture.height * scale;
    const Point middle = center.value_or(Point{content.width * 0.5, content.height * 0.5});
    // A box larger than the window keeps its right and bottom edges inside.
    return {std::min(content.width - width, std::max(middle.x - width * 0.5, 0.0)),
            std::min(content.height - height, std::max(middle.y - height * 0.5, 0.0)), width, height};
}

/// The largest box of the picture's shape in `box`, about the same centre.
Rect fittedInto(const Rect& box, Size picture)
{
    const double scale = std::min(box.width / picture.width, box.height / picture.height);
    const Size size{picture.width * scale, picture.height * scale};
    return {box.x + (box.width - size.width) * 0.5, box.y + (box.height - size.height) * 0.5, size.width, size.height};
}

/// The first element's place in a list, counted from 0; nothing when there is none.
std::optional<std::size_t> placeOf(const std::vector<DMGOverlayImage>& overlays, const Uuid& id)
{
    const DMGOverlayImage* overlay = findElement(overlays, id);
    return overlay ? std::optional(static_cast<std::size_t>(overlay - overlays.data())) : std::nullopt;
}

} // namespace

bool AppState::isImageURL(const std::filesystem::path& file)
{
    constexpr std::array<std::string_view, 8> extensions{".png",  ".jpg", ".jpeg", ".tif",
                                                         ".tiff", ".gif", ".webp", ".heic"};
    std::string extension = file.extension().string();
    for (char& c : extension)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

std::optional<std::filesystem::path> AppState::pickOverlayPicture()
{
    const auto files =
        m_ports.panels.open({.message = L10n::t("overlay_picker_message"), .types = {FileTypes::pictures()}});
    return files.empty() ? std::nullopt : std::optional(files.front());
}

std::optional<Size> AppState::overlayPictureSize(const std::filesystem::path& file)
{
    m_ports.pictures.forgetChanged();
    const PicturePtr picture = loadImageWithAlpha(file.string(), m_ports.pictures);
    if (picture && !picture->pointSize.isEmpty())
        return Size{picture->pointSize.width(), picture->pointSize.height()};
    presentError("Could not open image:\n" + file.string());
    return std::nullopt;
}

void AppState::addOverlayImage(std::optional<Point> point)
{
    if (const auto file = pickOverlayPicture())
        addOverlayImage(*file, point);
}

void AppState::addOverlayImage(const std::filesystem::path& file, std::optional<Point> point,
                               std::optional<std::string> builtInArrowID)
{
    const auto size = overlayPictureSize(file);
    if (!size)
        return;
    const Rect box = boxOfNewOverlay(*size, point, m_project.contentSize());
    const DMGOverlayImage overlay{.sourcePath = file.string(),
                                  .builtInArrowID = std::move(builtInArrowID),
                                  .x = box.x,
                                  .y = box.y,
                                  .width = box.width,
                                  .height = box.height,
                                  .originalWidth = box.width,
                                  .originalHeight = box.height};
    const UndoStep step(*this);
    change([&](DMGProject& project) { project.overlayImages.push_back(overlay); });
    setEditorMode(EditorMode::background);
    setOverlaySelection(overlay.id);
    setSelection({});
    setInspectorTab(InspectorTab::arrange);
    markDirty();
}

void AppState::addBuiltInArrow(const std::string& id, std::optional<Point> point)
{
    if (const auto file = m_ports.arrows.filePath(id))
        addOverlayImage(*file, point, id);
    else
        presentError("Could not load built-in arrow.");
}

void AppState::removeOverlay(Uuid id)
{
    const UndoStep step(*this);
    if (const DMGOverlayImage* overlay = findElement(m_project.overlayImages, id))
        m_ports.pictures.remove(overlay->sourcePath);
    change([&](DMGProject& project) {
        std::erase_if(project.overlayImages, [&](const auto& overlay) { return overlay.id == id; });
    });
    if (m_selections.overlay == id)
        setOverlaySelection({});
    markDirty();
}

void AppState::removeSelectedOverlay()
{
    if (m_selections.overlay)
        removeOverlay(*m_selections.overlay);
}

void AppState::commitOverlayBounds(const Uuid& id, const Rect& bounds)
{
    editElement<DMGOverlayImage>(id, [&](DMGOverlayImage& overlay) { overlay.setBounds(bounds); });
}

void AppState::resetOverlayToOriginalSize(const Uuid& id)
{
    editElement<DMGOverlayImage>(id, [](DMGOverlayImage& overlay) {
        const Point center = overlay.center();
        const Size size{overlay.effectiveOriginalWidth(), overlay.effectiveOriginalHeight()};
        overlay.setBounds({center.x - size.width * 0.5, center.y - size.height * 0.5, size.width, size.height});
    });
}

bool AppState::canBringOverlayForward(const Uuid& id) const
{
    const auto place = placeOf(m_project.overlayImages, id);
    return place && *place + 1 < m_project.overlayImages.size();
}

bool AppState::canSendOverlayBackward(const Uuid& id) const
{
    return placeOf(m_project.overlayImages, id).value_or(0) > 0;
}

void AppState::bringOverlayForward(const Uuid& id)
{
    if (!canBringOverlayForward(id))
        return;
    const std::size_t place = *placeOf(m_project.overlayImages, id);
    swapOverlays(place, place + 1);
}

void AppState::sendOverlayBackward(const Uuid& id)
{
    if (!canSendOverlayBackward(id))
        return;
    const std::size_t place = *placeOf(m_project.overlayImages, id);
    swapOverlays(place, place - 1);
}

void AppState::swapOverlays(std::size_t one, std::size_t other)
{
    edit({}, [&](DMGProject& project) { std::swap(project.overlayImages[one], project.overlayImages[other]); });
}

void AppState::replaceOverlayImageViaPanel(const Uuid& id)
{
    const auto file = pickOverlayPicture();
    const auto size = file ? overlayPictureSize(*file) : std::nullopt;
    if (!size)
        return;
    const Rect natural = boxOfNewOverlay(*size, {}, m_project.contentSize());
    editElement<DMGOverlayImage>(id, [&](DMGOverlayImage& overlay) {
        overlay.sourcePath = file->string();
        overlay.builtInArrowID.reset();
        overlay.setBounds(fittedInto(overlay.bounds(), *size));
        overlay.originalWidth = natural.width;
        overlay.originalHeight = natural.height;
    });
}

} // namespace velmora
