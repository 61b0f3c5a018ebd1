#include "pipeline/background_staging.h"

#include "pipeline/overlay_staging.h"
#include "pipeline/whole_number.h"
#include "platform/file_tree.h"
#include "render/background_renderer.h"

#include <QByteArray>
#include <QString>

#include <system_error>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

const std::string singleName = "background.png";
const std::string doubleName = "background@2x.png";
const std::string combinedName = "background.tiff";

std::string_view view(const QByteArray& bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

/// The ".background" folder of the stage: an entry of the project that is a real folder is shared, anything else of
/// that name makes way.
fs::path backgroundFolder(BuildRun& run, StageFolder& stage)
{
    if (const auto entry = stage.find(backgroundFolderName)) {
        const fs::path path = stage.path() / *entry;
        if (fs::is_directory(fs::symlink_status(path))) {
            run.warnAloud("The entry “" + *entry + "” also receives the background of the window.");
            fs::rename(path, stage.path() / backgroundFolderName);
            return stage.path() / backgroundFolderName;
        }
        run.warnAloud("The entry “" + *entry + "” is replaced by the folder with the background of the window.");
    }
    const fs::path path = stage.place(backgroundFolderName);
    fs::create_directory(path);
    fs::permissions(path, stagedFolderMode);
    return path;
}

/// The drawing at one and at two pixels a point.
struct Drawing {
    QByteArray singleSize{};
    QByteArray doubleSize{};
};

std::optional<Drawing> draw(const DMGProject& project, const BuildEnvironment& environment,
                            std::vector<std::string>& warnings)
{
    RenderContext context{.arrows = *environment.arrows, .cache = *environment.cache};
    if (project.backgroundKind == BackgroundKind::image)
        context.background = readPicture(QString::fromStdString(project.backgroundImagePath));
    context.warnings = &warnings;
    const int width = wholeNumber(project.contentSize().width, "windowWidth");
    const int height = wholeNumber(project.contentSize().height, "windowHeight");
    const auto single = BackgroundRenderer::pngData(project, width, height, context);
    context.warnings = nullptr; // the second drawing lacks the same things
    if (!single)
        return {};
    const auto twice = BackgroundRenderer::pngData(project, 2 * width, 2 * height, context);
    if (!twice)
        return {};
    return Drawing{*single, *twice};
}

void stampResolution(BuildRun& run, const fs::path& picture, const std::string& dpi)
{
    run.warnUnlessOk(run.tool("/usr/bin/sips", {"-s", "dpiWidth", dpi, "-s", "dpiHeight", dpi, picture.string()}),
                     "The resolution of the background picture “" + picture.filename().string() + "” could not be set");
}

/// Writes the picture files and returns the name of the one to show.
std::string writePictures(BuildRun& run, const Drawing& drawing, StageFolder& folder)
{
    const fs::path combined = folder.place(combinedName);
    folder.write(singleName, view(drawing.singleSize));
    folder.write(doubleName, view(drawing.doubleSize));
    const fs::path singlePath = folder.path() / singleName;
    const fs::path doublePath = folder.path() / doubleName;
    stampResolution(run, singlePath, "72");
    stampResolution(run, doublePath, "144");
    const ShellResult result = run.tool(
        "/usr/bin/tiffutil", {"-cathidpicheck", singlePath.string(), doublePath.string(), "-out", combined.string()});
    if (result.ok()) {
        removeTree(singlePath);
        removeTree(doublePath);
        std::error_code ignored;
        fs::permissions(combined, stagedFileMode, ignored);
        return combinedName;
    }
    run.say("⚠️ tiffutil failed — falling back to @2x PNG.");
    run.warnUnlessOk(result, "The background has one resolution instead of two");
    folder.write(singleName, view(drawing.doubleSize));
    stampResolution(run, singlePath, "144");
    return singleName;
}

} // namespace

bool drawsBackground(const DMGProject& project)
{
    std::error_code ignored;
    return project.backgroundKind != BackgroundKind::image ||
           (!project.backgroundImagePath.empty() && fs::exists(project.backgroundImagePath, ignored));
}

std::optional<std::string> stageBackground(BuildRun& run, const DMGProject& project, StageFolder& stage)
{
    if (!drawsBackground(project)) {
        run.warn((project.backgroundImagePath.empty()
                      ? std::string("No background picture was chosen")
                      : "The background picture “" + project.backgroundImagePath + "” does not exist") +
                 "; the window has no background, overlays and captions included.");
        return {};
    }
    StageFolder folder(backgroundFolder(run, stage));
    const PreparedOverlays prepared(run, project, folder);
    if (!project.overlayImages.empty())
        run.say("Baking " + std::to_string(prepared.project().overlayImages.size()) + " overlay(s) into background…");
    std::vector<std::string> warnings;
    const std::optional<Drawing> drawing = draw(prepared.project(), run.environment(), warnings);
    for (const std::string& warning : warnings)
        run.warn(warning);
    if (!drawing) {
        run.warn("The background of the window could not be drawn; the window has none.");
        return {};
    }
    return writePictures(run, *drawing, folder);
}

} // namespace velmora
