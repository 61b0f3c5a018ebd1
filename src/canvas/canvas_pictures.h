#pragma once

#include "render/background_renderer.h"
#include "render/file_stamp.h"
#include "render/picture.h"

#include <QCache>
#include <QSize>
#include <QString>

#include <map>
#include <string>

namespace velmora
{

/// The pictures that the canvas draws, decoded and reduced once. Files are looked at again after expire(), so that what
/// another program has saved meanwhile is read anew.
class CanvasPictures
{
public:
    CanvasPictures();

    /// From now on files may have changed.
    void expire() { ++m_age; }
    const FileStamp& stamp(const std::string& path);

    /// The picture in a file, or null.
    PicturePtr picture(const std::string& path);
    /// The picture of an overlay, or null. What cannot be read is tried again only when its file has changed.
    PicturePtr overlay(const DMGOverlayImage& overlay, const RenderContext& context);
    /// The picture reduced to `pixels` when it is larger, else itself. Kept as long as there is room.
    PicturePtr reduced(const PicturePtr& picture, QSize pixels);

    /// A bundle's icon, at most `pixels` wide and high; a null image when it has none. Its files are read once.
    QImage bundleIcon(const std::string& path, int pixels);
    /// Whether bundleIcon() would answer without reading a file.
    bool knowsBundleIcon(const std::string& path, int pixels);

private:
    struct Stamped {
        FileStamp stamp{};
        int age = -1;
    };
    struct Decoded {
        FileStamp stamp{};
        PicturePtr picture{};
    };
    struct Reduced {
        std::weak_ptr<const Picture> original{}; ///< so that an address used again is no match
        PicturePtr picture{};
    };
    struct BundleIcon {
        FileStamp info{};
        FileStamp resources{};
        QImage image{};
    };
    QString iconKey(const std::string& path, int pixels) const;
    const BundleIcon* freshIcon(const std::string& path, int pixels);

    std::map<std::string, Stamped> m_stamps{};
    std::map<std::string, Decoded> m_decoded{};
    std::map<std::string, FileStamp> m_unreadable{}; ///< pictures of overlays
    QCache<QString, Reduced> m_reduced;
    QCache<QString, BundleIcon> m_icons;
    int m_age = 0;
};

} // namespace velmora
