#include "canvas/canvas_pictures.h"

#include "render/bundle_icon.h"
#include "render/overlay_images.h"

#include <algorithm>

namespace velmora
{
namespace
{

// Kilobytes, as the caches count.
constexpr int roomForReduced = 256 * 1024;
constexpr int roomForIcons = 128 * 1024;
// Decoded pictures are large and few: the background's.
constexpr std::size_t mostDecoded = 2;
constexpr std::size_t mostStamps = 20'000;

int kilobytes(const QImage& image)
{
    return static_cast<int>(std::max<qsizetype>(1, image.sizeInBytes() / 1024));
}

QImage within(const QImage& image, int pixels)
{
    if (image.width() <= pixels && image.height() <= pixels)
        return image;
    return image.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

CanvasPictures::CanvasPictures() : m_reduced(roomForReduced), m_icons(roomForIcons) {}

const FileStamp& CanvasPictures::stamp(const std::string& path)
{
    if (m_stamps.size() > mostStamps)
        m_stamps.clear();
    Stamped& known = m_stamps[path];
    if (known.age != m_age)
        known = {stampOf(path), m_age};
    return known.stamp;
}

PicturePtr CanvasPictures::picture(const std::string& path)
{
    const FileStamp now = stamp(path);
    const auto found = m_decoded.find(path);
    if (found != m_decoded.end() && found->second.stamp == now)
        return found->second.picture;
    if (found == m_decoded.end() && m_decoded.size() >= mostDecoded)
        m_decoded.erase(m_decoded.begin());
    PicturePtr picture = now.exists && !now.folder ? readPicture(QString::fromStdString(path)) : nullptr;
    m_decoded[path] = {now, picture};
    return picture;
}

PicturePtr CanvasPictures::overlay(const DMGOverlayImage& overlay, const RenderContext& context)
{
    const FileStamp now = stamp(overlay.sourcePath);
    const auto known = m_unreadable.find(overlay.sourcePath);
    if (known != m_unreadable.end() && known->second == now && !overlay.builtInArrowID)
        return nullptr;
    PicturePtr picture = OverlayImageResolver::load(overlay, context.arrows, context.cache);
    if (picture && known != m_unreadable.end())
        m_unreadable.erase(known);
    else if (!picture && now.exists)
        m_unreadable[overlay.sourcePath] = now;
    return picture;
}

PicturePtr CanvasPictures::reduced(const PicturePtr& picture, QSize pixels)
{
    if (!picture || picture->pixels.isNull())
        return picture;
    const QSize size(std::clamp(pixels.width(), 1, picture->pixels.width()),
                     std::clamp(pixels.height(), 1, picture->pixels.height()));
    if (size == picture->pixels.size())
        return picture;
    const QString key =
        QStringLiteral("%1 %2 %3").arg(reinterpret_cast<quintptr>(picture.get())).arg(size.width()).arg(size.height());
    if (const Reduced* known = m_reduced.object(key); known && known->original.lock() == picture)
        return known->picture;
    auto made = std::make_unique<Reduced>();
    made->original = picture;
    made->picture = std::make_shared<const Picture>(
        Picture{picture->pixels.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation), picture->pointSize});
    PicturePtr result = made->picture;
    const int cost = kilobytes(result->pixels);
    m_reduced.insert(key, made.release(), cost);
    return result;
}

QString CanvasPictures::iconKey(const std::string& path, int pixels) const
{
    return QString::number(pixels) + u' ' + QString::fromStdString(path);
}

const CanvasPictures::BundleIcon* CanvasPictures::freshIcon(const std::string& path, int pixels)
{
    const BundleIcon* known = m_icons.object(iconKey(path, pixels));
    const bool fresh = known && known->info == stamp(path + "/Contents/Info.plist") &&
                       known->resources == stamp(path + "/Contents/Resources");
    return fresh ? known : nullptr;
}

bool CanvasPictures::knowsBundleIcon(const std::string& path, int pixels)
{
    return !stamp(path + "/Contents/Info.plist").exists || freshIcon(path, pixels);
}

QImage CanvasPictures::bundleIcon(const std::string& path, int pixels)
{
    const FileStamp info = stamp(path + "/Contents/Info.plist");
    if (!info.exists)
        return {};
    if (const BundleIcon* known = freshIcon(path, pixels))
        return known->image;
    const PicturePtr picture = velmora::bundleIcon(path);
    auto made = std::make_unique<BundleIcon>();
    made->info = info;
    made->resources = stamp(path + "/Contents/Resources");
    if (picture)
        made->image = within(picture->pixels, pixels);
    QImage result = made->image;
    const int cost = kilobytes(result);
    m_icons.insert(iconKey(path, pixels), made.release(), cost);
    return result;
}

} // namespace velmora
