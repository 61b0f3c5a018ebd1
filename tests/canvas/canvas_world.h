#pragma once

#include "canvas/canvas_view.h"
#include "worlds/editor_world.h"

#include <QCoreApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>

#include <memory>
#include <string>

namespace velmora::testing
{

/// A canvas on the screen over an editor of its own, and a hand that works on it in content points.
class CanvasWorld
{
public:
    CanvasWorld()
    {
        canvas.resize(740, 760);
        canvas.show();
        settle();
        state.newProject();
    }

    static void settle() { QCoreApplication::processEvents(); }

    /// Puts the project in the place of the open one.
    void open(const DMGProject& project)
    {
        state.edit({}, [&](DMGProject& open) { open = project; });
        settle();
    }
    /// A window of 600 by 400 content points that holds nothing.
    static DMGProject emptyWindow()
    {
        DMGProject project;
        project.windowWidth = 600;
        project.windowHeight = 400 + DMGProject::titleBarHeight;
        project.backgroundKind = BackgroundKind::color;
        return project;
    }
    static DMGItem item(const std::string& name, double x, double y)
    {
        return {.displayName = name, .x = x, .y = y, .symlinkTarget = "/Applications"};
    }
    static DMGTextOverlay caption(const Rect& box)
    {
        DMGTextOverlay text;
        text.setBounds(box);
        return text;
    }
    /// A red picture in a box.
    [[nodiscard]] DMGOverlayImage overlay(const Rect& box)
    {
        DMGOverlayImage image;
        image.sourcePath = world.picture("overlay.png", 20, 10).string();
        image.setBounds(box);
        return image;
    }

    [[nodiscard]] QPointF widgetPoint(Point content) const
    {
        const CanvasPlacement place = canvas.placement();
        return place.content.topLeft() + QPointF(content.x, content.y) * place.scale;
    }
    void press(Point at) { mouse(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton); }
    void move(Point to) { mouse(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton); }
    void release(Point at, Qt::MouseButton button = Qt::LeftButton)
    {
        mouse(QEvent::MouseButtonRelease, at, button, button == Qt::LeftButton ? Qt::NoButton : Qt::LeftButton);
    }
    void hover(Point at) { mouse(QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton); }
    void click(Point at)
    {
        press(at);
        release(at);
    }
    void drag(Point from, Point to)
    {
        press(from);
        move({(from.x + to.x) / 2, (from.y + to.y) / 2});
        move(to);
        release(to);
    }
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, modifiers);
            QCoreApplication::sendEvent(&canvas, &event);
        }
    }
    /// What the screen shows, by way of the repaints that were asked for.
    [[nodiscard]] QImage screen();
    /// What a new canvas of the same zoom would show.
    [[nodiscard]] QImage freshPicture();

    EditorWorld world{};
    AppState& state = world.state;
    ThemeManager themes{std::make_unique<MemorySettings>()};
    CanvasView canvas{state, themes, world.arrows, world.pictures};

private:
    void mouse(QEvent::Type type, Point at, Qt::MouseButton button, Qt::MouseButtons held)
    {
        const QPointF point = widgetPoint(at);
        QMouseEvent event(type, point, canvas.mapToGlobal(point), button, held, Qt::NoModifier);
        QCoreApplication::sendEvent(&canvas, &event);
    }
};

/// How many pixels differ visibly.
int differences(const QImage& a, const QImage& b);

} // namespace velmora::testing
