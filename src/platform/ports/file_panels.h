#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora
{

/// A kind of file that a panel offers: a name for a person and file name extensions without the dot.
struct FileType {
    std::string name{};
    std::vector<std::string> extensions{}; ///< empty means every file
    bool operator==(const FileType&) const = default;
};

struct OpenPanelRequest {
    std::string message{};
    std::vector<FileType> types{};
    bool multiple = false;
    bool folders = false; ///< folders (bundles among them) may be chosen as well
    bool operator==(const OpenPanelRequest&) const = default;
};

struct SavePanelRequest {
    std::string proposedName{}; ///< a file name that is valid on this system, with extension
    FileType type{};
    /// Added to a chosen name that lacks it, before the panel asks about an existing file. Without the dot.
    std::string extension{};
    bool operator==(const SavePanelRequest&) const = default;
};

/// Asks a person for files.
class FilePanels
{
public:
    virtual ~FilePanels() = default;
    /// Absolute paths, at most one unless `multiple`; empty when the person gave up.
    virtual std::vector<std::filesystem::path> open(const OpenPanelRequest& request) = 0;
    /// The absolute path to write to, or nothing when the person gave up. Overwriting has been confirmed.
    virtual std::optional<std::filesystem::path> save(const SavePanelRequest& request) = 0;
};

} // namespace velmora
