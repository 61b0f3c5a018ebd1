#include "cli/inspect_command.h"

#include "cli/opened_image.h"
#include "cli/result_file.h"
#include "diskimage/base/error.h"
#include "pipeline/text.h"
#include "render/picture.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace velmora::cli
{
using namespace diskimage;

namespace
{

/// A name as it may be shown on a terminal: names in an image come from strangers and may hold control sequences.
std::string shown(const std::string& name)
{
    return withoutControls(name, '?');
}

std::string hex(std::uint32_t value)
{
    char text[16];
    std::snprintf(text, sizeof text, "%08X", value);
    return text;
}

void printChecksums(const OpenedImage& opened)
{
    for (const udif::ChecksumResult& result : udif::verifyChecksums(*opened.file, opened.image))
        std::cout << "  CRC-32 " << hex(result.stored) << (result.ok() ? "  " : "  WRONG  ") << shown(result.name)
                  << '\n';
}

void printWindow(const finder::WindowLayout& layout)
{
    std::cout << "Window      " << layout.right - layout.left << " x " << layout.bottom - layout.top << " points at ("
              << layout.left << ", " << layout.top << ")\n"
              << "Icons       " << layout.iconSize << " points, labels " << layout.textSize << " points "
              << (layout.labelOnBottom ? "below" : "to the right") << '\n'
              << "Background  " << (layout.backgroundPath ? shown(*layout.backgroundPath) : "none") << '\n';
    for (const finder::ItemPosition& item : layout.positions)
        std::cout << "  (" << item.x << ", " << item.y << ")  " << shown(item.name) << '\n';
}

void printSummary(const OpenedImage& opened)
{
    const hfs::VolumeInfo& info = opened.volume.info();
    std::cout << "Format      " << opened.image.formatCode() << ", " << opened.file->size() << " bytes, disk of "
              << opened.image.disk().size() << " bytes\n";
    if (opened.image.kind() == udif::ImageKind::udif)
        printChecksums(opened);
    const std::uint64_t blockSize = info.blockSize;
    std::cout << "Volume      \"" << shown(info.name) << "\", HFS+" << (info.caseSensitive ? ", case-sensitive" : "")
              << ", " << info.totalBlocks * blockSize << " bytes, " << info.freeBlocks * blockSize << " free\n"
              << "Content     " << info.fileCount << " files, " << info.folderCount << " folders\n"
              << "Icon        "
              << ((opened.volume.root().finderFlags() & hfs::finderFlagHasCustomIcon) ? "own" : "none") << '\n';
    if (const auto read = opened.layout())
        printWindow(read->layout);
    else
        std::cout << "Window      nothing stored\n";
}

void printTree(const hfs::Entry& folder, const std::string& path)
{
    for (const hfs::Entry& entry : folder.children) {
        const char kind = entry.kind == hfs::EntryKind::folder    ? 'd'
                          : entry.kind == hfs::EntryKind::symlink ? 'l'
                                                                  : '-';
        char columns[64];
        std::snprintf(columns, sizeof columns, "%c %04o %12llu %8u  ", kind, entry.mode,
                      static_cast<unsigned long long>(entry.dataSize), entry.id);
        const std::string own = path + "/" + entry.name;
        std::cout << columns << shown(own);
        if (entry.kind == hfs::EntryKind::symlink)
            std::cout << " -> " << shown(entry.linkTarget);
        std::cout << '\n';
        printTree(entry, own);
    }
}

const hfs::Entry& required(const OpenedImage& opened, const std::string& path)
{
    const hfs::Entry* entry = opened.volume.find(path);
    if (entry == nullptr)
        throw DiskImageError("\"" + path + "\" is not in the volume");
    if (entry->kind != hfs::EntryKind::file)
        throw DiskImageError("\"" + path + "\" is not a file");
    return *entry;
}

void writeContent(const OpenedImage& opened, const std::string& path)
{
    const hfs::Entry& entry = required(opened, path);
    if (entry.dataSize == 0)
        return;
    const auto data = entry.openData();
    Bytes buffer(1024 * 1024);
    for (std::uint64_t at = 0; at < entry.dataSize; at += buffer.size()) {
        buffer.resize(static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), entry.dataSize - at)));
        data->read(at, buffer);
        if (std::fwrite(buffer.data(), 1, buffer.size(), stdout) != buffer.size())
            throw DiskImageError("Cannot write to standard output");
    }
}

/// The picture with the most pixels: a background holds one rendering for each kind of screen.
QImage largestPicture(const Bytes& bytes)
{
    QByteArray content(reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size()));
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    QImage largest;
    constexpr int mostPictures = 8; // a hostile file may claim millions
    const int count = std::clamp(reader.imageCount(), 1, mostPictures);
    for (int i = 0; i < count; ++i) {
        if (i > 0 && !reader.jumpToImage(i))
            break;
        const QImage image = reader.read();
        if (image.width() > largest.width())
            largest = image;
    }
    return largest;
}

void writeBackground(const OpenedImage& opened, const std::string& target)
{
    const auto read = opened.layout();
    if (!read || !read->layout.backgroundPath)
        throw DiskImageError("The window has no background picture");
    constexpr std::uint64_t pictureLimit = 512 * 1024 * 1024;
    const hfs::Entry& entry = required(opened, *read->layout.backgroundPath);
    const QImage picture = largestPicture(opened.content(entry, pictureLimit));
    if (picture.isNull())
        throw DiskImageError("The background picture " + *read->layout.backgroundPath + " cannot be decoded");
    const double width = read->layout.right - read->layout.left;
    const int dpi = width > 0 && picture.width() > width ? 144 : 72;
    const QByteArray png = encodePng(picture, dpi);
    writeResult(target, std::string_view(png.constData(), static_cast<std::size_t>(png.size())));
}

} // namespace

int runInspect(const InspectOptions& options)
{
    try {
        const OpenedImage opened(options.image);
        switch (options.mode) {
        case InspectMode::summary:
            printSummary(opened);
            break;
        case InspectMode::list:
            printTree(opened.volume.root(), "");
            break;
        case InspectMode::cat:
            writeContent(opened, options.argument);
            break;
        case InspectMode::background:
            writeBackground(opened, options.argument);
            break;
        }
        std::cout.flush();
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "velmora-inspect: " << options.image << ": " << shown(error.what()) << '\n';
        return 1;
    }
}

} // namespace velmora::cli
