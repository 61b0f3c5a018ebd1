#pragma once

#include "model/overlays.h"
#include "render/picture.h"

#include <map>
#include <mutex>
#include <string>

namespace velmora
{

class BuiltInArrowLibrary;

/// Decoded overlay pictures by path, exactly as the project stores it. Every operation is serialised, so that a build
/// and the editor may use one cache.
class OverlayImageCache
{
public:
    /// The picture stored for `path`, or null.
    PicturePtr image(const std::string& path) const;
    /// Adds or replaces.
    void store(PicturePtr picture, const std::string& path);
    /// Forgets; no effect when absent.
    void remove(const std::string& path);

private:
    mutable std::mutex m_mutex{};
    std::map<std::string, PicturePtr> m_images{};
};

/// Decodes the file at `path` through the cache, keeping its alpha channel and point size. Null when it cannot be read.
PicturePtr loadImageWithAlpha(const std::string& path, OverlayImageCache& cache);

/// Finds the picture that belongs to an overlay: its file, else its built-in arrow.
namespace OverlayImageResolver
{
PicturePtr load(const DMGOverlayImage& overlay, const BuiltInArrowLibrary& arrows, OverlayImageCache& cache);
/// The built-in arrow that a path speaks of, by its file name or any part of it; nothing when there is none.
std::optional<std::string> inferBuiltInID(const std::string& path);
} // namespace OverlayImageResolver

} // namespace velmora
