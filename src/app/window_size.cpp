#include "app/window_size.h"

#include "app/operating_system.h"
#include "platform/settings.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace velmora::WindowPrefs
{
namespace
{

QScreen* screenOf(const QWidget& window)
{
    return window.screen() ? window.screen() : QGuiApplication::primaryScreen();
}

} // namespace

bool opensMaximized(const SettingsStore& settings)
{
    return settings.boolValue(openMaximizedKey).value_or(true);
}

void setOpensMaximized(SettingsStore& settings, bool maximized)
{
    settings.setBool(openMaximizedKey, maximized);
}

void sizeNewWindow(QWidget& window, const SettingsStore& settings)
{
    // Also the size to return to from the maximized state.
    defaultSize(window);
    if (opensMaximized(settings) && screenOf(window))
        fillScreen(window);
}

void fillScreen(QWidget& window)
{
    const QScreen* screen = screenOf(window);
    if (!screen)
        return;
    // A Mac's zoomed state toggles and may be smaller than the screen; elsewhere the window manager alone knows the
    // frame it will draw, and some let no program place a window at all.
    if (!isMac()) {
        window.setWindowState((window.windowState() & ~Qt::WindowFullScreen) | Qt::WindowMaximized);
        return;
    }
    const QMargins frame(window.geometry().left() - window.frameGeometry().left(),
                         window.geometry().top() - window.frameGeometry().top(),
                         window.frameGeometry().right() - window.geometry().right(),
                         window.frameGeometry().bottom() - window.geometry().bottom());
    window.setGeometry(screen->availableGeometry().marginsRemoved(frame));
}

void defaultSize(QWidget& window)
{
    window.setWindowState(window.windowState() & ~(Qt::WindowMaximized | Qt::WindowFullScreen));
    const QSize size(defaultWidth, defaultHeight);
    window.resize(size);
    if (const QScreen* screen = screenOf(window)) {
        const QSize frame = window.frameGeometry().size() - window.geometry().size();
        window.move(
            QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size + frame, screen->availableGeometry()).topLeft());
    }
}

} // namespace velmora::WindowPrefs
