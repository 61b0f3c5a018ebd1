#include "pipeline/icon_maker.h"

#include "pipeline/scratch_folder.h"
#include "platform/file_tree.h"

#include <QImage>

#include <string_view>

namespace velmora::IconMaker
{
namespace
{

struct IconFile {
    std::string_view name;
    int pixels;
};
constexpr IconFile iconFiles[] = {
    {"icon_16x16.png", 16},    {"icon_16x16@2x.png", 32},     {"icon_32x32.png", 32},    {"icon_32x32@2x.png", 64},
    {"icon_128x128.png", 128}, {"icon_128x128@2x.png", 256},  {"icon_256x256.png", 256}, {"icon_256x256@2x.png", 512},
    {"icon_512x512.png", 512}, {"icon_512x512@2x.png", 1024},
};

constexpr int pointsPerInch = 72;

} // namespace

std::optional<QByteArray> pngData(const Picture& picture, int pixels)
{
    if (pixels <= 0 || picture.pixels.isNull())
        return {};
    // Smooth scaling averages whole areas, which strong reduction needs.
    const QImage square = picture.pixels.scaled(pixels, pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                              .convertToFormat(QImage::Format_RGBA8888);
    QByteArray png = square.isNull() ? QByteArray() : encodePng(square, pointsPerInch);
    if (png.isEmpty())
        return {};
    return png;
}

void writeICNS(BuildRun& run, const Picture& picture, const std::string& destination)
{
    const BuildEnvironment& environment = run.environment();
    try {
        const ScratchFolder iconset(environment.temporaryFolder, "icon-", environment.uuid(), ".iconset");
        for (const IconFile& file : iconFiles) {
            if (const auto png = pngData(picture, file.pixels))
                writeFile(iconset.path() / file.name, {png->constData(), static_cast<std::size_t>(png->size())});
        }
        run.warnUnlessOk(
            run.tool("/usr/bin/iconutil", {"-c", "icns", iconset.path().string(), "-o", destination}, Echo::silent),
            "The volume icon could not be made");
    } catch (const FileError& error) {
        run.warn(std::string("The volume icon could not be made: ") + error.what());
    }
}

} // namespace velmora::IconMaker
