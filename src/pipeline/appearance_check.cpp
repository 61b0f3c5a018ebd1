#include "pipeline/appearance_check.h"

#include "model/icon_layout.h"
#include "pipeline/background_staging.h"
#include "pipeline/text.h"
#include "pipeline/validation.h"
#include "pipeline/volume_icon.h"
#include "render/background_renderer.h"
#include "render/fonts.h"
#include "render/overlay_images.h"

#include <QString>

#include <cmath>

namespace velmora
{
namespace
{

/// A copy of the project from which is taken out what was found to be missing: what else is missing shows in drawing
/// it.
class LookCheck
{
public:
    LookCheck(const DMGProject& project, const BuildEnvironment& environment)
        : m_project(project), m_environment(environment), m_rest(project)
    {
    }

    void checkBackgroundPicture()
    {
        if (m_project.backgroundKind != BackgroundKind::image)
            return;
        const std::string& path = m_project.backgroundImagePath;
        if (path.empty())
            error("backgroundImagePath", "No background picture was chosen; the window would have no background, "
                                         "overlays and captions included.");
        else if (!drawsBackground(m_project))
            error("backgroundImagePath", "The background picture " + inQuotes(path) +
                                             " does not exist; the window would have no background, overlays and "
                                             "captions included.");
        else if (!readPicture(QString::fromStdString(path)))
            error("backgroundImagePath", "The background picture " + inQuotes(path) +
                                             " cannot be read; the background color would be used instead.");
        else
            return;
        m_rest.backgroundKind = BackgroundKind::color;
    }

    void checkOverlayPictures()
    {
        m_rest.overlayImages.clear();
        for (std::size_t i = 0; i < m_project.overlayImages.size(); ++i) {
            const DMGOverlayImage& overlay = m_project.overlayImages[i];
            if (OverlayImageResolver::load(overlay, *m_environment.arrows, *m_environment.cache))
                m_rest.overlayImages.push_back(overlay);
            else
                error(elementField("overlayImages", i, "sourcePath"), "The overlay picture " +
                                                                          inQuotes(overlay.sourcePath) +
                                                                          " cannot be loaded; it would be left out.");
        }
    }

    void checkFonts()
    {
        for (std::size_t i = 0; i < m_project.textOverlays.size(); ++i) {
            const DMGTextOverlay& caption = m_project.textOverlays[i];
            if (caption.text.empty())
                continue;
            const Fonts::Resolved font = Fonts::resolve(caption.fontName);
            if (font.found)
                continue;
            m_problems.push_back({Severity::warning, elementField("textOverlays", i, "fontName"),
                                  "The font " + inQuotes(caption.fontName) + " is not installed; " +
                                      font.familyName.toStdString() + " stands in for it."});
            m_rest.textOverlays[i].fontName = standInName;
            if (!Fonts::resolve(standInName).found)
                m_rest.textOverlays[i].text.clear();
        }
    }

    void checkDrawing()
    {
        if (!drawsBackground(m_project))
            return;
        std::vector<std::string> lacks;
        const RenderContext context{.arrows = *m_environment.arrows, .cache = *m_environment.cache, .warnings = &lacks};
        const Size size = m_rest.contentSize();
        constexpr double largestScale = 2; // of the two drawings that a build makes
        if (BackgroundRenderer::image(m_rest, {size.width, size.height}, true, largestScale, context).isNull())
            error("windowWidth", "The background of the window could not be drawn at this size.");
        for (const std::string& sentence : lacks)
            error("background", sentence);
    }

    void checkVolumeIcon()
    {
        if (m_project.volumeIconPath.empty())
            return;
        if (const auto fault = volumeIconFault(m_project.volumeIconPath))
            error("volumeIconPath", *fault);
    }

    void checkPositions()
    {
        const Size window = m_project.contentSize();
        const double half = m_project.iconSize / 2;
        for (std::size_t i = 0; i < m_project.items.size(); ++i) {
            const DMGItem& item = m_project.items[i];
            const Point center = IconLayout::graphicCenter(item, m_project);
            const bool inside = center.x - half >= 0 && center.y - half >= 0 && center.x + half <= window.width &&
                                center.y + half <= window.height;
            const bool isKnown = std::isfinite(center.x + center.y + half + window.width + window.height);
            if (item.hidden || inside || !isKnown)
                continue;
            m_problems.push_back({Severity::warning, "items[" + std::to_string(i) + "]",
                                  "The icon of " + inQuotes(item.displayName) +
                                      " is not inside the window, which shows " + whole(window.width) + " × " +
                                      whole(window.height) + " points."});
        }
    }

    [[nodiscard]] Problems take() { return std::move(m_problems); }

private:
    static constexpr const char* standInName = "HelveticaNeue";

    static std::string whole(double value) { return QString::number(std::trunc(value), 'f', 0).toStdString(); }
    void error(const std::string& field, const std::string& message)
    {
        m_problems.push_back({Severity::error, field, message});
    }

    const DMGProject& m_project;
    const BuildEnvironment& m_environment;
    DMGProject m_rest;
    Problems m_problems{};
};

} // namespace

Problems checkAppearance(const DMGProject& project, const BuildEnvironment& environment)
{
    LookCheck check(project, environment);
    check.checkBackgroundPicture();
    check.checkOverlayPictures();
    check.checkFonts();
    check.checkVolumeIcon();
    if (numberObstacles(project).empty())
        check.checkDrawing();
    check.checkPositions();
    return check.take();
}

} // namespace velmora
