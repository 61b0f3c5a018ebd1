#include "render/bundle_icon.h"

#include "diskimage/base/error.h"
#include "diskimage/base/property_list.h"

#include <QFile>
#include <QFileInfo>

#include <string>
#include <string_view>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

constexpr qint64 largestInfoFile = 16 << 20;

/// The icon file's name as the bundle states it, or empty.
std::string iconFileName(const fs::path& bundle)
{
    const QString path = QString::fromStdString((bundle / "Contents" / "Info.plist").string());
    const QFileInfo info(path);
    QFile file(path);
    if (!info.isFile() || info.size() > largestInfoFile || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    try {
        const diskimage::Plist plist = diskimage::readPlist(
            diskimage::viewOf(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size()))));
        const diskimage::Plist* entry = plist.find("CFBundleIconFile");
        const std::string* name = entry ? entry->as<std::string>() : nullptr;
        return name ? *name : std::string();
    } catch (const diskimage::DiskImageError&) {
        return {}; // a damaged bundle is shown with the standard icon
    }
}

bool isPlainName(const std::string& name)
{
    return !name.empty() && name != "." && name != ".." && name.find('/') == name.npos && name.find('\0') == name.npos;
}

} // namespace

PicturePtr bundleIcon(const fs::path& bundle)
{
    const std::string name = iconFileName(bundle);
    if (!isPlainName(name))
        return nullptr;
    const fs::path resources = bundle / "Contents" / "Resources";
    // The extension may be left out, and a name may have a dot without one.
    if (PicturePtr icon = readPicture(QString::fromStdString((resources / (name + ".icns")).string())))
        return icon;
    return readPicture(QString::fromStdString((resources / name).string()));
}

} // namespace velmora
