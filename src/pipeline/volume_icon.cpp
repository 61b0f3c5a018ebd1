#include "pipeline/volume_icon.h"

#include "pipeline/build_error.h"
#include "pipeline/icon_maker.h"
#include "platform/file_tree.h"

#include <QString>

#include <filesystem>
#include <system_error>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

constexpr std::uint64_t maximumIconSize = std::uint64_t{64} * 1024 * 1024;

bool isIconFile(const std::string& path)
{
    return QString::fromStdString(fs::path(path).extension().string()).toLower() == ".icns";
}

std::string readIconFile(const std::string& source)
{
    std::error_code ignored;
    if (!fs::is_regular_file(source, ignored)) // a pipe would never end
        throw FileError("“" + source + "” is not a file.");
    return readFile(source, maximumIconSize);
}

bool looksLikeIconFile(const std::string& bytes)
{
    return bytes.starts_with("icns");
}

std::string unlikeIconFile(const std::string& source)
{
    return "The volume icon “" + source + "” does not look like an icon file.";
}

std::string unreadablePicture(const std::string& source)
{
    return "The volume icon “" + source + "” is not a picture that can be read.";
}

void copyIcon(BuildRun& run, const std::string& source, const fs::path& destination)
{
    const std::string icon = readIconFile(source);
    std::error_code ignored;
    if (fs::exists(fs::symlink_status(destination, ignored)))
        throw FileError("the volume has an entry of that name already.");
    if (!looksLikeIconFile(icon))
        run.warn(unlikeIconFile(source));
    writeFile(destination, icon);
}

/// `destination` is a path as the tools know it.
void placeIcon(BuildRun& run, const std::string& picturePath, const std::string& destination)
{
    const fs::path local = run.environment().mountPath(destination);
    std::error_code ignored;
    if (fs::is_symlink(fs::symlink_status(local, ignored)))
        removeTree(local); // an entry of the project must not lead the icon out of the volume
    if (isIconFile(picturePath))
        copyIcon(run, picturePath, local);
    else if (const PicturePtr picture = readPicture(QString::fromStdString(picturePath)))
        IconMaker::writeICNS(run, *picture, destination);
    else
        run.warn(unreadablePicture(picturePath));
}

} // namespace

std::optional<std::string> volumeIconFault(const std::string& picturePath)
{
    if (!isIconFile(picturePath))
        return readPicture(QString::fromStdString(picturePath)) ? std::nullopt
                                                                : std::optional(unreadablePicture(picturePath));
    try {
        return looksLikeIconFile(readIconFile(picturePath)) ? std::nullopt : std::optional(unlikeIconFile(picturePath));
    } catch (const FileError& error) {
        return std::string("The volume icon could not be set: ") + error.what();
    }
}

void setVolumeIcon(BuildRun& run, const std::string& picturePath, const std::string& mountPoint)
{
    try {
        placeIcon(run, picturePath, (mountPoint + "/").append(volumeIconFile));
    } catch (const BuildError&) {
        throw; // a stop
    } catch (const std::exception& error) {
        run.warn(std::string("The volume icon could not be set: ") + error.what());
    }
    run.warnUnlessOk(run.tool("/usr/bin/SetFile", {"-a", "C", mountPoint}, Echo::silent),
                     "The volume could not be marked as having an icon of its own");
}

} // namespace velmora
