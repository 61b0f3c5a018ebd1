// kit_gallery FOLDER [FONT]: draws the kit in all themes into pictures; QT_SCALE_FACTOR sets the pixels to the point,
// FONT the size of the desktop's font in pixels.
// kit_gallery --show BOARD [THEME]: shows one board in a window, to be tried by hand.
#include "app/kit/look.h"
#include "app/theme/theme_manager.h"
#include "board.h"
#include "icon_sheet.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QListWidget>
#include <QScrollBar>
#include <QWidget>

#include <algorithm>
#include <cstdlib>

namespace
{

int showBoard(QApplication& application, const QString& name, int theme)
{
    using namespace velmora;
    const AppTheme chosen = allAppThemes.at(static_cast<std::size_t>(std::clamp(theme, 0, 3)));
    applyLook(application, makeLook(chosen, defaultSystemAccent(), readDesktop()));
    for (const Board& board : makeBoards()) {
        if (board.name == name) {
            board.widget->setWindowTitle(name);
            board.widget->show();
        } else {
            delete board.widget;
        }
    }
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    using namespace velmora;
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2)
        return EXIT_FAILURE;
    if (arguments.at(1) == "--show")
        return showBoard(application, arguments.value(2), arguments.value(3).toInt());
    const QDir folder(arguments.at(1));
    const double ratio = application.devicePixelRatio();
    DesktopLook desktop = readDesktop();
    if (arguments.size() > 2)
        desktop.fontPixelSize = arguments.at(2).toDouble();
    for (const AppTheme theme : allAppThemes) {
        const Look look = makeLook(theme, defaultSystemAccent(), desktop);
        applyLook(application, look);
        const QString suffix = QStringLiteral("-%1-%2x.png").arg(static_cast<int>(theme)).arg(ratio);
        iconSheet(look, ratio).save(folder.filePath("icons" + suffix));
        for (const Board& board : makeBoards()) {
            board.widget->show();
            QApplication::processEvents();
            // Overlay scroll bars are seen only after scrolling.
            for (auto* list : board.widget->findChildren<QListWidget*>()) {
                list->grab();
                list->verticalScrollBar()->setValue(3);
            }
            QApplication::processEvents();
            board.widget->grab().save(folder.filePath(board.name + suffix));
            if (auto* popUp = board.name == "lists" ? board.widget->findChild<QComboBox*>() : nullptr) {
                popUp->showPopup();
                QApplication::processEvents();
                popUp->view()->window()->grab().save(folder.filePath("popup" + suffix));
                popUp->hidePopup();
            }
            delete board.widget;
        }
    }
    return EXIT_SUCCESS;
}
