#include "pipeline/validation.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/names.h"
#include "pipeline/background_staging.h"
#include "pipeline/image_size.h"
#include "pipeline/layout_script.h"
#include "pipeline/text.h"
#include "pipeline/whole_number.h"
#include "platform/file_tree.h"

#include <algorithm>
#include <limits>
#include <system_error>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

void checkContent(const DMGProject& project, Problems& problems)
{
    if (trimmedBlanks(project.volumeName).empty())
        problems.push_back({Severity::error, "volumeName", "Volume name cannot be empty."});
    if (std::none_of(project.items.begin(), project.items.end(), isReal))
        problems.push_back({Severity::error, "items", "Add at least one file or folder before building."});
    for (std::size_t i = 0; i < project.items.size(); ++i) {
        const DMGItem& item = project.items[i];
        std::error_code ignored;
        if (isReal(item) && !fs::exists(item.sourcePath, ignored))
            problems.push_back(
                {Severity::error, elementField("items", i, "sourcePath"), "Missing source file:\n" + item.sourcePath});
    }
}

/// Everything else at the output path is none of ours to remove.
void checkOutput(const DMGProject& project, const fs::path& output, Problems& problems)
{
    const auto report = [&](const std::string& message) { problems.push_back({Severity::error, "output", message}); };
    const std::string quoted = inQuotes(output.string());
    if (!output.has_filename())
        report("The image's path " + quoted + " has no file name.");
    std::error_code ignored;
    const fs::file_type type = fs::symlink_status(output, ignored).type();
    if (type == fs::file_type::directory)
        report("The image cannot be written to " + quoted + ": that is a folder.");
    else if (fs::exists(fs::file_status(type)) && type != fs::file_type::regular && type != fs::file_type::symlink)
        report("The image cannot be written to " + quoted + ": that is not a file.");
    for (const DMGItem& item : project.items) {
        if (isReal(item) && fs::equivalent(item.sourcePath, output, ignored))
            report("The image would replace " + quoted + ", which is to be put into it.");
    }
}

/// NUL ends an argument or a path early: what was checked would not be what is used.
void requireText(const std::string& text, const std::string& field)
{
    if (text.find('\0') != std::string::npos)
        throw BuildError(field, "the text holds a NUL character.");
    if (!isUtf8(text))
        throw BuildError(field, "the text is not valid UTF-8.");
}

/// The name in UTF-16 as a volume holds it.
std::u16string requireName(const std::string& name, const std::string& field)
{
    requireText(name, field);
    try {
        return diskimage::hfs::storedName(name);
    } catch (const diskimage::DiskImageError& error) {
        throw BuildError(field, error.what());
    }
}

void requireVolumeName(const std::string& name)
{
    const std::u16string stored = requireName(name, "volumeName");
    const auto isControl = [](char16_t unit) { return unit < 0x20 || (unit >= 0x7F && unit < 0xA0); };
    if (std::any_of(stored.begin(), stored.end(), isControl))
        throw BuildError("volumeName", "the name holds a control character.");
    if (name.find(':') != std::string::npos)
        throw BuildError("volumeName", "a volume name cannot hold “:”.");
}

void requireUsableSource(const DMGItem& item, const std::string& field, const fs::path& workplace)
{
    requireText(item.sourcePath, field);
    std::error_code ignored;
    if (fs::is_directory(fs::symlink_status(item.sourcePath, ignored)) && liesIn(item.sourcePath, workplace))
        throw BuildError(field, "the folder “" + item.sourcePath +
                                    "” cannot be copied, because the image is put together inside it.");
}

void checkItems(const DMGProject& project, const fs::path& temporaryFolder, Problems& problems)
{
    for (std::size_t i = 0; i < project.items.size(); ++i) {
        const DMGItem& item = project.items[i];
        if (item.hidden)
            continue;
        collect(problems, [&] { requireName(item.displayName, elementField("items", i, "displayName")); });
        collect(problems, [&] { requireText(item.symlinkTarget, elementField("items", i, "symlinkTarget")); });
        if (!item.isSymlink())
            collect(problems,
                    [&] { requireUsableSource(item, elementField("items", i, "sourcePath"), temporaryFolder); });
    }
}

void checkTexts(const DMGProject& project, Problems& problems)
{
    collect(problems, [&] { requireText(project.backgroundImagePath, "backgroundImagePath"); });
    collect(problems, [&] { requireText(project.volumeIconPath, "volumeIconPath"); });
    collect(problems, [&] { requireText(project.codeSignIdentity, "codeSignIdentity"); });
    collect(problems, [&] { requireText(project.notaryProfile, "notaryProfile"); });
}

struct Number {
    std::string field{};
    double value = 0;
};

/// Every number that the window's layout is made of; the script itself is asked for what their sums do.
void checkLayout(const DMGProject& project, Problems& problems)
{
    const std::size_t before = problems.size();
    const auto check = [&problems](const Number& number) {
        collect(problems, [&] { wholeNumber(number.value, number.field); });
    };
    for (const Number& number :
         {Number{"windowLeft", project.windowLeft}, Number{"windowTop", project.windowTop},
          Number{"windowWidth", project.windowWidth}, Number{"windowHeight", project.windowHeight},
          Number{"iconSize", project.iconSize}, Number{"textSize", project.textSize}})
        check(number);
    for (std::size_t i = 0; i < project.items.size(); ++i) {
        if (project.items[i].hidden)
            continue;
        check({elementField("items", i, "x"), project.items[i].x});
        check({elementField("items", i, "y"), project.items[i].y});
    }
    if (problems.size() == before)
        collect(problems, [&] { layoutScript(project, project.volumeName, {}); });
}

void requireColor(const CodableColor& color, const std::string& field)
{
    for (const double component : {color.r, color.g, color.b, color.a})
        requireFinite(component, field);
}

void checkOverlays(const DMGProject& project, Problems& problems)
{
    const auto check = [&problems](const char* list, std::size_t index, std::initializer_list<Number> numbers) {
        for (const Number& number : numbers)
            collect(problems, [&] { requireFinite(number.value, elementField(list, index, number.field)); });
    };
    for (std::size_t i = 0; i < project.overlayImages.size(); ++i) {
        const DMGOverlayImage& o = project.overlayImages[i];
        check("overlayImages", i, {{"x", o.x}, {"y", o.y}, {"width", o.width}, {"height", o.height}});
    }
    for (std::size_t i = 0; i < project.textOverlays.size(); ++i) {
        const DMGTextOverlay& t = project.textOverlays[i];
        check("textOverlays", i,
              {{"fontSize", t.fontSize},
               {"shadowAngle", t.shadowAngle},
               {"shadowOffset", t.shadowOffset},
               {"shadowBlur", t.shadowBlur},
               {"shadowOpacity", t.shadowOpacity},
               {"x", t.x},
               {"y", t.y},
               {"width", t.width},
               {"height", t.height}});
        collect(problems, [&] { requireColor(t.color, elementField("textOverlays", i, "color")); });
        collect(problems, [&] { requireColor(t.shadowColor, elementField("textOverlays", i, "shadowColor")); });
    }
}

void requireDrawableSide(double points, const std::string& field)
{
    const int side = wholeNumber(points, field);
    if (side < 1)
        throw BuildError(field, "the window is too small to have a content area.");
    if (side > std::numeric_limits<int>::max() / 2) // the picture is drawn at twice the size too
        throw BuildError(field, "the value is too large.");
}

void checkBackground(const DMGProject& project, Problems& problems)
{
    for (const Number& number :
         {Number{"gradientAngle", project.gradientAngle}, Number{"backgroundImageScale", project.backgroundImageScale},
          Number{"backgroundImageOffsetX", project.backgroundImageOffsetX},
          Number{"backgroundImageOffsetY", project.backgroundImageOffsetY}})
        collect(problems, [&] { requireFinite(number.value, number.field); });
    collect(problems, [&] { requireColor(project.backgroundColor, "backgroundColor"); });
    collect(problems, [&] { requireColor(project.gradientStart, "gradientStart"); });
    collect(problems, [&] { requireColor(project.gradientEnd, "gradientEnd"); });
    if (!drawsBackground(project))
        return;
    collect(problems, [&] { requireDrawableSide(project.contentSize().width, "windowWidth"); });
    collect(problems, [&] { requireDrawableSide(project.contentSize().height, "windowHeight"); });
}

void checkImageSize(const DMGProject& project, Problems& problems)
{
    if (!project.imageSizeAutomatic && (project.manualSizeMB < 1 || project.manualSizeMB > maximumImageSizeMB))
        problems.push_back(errorIn("manualSizeMB", "the image size " + std::to_string(project.manualSizeMB) +
                                                       " MB is not between 1 and " +
                                                       std::to_string(maximumImageSizeMB) + "."));
}

} // namespace

Problems numberObstacles(const DMGProject& project)
{
    Problems problems;
    checkLayout(project, problems);
    checkBackground(project, problems);
    checkOverlays(project, problems);
    return problems;
}

Problems buildObstacles(const DMGProject& project, const std::optional<fs::path>& output,
                        const fs::path& temporaryFolder)
{
    Problems problems;
    checkContent(project, problems);
    if (output)
        checkOutput(project, *output, problems);
    if (!trimmedBlanks(project.volumeName).empty())
        collect(problems, [&] { requireVolumeName(project.volumeName); });
    checkItems(project, temporaryFolder, problems);
    checkTexts(project, problems);
    append(problems, numberObstacles(project));
    checkImageSize(project, problems);
    return problems;
}

void validate(const DMGProject& project, const fs::path& output, const fs::path& temporaryFolder)
{
    if (const Problems problems = buildObstacles(project, output, temporaryFolder); !problems.empty())
        throwIf(problems.front());
}

} // namespace velmora
