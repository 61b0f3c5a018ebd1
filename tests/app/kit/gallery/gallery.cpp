// gallery FOLDER [RATIO]: draws the kit in all themes into pictures. Run it with QT_SCALE_FACTOR=RATIO.
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

#include <cstdlib>

int main(int argc, char** argv)
{
    using namespace velmora;
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2)
        return EXIT_FAILURE;
    const QDir folder(arguments.at(1));
    const double ratio = application.devicePixelRatio();
    for (const AppTheme theme : allAppThemes) {
        const Look look = makeLook(theme, defaultSystemAccent(), readDesktop());
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
