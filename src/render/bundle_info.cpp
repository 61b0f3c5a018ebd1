#include "render/bundle_info.h"

#include "diskimage/base/error.h"
#include "platform/file_tree.h"

#include <algorithm>
#include <system_error>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

constexpr std::uint64_t largestInfoFile = 16 << 20;
constexpr std::string_view iconKey = "CFBundleIconFile";

fs::path infoFile(const fs::path& bundle)
{
    return bundle / "Contents" / "Info.plist";
}

[[noreturn]] void throwLeadsOut(const fs::path& bundle, const std::string& name)
{
    throw FileError("\"" + infoFile(bundle).string() + "\": the icon file that " + std::string(iconKey) + " names, \"" +
                    name + "\", leads out of the bundle.");
}

bool staysBelow(const fs::path& relative)
{
    return relative.is_relative() && std::find(relative.begin(), relative.end(), "..") == relative.end();
}

} // namespace

diskimage::Plist readBundleInfo(const fs::path& bundle)
{
    const fs::path path = infoFile(bundle);
    const std::string bytes = readFile(path, largestInfoFile);
    try {
        return diskimage::readPlist(diskimage::viewOf(bytes));
    } catch (const diskimage::DiskImageError& error) {
        throw FileError("\"" + path.string() + "\": " + error.what());
    }
}

std::string bundleText(const diskimage::Plist& info, std::string_view key)
{
    const diskimage::Plist* entry = info.find(key);
    const std::string* text = entry ? entry->as<std::string>() : nullptr;
    return text ? *text : std::string();
}

std::optional<fs::path> bundleIconFile(const fs::path& bundle, const diskimage::Plist& info)
{
    const std::string name = bundleText(info, iconKey);
    if (name.empty())
        return {};
    if (name.find('\0') != name.npos || !staysBelow(name))
        throwLeadsOut(bundle, name);
    const fs::path resources = bundle / "Contents" / "Resources";
    // The extension may be left out, and a name may have a dot without one.
    for (const std::string& candidate : {name + ".icns", name}) {
        std::error_code ignored;
        const fs::path path = resources / candidate;
        if (!fs::is_regular_file(path, ignored))
            continue;
        if (!liesIn(bundle, path))
            throwLeadsOut(bundle, name);
        return path;
    }
    return {};
}

} // namespace velmora
