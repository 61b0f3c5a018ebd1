#include "pipeline/name_check.h"

#include "diskimage/base/error.h"
#include "pipeline/background_staging.h"
#include "pipeline/staging.h"
#include "pipeline/text.h"
#include "pipeline/volume_icon.h"
#include "pipeline/volume_order.h"

#include <map>
#include <system_error>

namespace velmora
{
namespace
{

using diskimage::hfs::storedName;

/// Stored name to the index of the item that has it last.
using ItemNames = std::map<std::u16string, std::size_t, VolumeOrder>;

ItemNames checkItems(const DMGProject& project, Problems& problems)
{
    ItemNames names;
    for (std::size_t i = 0; i < project.items.size(); ++i) {
        const DMGItem& item = project.items[i];
        if (item.hidden)
            continue;
        try {
            const auto [earlier, isNew] = names.emplace(storedName(item.displayName), i);
            if (isNew)
                continue;
            problems.push_back(errorIn(elementField("items", i, "displayName"),
                                       inQuotes(item.displayName) + " and " +
                                           inQuotes(project.items[earlier->second].displayName) + " of items[" +
                                           std::to_string(earlier->second) +
                                           "] are one name on the volume; the earlier entry would be replaced."));
            earlier->second = i;
        } catch (const diskimage::DiskImageError&) {
            // No volume holds such a name at all, which is another check's business.
        }
    }
    return names;
}

bool isFolder(const DMGItem& item)
{
    std::error_code ignored;
    return !item.isSymlink() &&
           std::filesystem::is_directory(std::filesystem::symlink_status(item.sourcePath, ignored));
}

} // namespace

Problems checkNames(const DMGProject& project)
{
    Problems problems;
    const ItemNames names = checkItems(project, problems);
    const auto reserve = [&](std::string_view name, const std::string& owner) {
        const auto found = names.find(storedName(name));
        if (found == names.end())
            return;
        const DMGItem& item = project.items[found->second];
        const std::string field = elementField("items", found->second, "displayName");
        if (name == backgroundFolderName && isFolder(item))
            problems.push_back(warningIn(field, inQuotes(item.displayName) + " also receives " + owner + "."));
        else
            problems.push_back(errorIn(field, inQuotes(item.displayName) + " cannot be in the volume beside " + owner +
                                                  ", which has the same name."));
    };
    if (hasLicense(project))
        reserve(licenseFileName, "the licence agreement");
    if (drawsBackground(project))
        reserve(backgroundFolderName, "the background of the window");
    if (!project.volumeIconPath.empty())
        reserve(volumeIconFile, "the volume icon");
    reserve(".DS_Store", "the layout of the window");
    return problems;
}

} // namespace velmora
