#pragma once

#include "model/overlays.h"
#include "render/file_stamp.h"
#include "render/picture.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace velmora
{

class BuiltInArrowLibrary;

/// Decoded overlay pictures by path, exactly as the project stores it. Every operation is serialised, so that a build
/// and the editor may use one cache. Files are not watched: forgetChanged() is called whenever they may have changed.
class OverlayImageCache
{
public:
    /// The picture stored for `path`, or null.
    PicturePtr image(const std::string& path) const;
    /// Adds or replaces; the file at `path` is taken to be as it is now.
    void store(PicturePtr picture, const std::string& path) { store(std::move(picture), path, stampOf(path)); }
    /// The same for a picture that was read when the file was as `file` says.
    void store(PicturePtr picture, const std::string& path, const FileStamp& file);
    /// Forgets; no effect when absent.
    void remove(const std::string& path);
    /// Forgets the pictures whose files are no longer what they were, those that are gone or have come included.
    void forgetChanged();

private:
    struct Entry {
        PicturePtr picture{};
        FileStamp file{};
    };

    mutable std::mutex m_mutex{};
    std::map<std::string, Entry> m_images{};
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
