// app_portraits FOLDER [FONT]: takes pictures of the editor's panels, sheets and windows in all themes, and puts those
// of each theme together into a contact sheet. QT_SCALE_FACTOR sets the pixels to the point, FONT the size of the
// desktop's font in pixels.
#include "app/kit/look.h"
#include "app/portraits/contact_sheet.h"
#include "app/portraits/scenes.h"
#include "app/text.h"
#include "app/theme/theme_manager.h"

#include <QApplication>
#include <QDir>

#include <cstdio>
#include <cstdlib>

namespace
{

constexpr int cellWidth = 900;

QString nameOf(velmora::AppTheme theme)
{
    return velmora::qtText(displayName(theme)).toLower().replace(u' ', u'-');
}

} // namespace

int main(int argc, char** argv)
{
    using namespace velmora;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        std::fputs("usage: app_portraits FOLDER [FONT]\n", stderr);
        return EXIT_FAILURE;
    }
    const QDir folder(arguments.at(1));
    DesktopLook desktop = readDesktop();
    desktop.reducedMotion = true;
    QString suffix = QStringLiteral("-%1x").arg(application.devicePixelRatio());
    if (arguments.size() > 2) {
        desktop.fontPixelSize = arguments.at(2).toDouble();
        suffix += QStringLiteral("-font%1").arg(arguments.at(2));
    }
    for (const AppTheme theme : allAppThemes) {
        applyLook(application, makeLook(theme, defaultSystemAccent(), desktop));
        const QString end = QLatin1Char('-') + nameOf(theme) + suffix + QStringLiteral(".png");
        std::vector<Portrait> portraits;
        bool saved = true;
        walkThroughTheEditor(theme, [&](const QString& name, const QPixmap& picture) {
            portraits.push_back({name, picture.toImage()});
            saved = picture.save(folder.filePath(name + end)) && saved;
        });
        saved =
            contactSheet(portraits, cellWidth).save(folder.filePath(QStringLiteral("contact-sheet") + end)) && saved;
        if (!saved) {
            std::fprintf(stderr, "app_portraits: cannot write into %s\n", qPrintable(folder.path()));
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}
