#include "pipeline/validation.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/names.h"
#include "pipeline/background_staging.h"
#include "pipeline/build_error.h"
#include "pipeline/image_size.h"
#include "pipeline/layout_script.h"
#include "pipeline/text.h"
#include "pipeline/whole_number.h"

#include <algorithm>
#include <limits>
#include <system_error>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

bool isReal(const DMGItem& item)
{
    return !item.isSymlink() && !item.hidden;
}

std::string element(const char* list, std::size_t index)
{
    return std::string(list) + "[" + std::to_string(index) + "].";
}

void checkContent(const DMGProject& project)
{
    if (trimmedBlanks(project.volumeName).empty())
        throw BuildError("Volume name cannot be empty.");
    if (std::none_of(project.items.begin(), project.items.end(), isReal))
        throw BuildError("Add at least one file or folder before building.");
    for (const DMGItem& item : project.items) {
        std::error_code ignored;
        if (isReal(item) && !fs::exists(item.sourcePath, ignored))
            throw BuildError("Missing source file:\n" + item.sourcePath);
    }
}

/// Everything else at the output path is none of ours to remove.
void checkOutput(const DMGProject& project, const fs::path& output)
{
    const std::string quoted = "“" + output.string() + "”";
    if (!output.has_filename())
        throw BuildError("The image's path " + quoted + " has no file name.");
    std::error_code ignored;
    const fs::file_type type = fs::symlink_status(output, ignored).type();
    if (type == fs::file_type::directory)
        throw BuildError("The image cannot be written to " + quoted + ": that is a folder.");
    if (fs::exists(fs::file_status(type)) && type != fs::file_type::regular && type != fs::file_type::symlink)
        throw BuildError("The image cannot be written to " + quoted + ": that is not a file.");
    for (const DMGItem& item : project.items) {
        if (isReal(item) && fs::equivalent(item.sourcePath, output, ignored))
            throw BuildError("The image would replace " + quoted + ", which is to be put into it.");
    }
}

/// NUL ends an argument or a path early: what was checked would not be what is used.
void checkText(const std::string& text, const std::string& field)
{
    if (text.find('\0') != std::string::npos)
        throw BuildError(field + ": the text holds a NUL character.");
    if (!isUtf8(text))
        throw BuildError(field + ": the text is not valid UTF-8.");
}

/// The name in UTF-16 as a volume holds it.
std::u16string checkName(const std::string& name, const std::string& field)
{
    checkText(name, field);
    try {
        return diskimage::hfs::storedName(name);
    } catch (const diskimage::DiskImageError& error) {
        throw BuildError(field + ": " + error.what());
    }
}

void checkVolumeName(const std::string& name)
{
    const std::u16string stored = checkName(name, "volumeName");
    const auto isControl = [](char16_t unit) { return unit < 0x20 || (unit >= 0x7F && unit < 0xA0); };
    if (std::any_of(stored.begin(), stored.end(), isControl))
        throw BuildError("volumeName: the name holds a control character.");
    if (name.find(':') != std::string::npos)
        throw BuildError("volumeName: a volume name cannot hold “:”.");
}

bool contains(const fs::path& folder, const fs::path& path)
{
    return !folder.empty() &&
           std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
}

void checkItems(const DMGProject& project, const fs::path& temporaryFolder)
{
    std::error_code ignored;
    const fs::path workplace = fs::weakly_canonical(temporaryFolder, ignored);
    for (std::size_t i = 0; i < project.items.size(); ++i) {
        const DMGItem& item = project.items[i];
        if (item.hidden)
            continue;
        const std::string field = element("items", i);
        checkName(item.displayName, field + "displayName");
        checkText(item.symlinkTarget, field + "symlinkTarget");
        if (item.isSymlink())
            continue;
        checkText(item.sourcePath, field + "sourcePath");
        if (fs::is_directory(fs::symlink_status(item.sourcePath, ignored)) &&
            contains(fs::canonical(item.sourcePath, ignored), workplace))
            throw BuildError(field + "sourcePath: the folder “" + item.sourcePath +
                             "” cannot be copied, because the image is put together inside it.");
    }
}

void checkTexts(const DMGProject& project)
{
    checkText(project.backgroundImagePath, "backgroundImagePath");
    checkText(project.volumeIconPath, "volumeIconPath");
    checkText(project.codeSignIdentity, "codeSignIdentity");
    checkText(project.notaryProfile, "notaryProfile");
}

void checkColor(const CodableColor& color, const std::string& field)
{
    for (const double component : {color.r, color.g, color.b, color.a})
        requireFinite(component, field);
}

void checkOverlays(const DMGProject& project)
{
    struct Number {
        const char* name;
        double value;
    };
    const auto require = [](const std::string& prefix, std::initializer_list<Number> numbers) {
        for (const Number& number : numbers)
            requireFinite(number.value, prefix + number.name);
    };
    for (std::size_t i = 0; i < project.overlayImages.size(); ++i) {
        const DMGOverlayImage& o = project.overlayImages[i];
        require(element("overlayImages", i), {{"x", o.x}, {"y", o.y}, {"width", o.width}, {"height", o.height}});
    }
    for (std::size_t i = 0; i < project.textOverlays.size(); ++i) {
        const DMGTextOverlay& t = project.textOverlays[i];
        const std::string prefix = element("textOverlays", i);
        require(prefix, {{"fontSize", t.fontSize},
                         {"shadowAngle", t.shadowAngle},
                         {"shadowOffset", t.shadowOffset},
                         {"shadowBlur", t.shadowBlur},
                         {"shadowOpacity", t.shadowOpacity},
                         {"x", t.x},
                         {"y", t.y},
                         {"width", t.width},
                         {"height", t.height}});
        checkColor(t.color, prefix + "color");
        checkColor(t.shadowColor, prefix + "shadowColor");
    }
}

void checkBackground(const DMGProject& project)
{
    requireFinite(project.gradientAngle, "gradientAngle");
    requireFinite(project.backgroundImageScale, "backgroundImageScale");
    requireFinite(project.backgroundImageOffsetX, "backgroundImageOffsetX");
    requireFinite(project.backgroundImageOffsetY, "backgroundImageOffsetY");
    checkColor(project.backgroundColor, "backgroundColor");
    checkColor(project.gradientStart, "gradientStart");
    checkColor(project.gradientEnd, "gradientEnd");
    if (!drawsBackground(project))
        return;
    const auto checkSide = [](double points, const std::string& field) {
        const int side = wholeNumber(points, field);
        if (side < 1)
            throw BuildError(field + ": the window is too small to have a content area.");
        if (side > std::numeric_limits<int>::max() / 2) // the picture is drawn at twice the size too
            throw BuildError(field + ": the value is too large.");
    };
    checkSide(project.contentSize().width, "windowWidth");
    checkSide(project.contentSize().height, "windowHeight");
}

void checkImageSize(const DMGProject& project)
{
    if (!project.imageSizeAutomatic && (project.manualSizeMB < 1 || project.manualSizeMB > maximumImageSizeMB))
        throw BuildError("manualSizeMB: the image size " + std::to_string(project.manualSizeMB) +
                         " MB is not between 1 and " + std::to_string(maximumImageSizeMB) + ".");
}

} // namespace

void validate(const DMGProject& project, const fs::path& output, const fs::path& temporaryFolder)
{
    checkContent(project);
    checkOutput(project, output);
    checkVolumeName(project.volumeName);
    checkItems(project, temporaryFolder);
    checkTexts(project);
    layoutScript(project, project.volumeName, {}); // refuses what the script cannot say
    checkBackground(project);
    checkOverlays(project);
    checkImageSize(project);
}

} // namespace velmora
