#include "canvas/item_icons.h"

#include "render/picture_drawing.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace velmora
{
namespace
{

// Milliseconds; more would be felt.
constexpr qint64 readingAtOnce = 60;
constexpr qint64 readingInBetween = 12;
// Larger icons are drawn anew each time instead of being kept.
constexpr int largestKept = 512;
constexpr int largestRead = 1024;

QString kindOf(const std::filesystem::path& path)
{
    constexpr qsizetype longest = 5;
    const QString extension = QString::fromStdString(path.extension().string()).mid(1).toUpper();
    const bool plain = std::all_of(extension.begin(), extension.end(), [](QChar c) { return c.isLetterOrNumber(); });
    return plain && extension.size() <= longest ? extension : QString();
}

/// What a link shows whose goal is on the customer's machine only.
IconArt artOfGoal(const std::filesystem::path& goal)
{
    if (goal.extension() == ".app")
        return IconArt::application;
    return goal.has_extension() ? IconArt::document : IconArt::folder;
}

bool isApplications(std::string path)
{
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path == DMGItem::applicationsFolder;
}

} // namespace

ItemLook ItemIcons::look(const DMGItem& item)
{
    ItemLook look;
    look.path = item.isSymlink() ? item.symlinkTarget : item.sourcePath;
    if (item.isSymlink() && isApplications(look.path)) {
        look.art = IconArt::applicationsFolder;
        return look;
    }
    const std::filesystem::path path(look.path);
    const FileStamp& stamp = m_pictures.stamp(look.path);
    if (!stamp.exists) {
        look.missing = !item.isSymlink();
        look.art = item.isSymlink() ? artOfGoal(path) : IconArt::document;
        return look;
    }
    if (stamp.folder) {
        look.mayHaveIcon = m_pictures.stamp(look.path + "/Contents/Info.plist").exists;
        look.art = path.extension() == ".app" ? IconArt::application : IconArt::folder;
    } else {
        look.kind = kindOf(path);
    }
    return look;
}

void ItemIcons::beginDrawing()
{
    m_drawing.start();
}

QImage ItemIcons::art(const ItemLook& look, int pixels)
{
    const QString key = QStringLiteral("%1 %2 ").arg(pixels).arg(static_cast<int>(look.art)) + look.kind;
    if (const QImage* known = m_art.object(key))
        return *known;
    auto image = std::make_unique<QImage>(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image->fill(Qt::transparent);
    QPainter painter(image.get());
    drawIconArt(painter, look.art, QRectF(0, 0, pixels, pixels), look.kind);
    painter.end();
    QImage result = *image;
    m_art.insert(key, image.release(), std::max(1, pixels * pixels / 256));
    return result;
}

void ItemIcons::draw(QPainter& painter, const ItemLook& look, const QRectF& square, double ratio)
{
    const int pixels = std::max(1, static_cast<int>(std::lround(std::min(square.width(), 1e5) * ratio)));
    QImage icon;
    if (look.mayHaveIcon) {
        const int read = std::min(pixels, largestRead);
        if (m_pictures.knowsBundleIcon(look.path, read) || m_drawing.elapsed() < readingAtOnce)
            icon = m_pictures.bundleIcon(look.path, read);
        else
            m_unread.insert({look.path, read});
    }
    if (icon.isNull() && pixels > largestKept) {
        drawIconArt(painter, look.art, square, look.kind);
        return;
    }
    if (icon.isNull())
        icon = art(look, pixels);
    if (icon.width() == pixels && icon.height() == pixels) {
        icon.setDevicePixelRatio(ratio); // pixel for pixel
        painter.drawImage(square.topLeft(), icon);
        return;
    }
    const QSizeF size = QSizeF(icon.size()).scaled(square.size(), Qt::KeepAspectRatio);
    QRectF place(QPointF(0, 0), size);
    place.moveCenter(square.center());
    drawPicture(painter, icon, place, place);
}

void ItemIcons::readSome()
{
    QElapsedTimer timer;
    timer.start();
    while (!m_unread.empty() && timer.elapsed() < readingInBetween) {
        const Unread next = *m_unread.begin();
        m_unread.erase(m_unread.begin());
        m_pictures.bundleIcon(next.path, next.pixels);
    }
}

} // namespace velmora
