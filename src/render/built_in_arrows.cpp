#include "render/built_in_arrows.h"

#include "l10n/l10n.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryFile>

#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

constexpr Arrow arrows[] = {
    {"arrow_pro_swoosh", "arrow.pro_swoosh", "arrow_pro_swoosh.png"},
    {"arrow_blue_curved", "arrow.blue_curved", ""},
    {"arrow_blue_bold", "arrow.blue_bold", ""},
    {"arrow_blue_chevron", "arrow.blue_chevron", ""},
    {"arrow_blue_3d", "arrow.blue_3d", ""},
    {"arrow_white_bold", "arrow.white_bold", ""},
    {"arrow_gray_subtle", "arrow.gray_subtle", ""},
    {"arrow_blue_outline", "arrow.blue_outline", ""},
    {"arrow_blue_slim", "arrow.blue_slim", ""},
};

/// Writes beside the target and renames: a reader never sees half a picture, and a link that someone planted under the
/// target's name is replaced, not followed.
bool writeFile(const fs::path& target, const QByteArray& bytes)
{
    QTemporaryFile file(QString::fromStdString(target.string()) + QStringLiteral(".XXXXXX"));
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush())
        return false;
    const fs::path written = file.fileName().toStdString();
    file.close();
    std::error_code error;
    fs::rename(written, target, error);
    file.setAutoRemove(static_cast<bool>(error));
    return !error;
}

std::optional<std::string> writeArrow(const fs::path& target, const PicturePtr& picture, OverlayImageCache& cache)
{
    constexpr int dpi = 72;
    if (!writeFile(target, encodePng(picture->pixels, dpi)))
        return std::nullopt;
    cache.store(picture, target.string());
    return target.string();
}

/// An unknown id may be anything, a path into another folder included; no file name is made of it.
bool isDrawn(std::string_view id)
{
    const Arrow* arrow = BuiltInArrowLibrary::find(id);
    return arrow && arrow->bundledFilename.empty();
}

PicturePtr drawnPicture(std::string_view id)
{
    QImage image = BuiltInArrowLibrary::draw(id);
    if (image.isNull())
        return nullptr;
    const QSizeF size = image.size();
    return std::make_shared<const Picture>(Picture{std::move(image), size});
}

} // namespace

std::string Arrow::displayName() const
{
    return L10n::t(nameKey);
}

BuiltInArrowLibrary::BuiltInArrowLibrary(ArrowFolders folders, OverlayImageCache& cache)
    : m_folders(std::move(folders)), m_cache(&cache)
{
}

std::span<const Arrow> BuiltInArrowLibrary::all()
{
    return arrows;
}

const Arrow* BuiltInArrowLibrary::find(std::string_view id)
{
    const auto* const found =
        std::find_if(std::begin(arrows), std::end(arrows), [&](const Arrow& arrow) { return arrow.id == id; });
    return found == std::end(arrows) ? nullptr : found;
}

std::optional<std::string> BuiltInArrowLibrary::bundledPath(std::string_view id) const
{
    const Arrow* arrow = find(id);
    if (!arrow || arrow->bundledFilename.empty() || !m_folders.resources)
        return std::nullopt;
    const fs::path path = *m_folders.resources / "Arrows" / arrow->bundledFilename;
    std::error_code error;
    return fs::exists(path, error) ? std::optional(path.string()) : std::nullopt;
}

std::optional<std::string> BuiltInArrowLibrary::filePath(std::string_view id) const
{
    if (auto path = bundledPath(id))
        return path;
    if (!isDrawn(id))
        return std::nullopt;
    const fs::path folder = m_folders.applicationSupport / "Velmora" / "BuiltInArrows";
    const std::string name = std::string(id) + ".png";
    std::error_code ignored; // whether the folder could be made shows when the file is written
    fs::create_directories(folder, ignored);
    if (fs::exists(folder / name, ignored))
        return (folder / name).string();

    const PicturePtr picture = drawnPicture(id);
    if (!picture)
        return std::nullopt;
    if (auto path = writeArrow(folder / name, picture, *m_cache))
        return path;
    return writeArrow(m_folders.temporary / ("velmora-" + name), picture, *m_cache);
}

PicturePtr BuiltInArrowLibrary::previewImage(std::string_view id) const
{
    if (const auto path = bundledPath(id)) {
        if (PicturePtr picture = loadImageWithAlpha(*path, *m_cache))
            return picture;
    }
    return drawnPicture(id);
}

void BuiltInArrowLibrary::warmCache() const
{
    for (const Arrow& arrow : arrows) {
        if (arrow.bundledFilename.empty())
            static_cast<void>(filePath(arrow.id));
    }
}

} // namespace velmora
