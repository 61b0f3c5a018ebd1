// HFS+ volumes: changed as detaching an image changes them. A sound volume stays sound, whether the change succeeds or
// not, and keeps what is not changed. Input: a packed disk (support/sparse_disk.h).

#include "diskimage/hfs/editor.h"
#include "diskimage/hfs/volume.h"
#include "support/sparse_disk.h"
#include "support/target.h"
#include "support/volume_content.h"

using namespace velmora;
using namespace velmora::diskimage;

namespace
{

constexpr const char* layoutFile = ".DS_Store";
constexpr const char* pictureFolder = ".background";

hfs::Entry file(std::string name, std::size_t size)
{
    hfs::Entry entry;
    entry.name = std::move(name);
    entry.mode = 0644;
    entry.dataSize = size;
    entry.openData = [size] { return memoryStorage(Bytes(size, 0x5A)); };
    return entry;
}

hfs::Entry pictures()
{
    hfs::Entry picture = file("picture.tiff", 5000);
    picture.attributes = {{"small", Bytes(10, 1)}, {"large", Bytes(6000, 2)}};
    hfs::Entry folder;
    folder.name = pictureFolder;
    folder.kind = hfs::EntryKind::folder;
    folder.children = {std::move(picture)};
    return folder;
}

/// Sets `removed` to the path that it removes.
void edit(Storage& disk, std::string& removed)
{
    constexpr std::int64_t now = 1'700'000'000;
    hfs::VolumeEditor editor(disk);
    editor.put("/", file(layoutFile, 4100));
    editor.put("/", pictures());
    editor.put("/", file(layoutFile, 6148)); // it replaces the first one
    editor.changeFinderFlags("/", hfs::finderFlagHasCustomIcon, 0);
    for (const hfs::Entry& child : editor.root().children) {
        if (child.name != layoutFile && child.name != pictureFolder)
            removed = "/" + child.name;
    }
    if (!removed.empty())
        editor.remove(removed);
    editor.commit(now);
    editor.put("/", file("after", 1));
    editor.commit(now);
}

bool liesIn(const std::string& path, const std::string& top)
{
    return path.compare(0, top.size(), top) == 0 && (path.size() == top.size() || path[top.size()] == '/');
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto disk = memoryStorage(fuzz::unpackDisk({data, size}));
    const bool isSound = fuzz::faultsOn(*disk).empty();
    const auto before = fuzz::attempt([&] { return fuzz::contentOf(hfs::Volume(*disk).root()); });
    std::string removed;
    const bool isEdited = fuzz::attempt([&] { return edit(*disk, removed), true; }).has_value();
    if (!isSound)
        return 0;
    fuzz::expectNone(fuzz::faultsOn(*disk), "a sound volume stays sound");
    const hfs::Volume volume(*disk);
    const auto after = fuzz::contentOf(volume.root());
    for (const auto& [path, digest] : *before) {
        const bool isOurs = liesIn(path, std::string("/") + layoutFile) || liesIn(path, "/after") ||
                            liesIn(path, std::string("/") + pictureFolder);
        if (isOurs || (!removed.empty() && liesIn(path, removed)))
            continue;
        const auto found = after.find(path);
        fuzz::expect(found != after.end() && found->second == digest, "what is not changed stays");
    }
    if (isEdited) {
        const hfs::Entry* layout = volume.find(std::string("/") + layoutFile);
        fuzz::expect(layout && layout->dataSize == 6148, "what was put is there");
    }
    return 0;
}
