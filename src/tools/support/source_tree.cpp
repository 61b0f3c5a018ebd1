#include "tools/support/source_tree.h"

#include "platform/file_tree.h"
#include "tools/support/local_file.h"

#include <algorithm>
#include <memory>

namespace fs = std::filesystem;

namespace velmora::tools
{

namespace hfs = diskimage::hfs;
using diskimage::Bytes;

namespace
{

constexpr const char* finderInfoName = "com.apple.FinderInfo";
constexpr const char* resourceForkName = "com.apple.ResourceFork";
/// Access control lists: they name accounts of the machine the file came from.
constexpr const char* securityName = "com.apple.system.Security";

void takeAttributes(hfs::Entry& entry, const fs::path& path, const std::map<std::string, std::string>& attributes)
{
    for (const auto& [name, value] : attributes) {
        if (name == finderInfoName) {
            if (value.size() != entry.finderInfo.size())
                throw FileError("\"" + path.string() + "\": its attribute " + name + " has " +
                                std::to_string(value.size()) + " bytes instead of 32");
            std::copy(value.begin(), value.end(), entry.finderInfo.begin());
        } else if (name == resourceForkName) {
            entry.resourceSize = value.size();
            entry.openResource = [bytes = Bytes(value.begin(), value.end())]() -> std::unique_ptr<diskimage::Source> {
                return diskimage::memoryStorage(bytes);
            };
        } else if (name != securityName) {
            entry.attributes.emplace(name, Bytes(value.begin(), value.end()));
        }
    }
}

hfs::Entry scan(const fs::path& path, std::string name, const ScanOptions& options)
{
    FileStatus status = describe(path);
    hfs::Entry entry;
    entry.name = std::move(name);
    entry.mode = status.mode;
    entry.modified =
        options.latestTime ? std::min(status.modifiedSeconds, *options.latestTime) : status.modifiedSeconds;
    entry.created = entry.modified;
    takeAttributes(entry, path, status.extendedAttributes);
    switch (status.kind) {
    case FileKind::folder: {
        entry.kind = hfs::EntryKind::folder;
        std::vector<std::string> names = listFolder(path);
        entry.children.reserve(names.size());
        for (std::string& child : names) {
            const fs::path childPath = path / child;
            entry.children.push_back(scan(childPath, std::move(child), options));
        }
        break;
    }
    case FileKind::regular:
        entry.kind = hfs::EntryKind::file;
        entry.dataSize = status.size;
        // As text: a path object takes a piece of memory for each of its parts.
        entry.openData = [file = path.string()]() -> std::unique_ptr<diskimage::Source> {
            return openLocalFile(file, diskimage::OpenMode::readOnly);
        };
        break;
    case FileKind::symlink:
        entry.kind = hfs::EntryKind::symlink;
        entry.linkTarget = std::move(status.linkTarget);
        break;
    case FileKind::other:
        throw FileError("\"" + path.string() +
                        "\" is neither a file nor a folder nor a link and cannot be put into an image");
    }
    return entry;
}

} // namespace

hfs::Entry scanFolder(const fs::path& folder, const std::string& volumeName, const ScanOptions& options)
{
    std::error_code error;
    // The folder itself may be given by a link; those inside stay links.
    const fs::path real = fs::canonical(folder, error);
    if (error)
        throw FileError("\"" + folder.string() + "\": " + error.message());
    if (!fs::is_directory(real))
        throw FileError("\"" + folder.string() + "\" is not a folder");
    return scan(real, volumeName, options);
}

} // namespace velmora::tools
