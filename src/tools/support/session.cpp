#include "tools/support/session.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/names.h"
#include "platform/file_tree.h"
#include "platform/mounts.h"
#include "tools/support/owner_process.h"
#include "tools/support/session_record.h"

#include <QFile>
#include <QLockFile>

#include <algorithm>
#include <stdexcept>

namespace fs = std::filesystem;

namespace velmora::tools
{

namespace
{

constexpr unsigned firstDevice = 4; // lower ones are a Mac's own disks
constexpr int lockPatienceMs = 30'000;
/// Bytes; a file system takes 255, and " 2" may have to be appended.
constexpr std::size_t longestMountName = 200;
constexpr std::size_t longestFileName = 255;
constexpr std::uint64_t recordLimit = 64 * 1024;
constexpr std::string_view recordSuffix = ".session";
/// How the build driver names its scratch folders: an image in one belongs to the build that attached it.
constexpr std::string_view scratchPrefix = "velmora-build-";

std::string lockName(const fs::path& path)
{
    return path.string() + ".lock";
}

std::unique_ptr<QLockFile> makeLock(const fs::path& path)
{
    auto lock = std::make_unique<QLockFile>(QFile::decodeName(lockName(path).c_str()));
    // A lock is stale when its process is gone, never for its age.
    lock->setStaleLockTime(0);
    return lock;
}

fs::path mountsFolder()
{
    return Mounts::stateFolder() / "Volumes";
}

fs::path recordPath(const fs::path& folder, const Session& session)
{
    return folder / ("disk" + std::to_string(session.device) + std::string(recordSuffix));
}

/// Whether two mount names are one to a volume that folds case.
bool sameName(const std::string& a, const std::string& b)
{
    try {
        return diskimage::hfs::compareNames(diskimage::hfs::storedName(a), diskimage::hfs::storedName(b)) == 0;
    } catch (const diskimage::DiskImageError&) {
        return a == b;
    }
}

/// Whether a character would split a path, or a line of output.
bool isUnfit(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F || c == '/';
}

bool isLeftover(const Session& session)
{
    std::error_code error;
    if (!fs::is_regular_file(session.image, error))
        return true;
    const bool ofBuild = session.image.parent_path().filename().string().starts_with(scratchPrefix);
    return ofBuild && !isRunning(session.owner);
}

} // namespace

std::string Session::diskDevice() const
{
    return "/dev/disk" + std::to_string(device);
}
std::string Session::volumeDevice() const
{
    return slice == 0 ? diskDevice() : diskDevice() + "s" + std::to_string(slice);
}
std::string Session::mountPoint() const
{
    return "/Volumes/" + mountName;
}
fs::path Session::folder() const
{
    return Mounts::localPath(mountPoint());
}

SessionClaim::SessionClaim(std::unique_ptr<QLockFile> lock) : m_lock(std::move(lock)) {}
SessionClaim::~SessionClaim() = default;
SessionClaim::SessionClaim(SessionClaim&&) noexcept = default;

SessionStore::SessionStore() : m_folder(Mounts::stateFolder() / "sessions")
{
    fs::create_directories(m_folder);
    fs::create_directories(mountsFolder());
    m_lock = makeLock(m_folder / "store");
    if (!m_lock->tryLock(lockPatienceMs))
        throw std::runtime_error("the attached images are locked by another process (" + lockName(m_folder / "store") +
                                 ")");
}

SessionStore::~SessionStore() = default;

std::vector<Session> SessionStore::all() const
{
    std::vector<Session> sessions;
    for (const std::string& name : listFolder(m_folder)) {
        if (!name.ends_with(recordSuffix))
            continue;
        std::optional<Session> session;
        try {
            session = readSessionRecord(readFile(m_folder / name, recordLimit));
        } catch (const FileError&) {
            continue; // as damaged as one with a wrong content
        }
        // A record under another device's name would stay behind when its session ends.
        if (session && recordPath(m_folder, *session).filename() == name)
            sessions.push_back(*std::move(session));
    }
    std::sort(sessions.begin(), sessions.end(), [](const Session& a, const Session& b) { return a.device < b.device; });
    return sessions;
}

std::optional<Session> SessionStore::find(std::string_view deviceOrMountPoint) const
{
    for (Session& session : all()) {
        if (deviceOrMountPoint == session.diskDevice() || deviceOrMountPoint == session.volumeDevice() ||
            deviceOrMountPoint == session.mountPoint())
            return std::move(session);
    }
    return std::nullopt;
}

std::optional<Session> SessionStore::findImage(const fs::path& image) const
{
    for (Session& session : all()) {
        std::error_code error;
        if (fs::equivalent(session.image, image, error))
            return std::move(session);
    }
    return std::nullopt;
}

void SessionStore::cleanUp()
{
    std::vector<Session> sessions = all();
    std::erase_if(sessions, [&](const Session& session) {
        if (!isLeftover(session) || !claim(session))
            return false;
        end(session);
        return true;
    });
    const auto isUsed = [&](const std::string& record) {
        return std::any_of(sessions.begin(), sessions.end(),
                           [&](const Session& s) { return recordPath(m_folder, s).filename() == record; });
    };
    for (const std::string& name : listFolder(m_folder)) {
        if (name.ends_with(recordSuffix) && !isUsed(name))
            removeTree(m_folder / name);
    }
    for (const std::string& name : listFolder(mountsFolder())) {
        if (std::none_of(sessions.begin(), sessions.end(), [&](const Session& s) { return s.mountName == name; }))
            removeTree(mountsFolder() / name);
    }
}

Session SessionStore::begin(Session session)
{
    const std::vector<Session> others = all();
    session.device = firstDevice;
    for (const Session& other : others) { // by device: the first gap is found
        if (other.device == session.device)
            ++session.device;
    }
    const auto isTaken = [&](const std::string& name) {
        return std::any_of(others.begin(), others.end(), [&](const Session& s) { return sameName(s.mountName, name); });
    };
    const std::string wanted = mountNameFor(session.volumeName);
    session.mountName = wanted;
    for (unsigned n = 1; isTaken(session.mountName); ++n)
        session.mountName = wanted + " " + std::to_string(n);

    // The folder first: if the record cannot be written, the next attach sweeps the folder away.
    removeTree(session.folder());
    fs::create_directory(session.folder());
    update(session);
    return session;
}

void SessionStore::update(const Session& session)
{
    const fs::path path = recordPath(m_folder, session);
    writeFileAtomically(path, writeSessionRecord(session));
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
}

void SessionStore::end(const Session& session)
{
    removeTree(session.folder());
    removeTree(recordPath(m_folder, session));
}

std::optional<SessionClaim> SessionStore::claim(const Session& session) const
{
    auto lock = makeLock(recordPath(m_folder, session));
    if (!lock->tryLock(0))
        return std::nullopt;
    return SessionClaim(std::move(lock));
}

bool isMountName(std::string_view name)
{
    return !name.empty() && name != "." && name != ".." && name.size() <= longestFileName &&
           std::none_of(name.begin(), name.end(), isUnfit);
}

std::string mountNameFor(const std::string& volumeName)
{
    std::string name = volumeName;
    std::replace_if(name.begin(), name.end(), isUnfit, '_');
    if (name.size() > longestMountName) {
        std::size_t end = longestMountName;
        while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80)
            --end; // not inside a character
        name.resize(end);
    }
    return isMountName(name) ? name : "Untitled";
}

} // namespace velmora::tools
