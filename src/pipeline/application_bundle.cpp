#include "pipeline/application_bundle.h"

#include "pipeline/clean_name.h"
#include "pipeline/text.h"
#include "platform/file_tree.h"
#include "render/bundle_info.h"

#include <algorithm>
#include <system_error>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

/// The absolute path without a separator or "." at the end; links on the way stay, as the next build may find
/// another folder behind them.
fs::path absolutePath(const fs::path& path)
{
    const fs::path whole = fs::absolute(path);
    std::error_code error;
    if (std::find(whole.begin(), whole.end(), "..") != whole.end()) // what it means depends on the links before it
        return fs::weakly_canonical(whole, error);
    const fs::path normal = whole.lexically_normal();
    return normal.has_filename() ? normal : normal.parent_path();
}

/// What is copied into an image must be the application, and not a link to it.
fs::path realFolder(const fs::path& path)
{
    std::error_code error;
    const fs::path folder = fs::is_symlink(fs::symlink_status(path, error)) ? fs::canonical(path, error) : path;
    if (error || !fs::exists(folder, error))
        throw FileError("The application \"" + path.string() + "\" does not exist.");
    if (!fs::exists(folder / "Contents" / "Info.plist", error))
        throw FileError("\"" + path.string() + "\" is not an application: it has no Contents/Info.plist.");
    return folder;
}

std::string stem(const std::string& fileName)
{
    constexpr std::string_view extension = ".app";
    return fileName.ends_with(extension) ? fileName.substr(0, fileName.size() - extension.size()) : fileName;
}

std::string firstOf(std::initializer_list<std::string> texts)
{
    for (const std::string& text : texts) {
        if (!text.empty())
            return text;
    }
    return {};
}

} // namespace

ApplicationBundle readApplicationBundle(const fs::path& path)
{
    const fs::path given = absolutePath(path);
    ApplicationBundle result{.folder = realFolder(given), .fileName = given.filename().string()};
    const diskimage::Plist info = readBundleInfo(result.folder);
    result.name = firstOf({cleanName(bundleText(info, "CFBundleDisplayName")),
                           cleanName(bundleText(info, "CFBundleName")), cleanName(stem(result.fileName)), "Untitled"});
    result.version = firstOf(
        {trimmed(bundleText(info, "CFBundleShortVersionString")), trimmed(bundleText(info, "CFBundleVersion"))});
    result.iconFile = bundleIconFile(result.folder, info);
    if (const std::string icon = bundleText(info, "CFBundleIconFile"); !icon.empty() && !result.iconFile)
        result.warnings.push_back("“" + result.fileName + "” names the icon file “" + icon +
                                  "”, which is not in it; the volume gets no icon of its own.");
    return result;
}

} // namespace velmora
