#include "tools/osascript/apply_layout.h"

#include "diskimage/base/error.h"
#include "diskimage/finder/ds_store.h"
#include "diskimage/hfs/volume.h"
#include "platform/file_tree.h"
#include "tools/support/image_volume.h"

#include <stdexcept>
#include <string_view>

namespace fs = std::filesystem;

namespace velmora::tools
{

using namespace diskimage;
using finder::ScriptObject;

namespace
{

/// The components of a path below the root; empty ones are left out.
std::vector<std::string_view> componentsOf(std::string_view path)
{
    std::vector<std::string_view> parts;
    while (!path.empty()) {
        const auto slash = path.find('/');
        if (slash != 0)
            parts.push_back(path.substr(0, slash));
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
    }
    return parts;
}

/// The entries from the root's child down to `path`, or nothing when one of them is missing.
std::vector<const hfs::Entry*> entriesOnPath(const hfs::Volume& volume, std::string_view path)
{
    std::vector<const hfs::Entry*> entries;
    const hfs::Entry* folder = &volume.root();
    for (const std::string_view name : componentsOf(path)) {
        const hfs::Entry* const entry = hfs::findChild(*folder, name);
        if (!entry)
            return {};
        entries.push_back(entry);
        folder = entry;
    }
    return entries;
}

/// What was put into the root of the volume since it was mounted; only names are known of it.
hfs::Entry namesInFolder(const fs::path& folder)
{
    hfs::Entry entry{.kind = hfs::EntryKind::folder};
    for (std::string& name : listFolder(folder))
        entry.children.push_back({.name = std::move(name)});
    return entry;
}

bool exists(const ScriptObject& object, const hfs::Volume& volume, const hfs::Entry& added)
{
    if (object.kind == ScriptObject::Kind::item)
        return hfs::findChild(volume.root(), object.name) || hfs::findChild(added, object.name);
    // The reference to the picture needs its number, which it gets when it is written into the image.
    const auto entries = entriesOnPath(volume, object.name);
    return !entries.empty() && entries.back()->kind == hfs::EntryKind::file;
}

finder::AliasTarget aliasOf(const std::string& path, const hfs::Volume& volume)
{
    const auto entries = entriesOnPath(volume, path);
    finder::AliasTarget target{.volumeName = volume.info().name,
                               .volumeCreated = volume.info().created,
                               .fileId = entries.back()->id,
                               .fileCreated = entries.back()->created};
    for (const hfs::Entry* const entry : entries) {
        target.path.push_back(entry->name);
        if (entry != entries.back())
            target.folderIds.push_back(entry->id);
    }
    return target;
}

} // namespace

std::optional<ScriptObject> applyLayout(const finder::LayoutScript& script, const Session& session)
{
    if (session.access == Access::readOnly)
        throw std::runtime_error("the disk \"" + session.mountName + "\" is mounted read-only");
    const ImageVolume image = openImageVolume(session.image);
    const hfs::Volume volume(*image.volume);
    const hfs::Entry added = namesInFolder(session.folder());
    const finder::LayoutRun run =
        finder::runLayoutScript(script, [&](const ScriptObject& object) { return exists(object, volume, added); });

    std::optional<finder::AliasTarget> background;
    if (run.layout.backgroundPath)
        background = aliasOf(*run.layout.backgroundPath, volume);
    const fs::path file = session.folder() / ".DS_Store";
    writeFileAtomically(file, textOf(finder::writeDsStore(finder::layoutRecords(run.layout, background))));
    // It goes into the image with this mode, whatever this user's umask is.
    fs::permissions(file,
                    fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::others_read);
    return run.missing;
}

} // namespace velmora::tools
