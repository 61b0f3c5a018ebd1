#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QLockFile;

/// Attached images. A session is a record in a file and a folder in which content for the image is collected; both
/// live below Mounts::stateFolder().
namespace velmora::tools
{

enum class Access { readWrite, readOnly };

/// What is known of one attached image.
struct Session {
    std::filesystem::path image{}; ///< absolute path of the image's file
    unsigned device = 0;           ///< the N of /dev/diskN, unique among the sessions
    unsigned slice = 0;            ///< the M of /dev/diskNsM, 0 when the whole disk is the volume
    std::string partitionScheme{}; ///< "GUID_partition_scheme", …; empty when the whole disk is the volume
    std::string mountName{};       ///< last component of the mount point, unique among the sessions
    std::string volumeName{};      ///< the volume's own name
    Access access = Access::readWrite;
    std::uint16_t flagsToSet = 0; ///< Finder flags of the root folder, set at detach
    std::uint16_t flagsToClear = 0;
    std::string owner{}; ///< the process that had it attached (owner_process.h)
    bool operator==(const Session&) const = default;

    [[nodiscard]] std::string diskDevice() const;       ///< "/dev/disk4"
    [[nodiscard]] std::string volumeDevice() const;     ///< "/dev/disk4s1"
    [[nodiscard]] std::string mountPoint() const;       ///< "/Volumes/NAME"
    [[nodiscard]] std::filesystem::path folder() const; ///< the local folder behind the mount point
};

/// Keeps a session from being ended by somebody else; given back by the destructor.
class SessionClaim
{
public:
    explicit SessionClaim(std::unique_ptr<QLockFile> lock);
    ~SessionClaim();
    SessionClaim(SessionClaim&&) noexcept;

private:
    std::unique_ptr<QLockFile> m_lock;
};

/// The user's sessions, locked against other processes while the object lives: keep it short. Every error is a
/// std::runtime_error.
class SessionStore
{
public:
    /// Waits for the lock, and gives up with an error after half a minute.
    SessionStore();
    ~SessionStore();
    SessionStore(const SessionStore&) = delete;
    SessionStore& operator=(const SessionStore&) = delete;

    /// All sessions, by device. Records that cannot be understood are left out.
    [[nodiscard]] std::vector<Session> all() const;
    /// The session with this device, volume device ("/dev/disk4", "/dev/disk4s1") or mount point, or nothing.
    [[nodiscard]] std::optional<Session> find(std::string_view deviceOrMountPoint) const;
    /// The session of this image file, or nothing.
    [[nodiscard]] std::optional<Session> findImage(const std::filesystem::path& image) const;

    /// Removes damaged records, sessions whose image is gone or was left by a build that died, and folders without a
    /// session.
    void cleanUp();
    /// Begins a session: gives it the next free device and a mount name made from its volume name, and makes its
    /// (empty) folder.
    Session begin(Session session);
    /// Stores what changed in a session.
    void update(const Session& session);
    /// Ends a session: removes its folder and record.
    void end(const Session& session);
    /// Claims a session, or nothing when another process has it.
    [[nodiscard]] std::optional<SessionClaim> claim(const Session& session) const;

private:
    std::filesystem::path m_folder;
    std::unique_ptr<QLockFile> m_lock;
};

/// The name under which a volume is mounted when no other has it: the volume's, made fit for a folder's name and for a
/// line of output.
std::string mountNameFor(const std::string& volumeName);

/// Whether a text can be the last component of a mount point.
bool isMountName(std::string_view name);

} // namespace velmora::tools
