#include "cli/image_check.h"

#include "cli/opened_image.h"
#include "diskimage/base/error.h"
#include "diskimage/hfs/check.h"
#include "diskimage/hfs/names.h"
#include "pipeline/volume_icon.h"

#include <algorithm>

namespace velmora::cli
{
using namespace diskimage;

namespace
{

using Faults = std::vector<std::string>;

bool sameName(const std::string& a, const std::string& b)
{
    return hfs::compareNames(hfs::storedName(a), hfs::storedName(b)) == 0;
}

void checkChecksums(const OpenedImage& opened, Faults& faults)
{
    if (opened.image.kind() != udif::ImageKind::udif)
        return;
    for (const udif::ChecksumResult& result : udif::verifyChecksums(*opened.file, opened.image)) {
        if (!result.ok())
            faults.push_back("The checksum of " + result.name + " is wrong");
    }
}

void checkItems(const OpenedImage& opened, const DMGProject& project, const finder::WindowLayout& layout,
                Faults& faults)
{
    for (const DMGItem& item : project.items) {
        if (item.hidden)
            continue;
        const hfs::Entry* entry = hfs::findChild(opened.volume.root(), item.displayName);
        if (entry == nullptr) {
            faults.push_back("\"" + item.displayName + "\" is not in the image");
            continue;
        }
        if (item.isSymlink() && entry->linkTarget != item.symlinkTarget)
            faults.push_back("\"" + item.displayName + "\" is not a link to " + item.symlinkTarget);
        const auto place = std::find_if(layout.positions.begin(), layout.positions.end(), [&](const auto& position) {
            return sameName(position.name, item.displayName);
        });
        if (place == layout.positions.end())
            faults.push_back("\"" + item.displayName + "\" has no position in the window");
        else if (place->x != static_cast<std::int32_t>(item.x) || place->y != static_cast<std::int32_t>(item.y))
            faults.push_back("\"" + item.displayName + "\" has another position in the window than in the project");
    }
}

void checkBackground(const OpenedImage& opened, const finder::ReadLayout& read, Faults& faults)
{
    if (!read.layout.backgroundPath) {
        faults.push_back("The window has no background picture");
        return;
    }
    const hfs::Entry* picture = opened.volume.find(*read.layout.backgroundPath);
    if (picture == nullptr || picture->kind != hfs::EntryKind::file || picture->dataSize == 0) {
        faults.push_back("The background picture " + *read.layout.backgroundPath + " is not in the image");
        return;
    }
    if (!read.background || read.background->fileId != picture->id ||
        read.background->volumeName != opened.volume.info().name)
        faults.push_back("The window's reference to the background picture does not lead to it");
}

void checkWindow(const DMGProject& project, const finder::WindowLayout& layout, Faults& faults)
{
    const auto differs = [](double wanted, std::int32_t found) { return static_cast<std::int32_t>(wanted) != found; };
    if (differs(project.windowWidth, layout.right - layout.left) ||
        differs(project.windowHeight, layout.bottom - layout.top))
        faults.push_back("The window has another size than in the project");
    if (static_cast<int>(project.iconSize) != static_cast<int>(layout.iconSize))
        faults.push_back("The icons have another size than in the project");
}

void checkVolumeIcon(const OpenedImage& opened, Faults& faults)
{
    const hfs::Entry* icon = opened.volume.find("/" + std::string(volumeIconFile));
    if (icon == nullptr || icon->dataSize == 0)
        faults.push_back("The volume icon is not in the image");
    if ((opened.volume.root().finderFlags() & hfs::finderFlagHasCustomIcon) == 0)
        faults.push_back("The volume is not marked as having an icon");
}

void checkAll(const OpenedImage& opened, const DMGProject& project, Faults& faults)
{
    checkChecksums(opened, faults);
    for (const std::string& fault : hfs::checkVolume(*opened.partition))
        faults.push_back("The volume is damaged: " + fault);
    if (!sameName(opened.volume.info().name, project.volumeName))
        faults.push_back("The volume is named \"" + opened.volume.info().name + "\"");
    if (!project.volumeIconPath.empty())
        checkVolumeIcon(opened, faults);

    const auto read = opened.layout();
    if (!read) {
        faults.push_back("The image says nothing about its window (it has no .DS_Store)");
        return;
    }
    checkWindow(project, read->layout, faults);
    checkItems(opened, project, read->layout, faults);
    checkBackground(opened, *read, faults);
}

} // namespace

std::vector<std::string> checkBuiltImage(const std::filesystem::path& image, const DMGProject& project)
{
    Faults faults;
    try {
        checkAll(OpenedImage(image), project, faults);
    } catch (const DiskImageError& error) {
        faults.push_back(std::string("The finished image cannot be read back: ") + error.what());
    }
    return faults;
}

} // namespace velmora::cli
