#pragma once

#include "platform/folders.h"
#include "render/background_renderer.h"
#include "render/built_in_arrows.h"
#include "render/overlay_images.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace velmora
{

/// Whether two colours differ by at most `tolerance` in each component; transparent ones are alike.
inline bool alike(QColor a, QColor b, int tolerance = 2)
{
    if (a.alpha() == 0 && b.alpha() == 0)
        return true;
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance && std::abs(a.alpha() - b.alpha()) <= tolerance;
}

inline std::string text(const QColor& color)
{
    return color.name(QColor::HexArgb).toStdString();
}

#define EXPECT_PIXEL(image, x, y, color)                                                                               \
    EXPECT_TRUE(::velmora::alike((image).pixelColor(x, y), color))                                                     \
        << "at " << (x) << ", " << (y) << ": " << ::velmora::text((image).pixelColor(x, y))

/// The smallest rectangle that holds every pixel that is `ink`; empty when there is none.
inline QRect inkBox(
    const QImage& image, const std::function<bool(QColor)>& ink = [](QColor c) { return c.alpha() > 64; })
{
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (ink(image.pixelColor(x, y)))
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

/// A picture of a red, a green, a blue and a yellow quarter (in reading order).
inline const QColor red(200, 40, 40);
inline const QColor green(40, 160, 60);
inline const QColor blue(40, 60, 200);
inline const QColor yellow(230, 210, 40);
inline QImage quadrants(int width = 32, int height = 16)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixelColor(x, y, y < height / 2 ? (x < width / 2 ? red : green) : (x < width / 2 ? blue : yellow));
    }
    return image;
}

inline PicturePtr pictureOf(const QImage& image)
{
    return std::make_shared<const Picture>(
        Picture{image.convertToFormat(QImage::Format_ARGB32_Premultiplied), image.size()});
}

/// A project with a content area of this size, nothing in it and a transparent background.
inline DMGProject emptyProject(double width, double height)
{
    DMGProject project;
    project.windowWidth = width;
    project.windowHeight = height + DMGProject::titleBarHeight;
    project.backgroundKind = BackgroundKind::color;
    project.backgroundColor = {0, 0, 0, 0};
    return project;
}

/// Drawing with folders of its own.
class RenderTest : public testing::Test
{
protected:
    [[nodiscard]] std::string path(const std::string& name) const { return m_folder.path().toStdString() + "/" + name; }
    std::string write(const std::string& name, const QByteArray& bytes) const
    {
        QFile file(QString::fromStdString(path(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        return path(name);
    }
    QImage draw(const DMGProject& project, double scale = 1)
    {
        const Size content = project.contentSize();
        QImage image = BackgroundRenderer::image(project, {content.width, content.height}, true, scale, m_context);
        image.setDevicePixelRatio(1);
        return image;
    }

private:
    QTemporaryDir m_folder{};

protected:
    OverlayImageCache m_cache{};
    ArrowFolders m_folders{Folders::resources(), path("support"), path("")};
    BuiltInArrowLibrary m_arrows{m_folders, m_cache};
    std::vector<std::string> m_warnings{};
    RenderContext m_context{m_arrows, m_cache, {}, &m_warnings};
};

} // namespace velmora
