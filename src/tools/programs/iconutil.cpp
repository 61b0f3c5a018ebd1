#include "platform/claimed_path.h"
#include "platform/file_tree.h"
#include "platform/mounts.h"
#include "tools/pictures/icon_set.h"
#include "tools/support/arguments.h"
#include "tools/support/output_file.h"
#include "tools/support/tool_main.h"

#include <filesystem>
#include <stdexcept>

namespace
{

using namespace velmora;
using namespace velmora::tools;
namespace fs = std::filesystem;

constexpr const char* usage = "usage: iconutil -c icns NAME.iconset -o NAME.icns\n"
                              "       iconutil -c iconset NAME.icns -o NAME.iconset\n"
                              "Makes an icon file of a folder of PNG files, or the folder of an icon file.\n";
constexpr std::uint64_t iconFileLimit = 256 * 1024 * 1024;

void requireExtension(const fs::path& path, const char* extension)
{
    if (path.extension() != extension)
        throw UsageError("\"" + path.string() + "\" does not end in " + extension);
}

/// "a/b.iconset/" names the same folder as "a/b.iconset".
fs::path withoutTrailingSlash(const fs::path& path)
{
    return path.has_filename() ? path : path.parent_path();
}

void makeIconFile(const fs::path& iconSet, const fs::path& output)
{
    requireExtension(iconSet, ".iconset");
    const diskimage::Bytes icon = iconFileFromSet(iconSet);
    OutputFile target(output, Existing::replace);
    writeFile(target.temporaryPath(), diskimage::textOf(icon));
    target.commit();
}

void makeIconSet(const fs::path& iconFile, const fs::path& output)
{
    requireExtension(output, ".iconset");
    if (fs::exists(fs::symlink_status(output)))
        throw std::runtime_error("\"" + output.string() + "\": file exists");
    const std::string icon = readFile(iconFile, iconFileLimit);
    const ClaimedPath temporary = claimFolderBeside(output);
    const fs::path made = temporary.path / "iconset"; // with the mode that the user's umask leaves
    try {
        fs::create_directory(made);
        iconSetFromFile(diskimage::viewOf(icon), made);
        fs::rename(made, output);
    } catch (...) {
        removeTree(temporary.path);
        throw;
    }
    removeTree(temporary.path);
}

int run(const std::vector<std::string>& arguments, const StopToken&)
{
    static constexpr OptionSpec specs[] = {{"-c", 1}, {"-o", 1}};
    const Arguments given(arguments, specs, 1, 1);
    const std::string kind = given.require("-c");
    const fs::path input = withoutTrailingSlash(Mounts::localPath(given.operands().front()));
    const fs::path output = withoutTrailingSlash(Mounts::localPath(given.require("-o")));
    if (kind != "icns" && kind != "iconset")
        throw UsageError("\"" + kind + "\" is neither icns nor iconset");
    try {
        kind == "icns" ? makeIconFile(input, output) : makeIconSet(input, output);
    } catch (const UsageError&) {
        throw;
    } catch (const std::exception& error) {
        throw std::runtime_error("\"" + input.string() + "\": " + error.what());
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    return runTool(argc, argv, "iconutil", usage, run);
}
