#include "platform/claimed_path.h"

#include "platform/file_descriptor.h"
#include "platform/file_error.h"

#include <algorithm>
#include <random>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace velmora
{
namespace
{

/// Hidden ones have random names, all others UUIDs: twelve letters after another prefix may be anybody's word.
constexpr std::string_view hiddenPrefix = ".velmora-";
constexpr std::size_t randomNameLength = 12;
constexpr mode_t fileMode = 0644; ///< less what the user's umask takes away
constexpr mode_t folderMode = 0700;
/// Somebody who took a new file for an abandoned one has removed it after so many attempts.
constexpr int attempts = 50;
constexpr useconds_t pauseBetweenAttempts = 10'000;

enum class Lock { taken, busy, unavailable };

Lock lock(const FileDescriptor& file)
{
    if (retryInterrupted([&] { return ::flock(file.get(), LOCK_EX | LOCK_NB); }) == 0)
        return Lock::taken;
    return errno == EWOULDBLOCK ? Lock::busy : Lock::unavailable;
}

bool isRemoved(const FileDescriptor& file)
{
    struct stat status {
    };
    return ::fstat(file.get(), &status) != 0 || status.st_nlink == 0;
}

FileDescriptor openNew(const std::filesystem::path& path)
{
    return FileDescriptor(retryInterrupted(
        [&] { return ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, fileMode); }));
}

FileDescriptor openNewFolder(const std::filesystem::path& path)
{
    if (::mkdir(path.c_str(), folderMode) != 0)
        return {};
    // The umask may have taken from the user what the folder is for.
    static_cast<void>(::chmod(path.c_str(), folderMode));
    return FileDescriptor(
        retryInterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); }));
}

/// Between making and locking, another process may take the new thing for an abandoned one: then it is made again.
ClaimedPath claimNew(const std::filesystem::path& path, FileDescriptor (*make)(const std::filesystem::path&),
                     const char* action, const std::filesystem::path& goal)
{
    requireUsable(action, goal.string());
    for (int attempt = 0;; ++attempt) {
        FileDescriptor file = make(path);
        const int reason = errno;
        if (file) {
            const Lock state = lock(file);
            if (state == Lock::unavailable)
                return {path, nullptr};
            if (state == Lock::taken && !isRemoved(file))
                return {path, std::make_shared<FileDescriptor>(std::move(file))};
        } else if (attempt == 0 || (reason != EEXIST && reason != ENOENT)) {
            throwFileError(action, goal.string(), reason);
        }
        if (attempt == attempts)
            throwFileError(action, goal.string(), EEXIST);
        ::usleep(pauseBetweenAttempts);
    }
}

bool isRandomName(std::string_view text)
{
    const auto isLetterOrDigit = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z'); };
    return text.size() == randomNameLength && std::all_of(text.begin(), text.end(), isLetterOrDigit);
}

bool isUuid(std::string_view text)
{
    constexpr std::string_view form = "00000000-0000-0000-0000-000000000000";
    const auto fits = [](char c, char place) {
        return place == '-' ? c == '-' : (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
    };
    return text.size() == form.size() && std::equal(text.begin(), text.end(), form.begin(), fits);
}

bool isTemporary(std::string_view name, std::string_view prefix, std::string_view suffix)
{
    if (name.size() < prefix.size() + suffix.size() || name.substr(0, prefix.size()) != prefix ||
        name.substr(name.size() - suffix.size()) != suffix)
        return false;
    const std::string_view middle = name.substr(prefix.size(), name.size() - prefix.size() - suffix.size());
    return isUuid(middle) || (prefix == hiddenPrefix && isRandomName(middle));
}

void removeIfAbandoned(const std::filesystem::path& path)
{
    const FileDescriptor file(
        retryInterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC); }));
    struct stat status {
    };
    if (!file || ::fstat(file.get(), &status) != 0 || status.st_uid != ::geteuid() ||
        (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) || lock(file) != Lock::taken)
        return;
    struct stat present {
    };
    if (::lstat(path.c_str(), &present) == 0 && present.st_ino == status.st_ino && present.st_dev == status.st_dev)
        removeTree(path);
}

/// Removes from `folder` what is named like these and nobody holds.
void removeAbandoned(const std::filesystem::path& folder, std::string_view prefix, std::string_view suffix = {})
{
    std::error_code ended;
    for (std::filesystem::directory_iterator entry(folder, ended); !ended && entry != std::filesystem::end(entry);
         entry.increment(ended)) {
        try {
            if (isTemporary(entry->path().filename().native(), prefix, suffix))
                removeIfAbandoned(entry->path());
        } catch (const std::exception&) {
            // It is not ours to complain about what somebody else left; it stays.
        }
    }
}

std::filesystem::path newPath(const std::filesystem::path& folder, const ClaimedName& name)
{
    removeAbandoned(folder, name.prefix, name.suffix);
    return folder / std::string(name.prefix).append(name.uuid).append(name.suffix);
}

std::string randomName()
{
    constexpr std::string_view characters = "0123456789abcdefghijklmnopqrstuvwxyz";
    std::random_device random;
    std::uniform_int_distribution<std::size_t> choice(0, characters.size() - 1);
    std::string name;
    for (std::size_t i = 0; i < randomNameLength; ++i)
        name += characters[choice(random)];
    return name;
}

std::filesystem::path newPathBeside(const std::filesystem::path& goal)
{
    const std::filesystem::path folder = goal.parent_path(); // of "name" it is the current one
    removeAbandoned(folder.empty() ? "." : folder, hiddenPrefix);
    return folder / std::string(hiddenPrefix).append(randomName());
}

} // namespace

ClaimedPath claimFile(const std::filesystem::path& folder, const ClaimedName& name)
{
    const std::filesystem::path path = newPath(folder, name);
    return claimNew(path, openNew, "write", path);
}

ClaimedPath claimFolder(const std::filesystem::path& folder, const ClaimedName& name)
{
    const std::filesystem::path path = newPath(folder, name);
    return claimNew(path, openNewFolder, "make", path);
}

ClaimedPath claimFileBeside(const std::filesystem::path& goal)
{
    return claimNew(newPathBeside(goal), openNew, "write", goal);
}

ClaimedPath claimFolderBeside(const std::filesystem::path& goal)
{
    return claimNew(newPathBeside(goal), openNewFolder, "make", goal);
}

} // namespace velmora
