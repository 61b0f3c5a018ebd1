#include "diskimage/base/error.h"
#include "diskimage/hfs/editor.h"
#include "diskimage/hfs/volume.h"
#include "tools/hdiutil/verbs.h"
#include "tools/support/arguments.h"
#include "tools/support/image_volume.h"
#include "tools/support/local_file.h"
#include "tools/support/owner_process.h"
#include "tools/support/session.h"

#include <iomanip>
#include <iostream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace velmora::tools::hdiutil
{

using namespace diskimage;

namespace
{

/// One line of the table: three columns, the first two padded, separated by tabs.
void printRow(const std::string& device, const std::string& type, const std::string& mountPoint)
{
    std::cout << std::left << std::setw(20) << device << '\t' << std::setw(31) << type << '\t' << mountPoint << '\n';
}

void printDevices(const Session& session)
{
    if (session.slice != 0)
        printRow(session.diskDevice(), session.partitionScheme, "");
    printRow(session.volumeDevice(), session.slice != 0 ? "Apple_HFS" : "", session.mountPoint());
}

/// Reads the volume as it will be needed at detach, so that an image which cannot be changed fails here.
std::string nameOfWritableVolume(const fs::path& path, const DiskExtent& extent)
{
    const auto file = openLocalFile(path, OpenMode::readWrite);
    const auto volume = sliceOf(*file, extent.start * sectorSize, extent.count * sectorSize);
    return hfs::VolumeEditor(*volume).name();
}

Session describeImage(const fs::path& path, bool readOnly, bool readWrite)
{
    const ImageVolume opened = openImageVolume(path);
    const bool isRaw = opened.image->kind() == udif::ImageKind::raw;
    if (readWrite && !isRaw)
        throw std::runtime_error("\"" + path.string() + "\" is in the format " + opened.image->formatCode() +
                                 " and cannot be attached for writing; convert it to UDRW first");
    Session session;
    session.image = path;
    session.slice = opened.place.slice;
    session.partitionScheme = opened.place.scheme;
    session.access = readOnly || !isRaw ? Access::readOnly : Access::readWrite;
    session.volumeName = session.access == Access::readWrite ? nameOfWritableVolume(path, opened.place.extent)
                                                             : hfs::Volume(*opened.volume).info().name;
    session.owner = parentProcess();
    return session;
}

} // namespace

int attach(std::span<const std::string> arguments, const StopToken&)
{
    static constexpr OptionSpec specs[] = {{"-readwrite"}, {"-readonly"},   {"-noverify"},
                                           {"-verify"},    {"-noautoopen"}, {"-nobrowse"}};
    const Arguments given(arguments, specs, 1, 1);
    const bool readOnly = given.has("-readonly");
    if (readOnly && given.has("-readwrite"))
        throw UsageError("options -readonly and -readwrite exclude each other");

    std::error_code error;
    const fs::path image = fs::canonical(given.operands().front(), error);
    if (error)
        throw std::runtime_error("\"" + given.operands().front() + "\": " + error.message());
    Session session = describeImage(image, readOnly, given.has("-readwrite"));

    SessionStore store;
    store.cleanUp();
    if (const auto attached = store.findImage(image)) {
        if (attached->access != session.access)
            throw std::runtime_error("resource busy: \"" + image.string() + "\" is attached as " +
                                     attached->diskDevice());
        session = *attached;
    } else {
        session = store.begin(session);
    }
    printDevices(session);
    return 0;
}

int info(std::span<const std::string> arguments, const StopToken&)
{
    Arguments(arguments, {}, 0, 0);
    for (const Session& session : SessionStore().all()) {
        std::cout << "================================================\n"
                  << "image-path      : " << session.image.string() << '\n'
                  << "writeable       : " << (session.access == Access::readWrite ? "TRUE" : "FALSE") << '\n';
        printDevices(session);
    }
    return 0;
}

} // namespace velmora::tools::hdiutil
