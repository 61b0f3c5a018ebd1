#include "diskimage/base/error.h"
#include "diskimage/hfs/editor.h"
#include "platform/file_tree.h"
#include "tools/hdiutil/verbs.h"
#include "tools/support/arguments.h"
#include "tools/support/image_volume.h"
#include "tools/support/local_file.h"
#include "tools/support/session.h"
#include "tools/support/source_tree.h"
#include "tools/support/times.h"

#include <iostream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace velmora::tools::hdiutil
{

using namespace diskimage;

namespace
{

/// Finds a session and claims it, so that it is written only once. Throws std::runtime_error.
std::pair<Session, SessionClaim> claimSession(const std::string& deviceOrMountPoint)
{
    const SessionStore store;
    const auto session = store.find(deviceOrMountPoint);
    if (!session)
        throw std::runtime_error("no image is attached as \"" + deviceOrMountPoint + "\"");
    auto claim = store.claim(*session);
    if (!claim)
        throw std::runtime_error("resource busy: " + session->diskDevice() + " is being detached by another process");
    return {*session, *std::move(claim)};
}

/// What was put into the mount folder. A folder that is gone holds nothing.
hfs::Entry collectContent(const Session& session)
{
    std::error_code error;
    if (!fs::exists(session.folder(), error))
        return {};
    return scanFolder(session.folder(), session.volumeName, {.latestTime = sourceDateEpoch()});
}

void writeIntoImage(const Session& session, const hfs::Entry& content)
{
    const auto file = openLocalFile(session.image, OpenMode::readWrite);
    if (udif::Image(*file).kind() != udif::ImageKind::raw)
        throw std::runtime_error("\"" + session.image.string() + "\" has been replaced by another image");
    const DiskExtent extent = findHfsVolume(*file).extent;
    const auto volume = sliceOf(*file, extent.start * sectorSize, extent.count * sectorSize);
    hfs::VolumeEditor editor(*volume);
    for (const hfs::Entry& entry : content.children)
        editor.put("/", entry);
    editor.changeFinderFlags("/", session.flagsToSet, session.flagsToClear);
    editor.commit(currentTime());
    syncToDisk(session.image);
}

} // namespace

int detach(std::span<const std::string> arguments, const StopToken& stop)
{
    static constexpr OptionSpec specs[] = {{"-force"}};
    const Arguments given(arguments, specs, 1, 1);
    const auto [session, claim] = claimSession(given.operands().front());

    const hfs::Entry content = collectContent(session);
    const bool isChanged = !content.children.empty() || session.flagsToSet != 0 || session.flagsToClear != 0;
    if (isChanged && session.access == Access::readOnly && !given.has("-force"))
        throw std::runtime_error("content was put into " + session.mountPoint() +
                                 ", but the image is attached read-only; -force gives that content up");
    throwIfStopped(stop);
    // From here on a signal no longer ends the program: a volume is written as a whole.
    if (isChanged && session.access == Access::readWrite)
        writeIntoImage(session, content);
    SessionStore().end(session);
    std::cout << "\"disk" << session.device << "\" ejected.\n";
    return 0;
}

} // namespace velmora::tools::hdiutil
