#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// File operations that the standard library does not offer or reports without a readable reason.
namespace velmora
{

/// A failed file operation, in a sentence that names the file and the reason.
class FileError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

enum class FileKind { regular, folder, symlink, other };

/// What one entry of the file system is, links not followed.
struct FileStatus {
    FileKind kind = FileKind::other;
    std::uint32_t mode = 0; ///< permission bits (07777)
    std::uint64_t size = 0; ///< bytes; for a link the length of its target
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t modifiedSeconds = 0; ///< Unix time
    std::int64_t modifiedNanoseconds = 0;
    std::string linkTarget{};
    /// Extended attributes by their name on the volume: "user.X" of Linux is "X" here.
    std::map<std::string, std::string> extendedAttributes{};
};

/// Describes one entry. Throws FileError.
FileStatus describe(const std::filesystem::path& path);

/// The names in a folder (or in the one that a link points to), sorted by bytes. Throws FileError.
std::vector<std::string> listFolder(const std::filesystem::path& folder);

/// Whether `path`, which need not exist, is `folder` or lies in it, links followed. A folder that is not there holds
/// nothing.
bool liesIn(const std::filesystem::path& folder, const std::filesystem::path& path);

/// What copyTree could not carry over although the content is complete.
struct CopyReport {
    std::vector<std::string> warnings{}; ///< sentences for a person, naming the file
};

/// Copies a file, link or whole folder to `target`, which does not exist. Links are copied as links; permissions,
/// times and extended attributes are carried over; a folder's mode is set after its contents. Sockets, pipes and
/// devices, and a copy that fails half-way, are a FileError naming the file. `stopped` is asked now and then: true ends
/// the copy with a FileError. What was copied until an error stays for the caller to remove.
CopyReport copyTree(const std::filesystem::path& source, const std::filesystem::path& target,
                    const std::function<bool()>& stopped = {});

/// Removes a file, a link (not what it points to) or a whole folder, read-only folders included. An entry that does not
/// exist is no error. Throws FileError.
void removeTree(const std::filesystem::path& path);

/// Writes a whole file through a temporary one in the same folder and a rename: a reader sees the old content or the
/// new one. A link at `path` is replaced, not followed, unless it leads to a device or a pipe: these are refused, as
/// they are themselves. The mode is 0644 less the user's umask. Throws FileError; the old file stays then.
void writeFileAtomically(const std::filesystem::path& path, std::string_view bytes);
/// Writes a whole file in place, emptied first; a link is followed. Anything but an ordinary file is refused. Throws
/// FileError.
void writeFile(const std::filesystem::path& path, std::string_view bytes);
/// Whether `path` leads to a pipe or a character device (a terminal, the null device): something to write to, which is
/// not to be replaced.
bool isStream(const std::filesystem::path& path);
/// Writes to such a one. Throws FileError, also when nobody reads from the pipe.
void writeToStream(const std::filesystem::path& path, std::string_view bytes);
/// Reads a whole ordinary file of at most `limit` bytes. Throws FileError.
std::string readFile(const std::filesystem::path& path, std::uint64_t limit);
/// Makes what was written to the file or folder lasting.
void syncToDisk(const std::filesystem::path& path);

} // namespace velmora
