#include "render/overlay_images.h"

#include "render/built_in_arrows.h"

#include <QString>

#include <string_view>

namespace velmora
{
namespace
{

/// A file name without its last extension; a leading dot begins none.
std::string_view stemOf(std::string_view name)
{
    const auto dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? name : name.substr(0, dot);
}

std::string_view lastComponent(std::string_view path)
{
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

} // namespace

PicturePtr OverlayImageCache::image(const std::string& path) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_images.find(path);
    return found == m_images.end() ? nullptr : found->second.picture;
}

void OverlayImageCache::store(PicturePtr picture, const std::string& path, const FileStamp& file)
{
    const std::lock_guard lock(m_mutex);
    m_images[path] = {std::move(picture), file};
}

void OverlayImageCache::remove(const std::string& path)
{
    const std::lock_guard lock(m_mutex);
    m_images.erase(path);
}

void OverlayImageCache::forgetChanged()
{
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_images, [](const auto& each) { return stampOf(each.first) != each.second.file; });
}

PicturePtr loadImageWithAlpha(const std::string& path, OverlayImageCache& cache)
{
    if (PicturePtr known = cache.image(path))
        return known;
    const FileStamp file = stampOf(path); // before reading: what is saved meanwhile counts as changed
    PicturePtr picture = readPicture(QString::fromStdString(path));
    if (picture)
        cache.store(picture, path, file);
    return picture;
}

namespace OverlayImageResolver
{

PicturePtr load(const DMGOverlayImage& overlay, const BuiltInArrowLibrary& arrows, OverlayImageCache& cache)
{
    if (!overlay.sourcePath.empty()) {
        if (PicturePtr picture = loadImageWithAlpha(overlay.sourcePath, cache))
            return picture;
    }
    const auto id = overlay.builtInArrowID ? overlay.builtInArrowID : inferBuiltInID(overlay.sourcePath);
    if (!id)
        return nullptr;
    if (const auto file = arrows.filePath(*id)) {
        if (PicturePtr picture = loadImageWithAlpha(*file, cache))
            return picture;
    }
    PicturePtr picture = arrows.previewImage(*id);
    if (picture)
        cache.store(picture, overlay.sourcePath.empty() ? *id : overlay.sourcePath);
    return picture;
}

std::optional<std::string> inferBuiltInID(const std::string& path)
{
    const std::string_view stem = stemOf(lastComponent(path));
    if (BuiltInArrowLibrary::find(stem))
        return std::string(stem);
    for (const Arrow& arrow : BuiltInArrowLibrary::all()) {
        if (!arrow.bundledFilename.empty() && stemOf(arrow.bundledFilename) == stem)
            return std::string(arrow.id);
    }
    for (const Arrow& arrow : BuiltInArrowLibrary::all()) {
        if (path.find(arrow.id) != std::string::npos)
            return std::string(arrow.id);
    }
    return std::nullopt;
}

} // namespace OverlayImageResolver
} // namespace velmora
