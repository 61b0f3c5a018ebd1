#include "board.h"

#include "app/kit/focus_ring.h"
#include "app/kit/icons.h"
#include "app/kit/log_view.h"
#include "app/kit/look.h"
#include "app/kit/progress_line.h"
#include "app/kit/sheet_host.h"
#include "app/kit/step_list.h"
#include "app/kit/tab_rail.h"
#include "app/kit/velmora_style.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLinearGradient>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <functional>

namespace velmora
{
namespace
{

enum class Shown { normal, hover, focus, disabled, last };

void show(QWidget* widget, Shown state)
{
    switch (state) {
    case Shown::hover: {
        widget->setAttribute(Qt::WA_UnderMouse);
        QEvent enter(QEvent::Enter);
        QCoreApplication::sendEvent(widget, &enter);
        break;
    }
    case Shown::focus:
        (new FocusRing)->setTarget(widget);
        break;
    case Shown::disabled:
        widget->setEnabled(false);
        break;
    default:
        break;
    }
}

/// A ground that is filled with a role or the chrome gradient.
class Ground : public QWidget
{
public:
    explicit Ground(bool chrome) : m_chrome(chrome) { setAttribute(Qt::WA_OpaquePaintEvent); }

protected:
    void paintEvent(QPaintEvent*) override
    {
        const Look& look = lookOf(this);
        QPainter painter(this);
        QLinearGradient gradient(0, 0, 0, height());
        gradient.setColorAt(0, look.palette.chromeGradient[0]);
        gradient.setColorAt(1, look.palette.chromeGradient[1]);
        painter.fillRect(rect(), m_chrome ? QBrush(gradient) : QBrush(look.roles.panel));
    }

private:
    bool m_chrome;
};

struct Row {
    const char* name = "";
    std::function<QWidget*(Shown)> make{};
};

QWidget* controlsBoard()
{
    auto* ground = new Ground(false);
    auto* grid = new QGridLayout(ground);
    grid->setContentsMargins(28, 24, 28, 28);
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(12);
    const auto button = [](bool isDefault, bool large) {
        return [=](Shown state) -> QWidget* {
            auto* made = new QPushButton(isDefault ? "Build" : "Reveal");
            made->setDefault(isDefault);
            if (large)
                setLarge(made);
            made->setDown(state == Shown::last);
            return made;
        };
    };
    const QList<Row> rows{
        {"Button", button(false, false)},
        {"Default button", button(true, false)},
        {"Large", button(false, true)},
        {"Large default", button(true, true)},
        {"With icon", [](Shown) -> QWidget* { return new QPushButton(toolIcon("center-horizontally"), "Center H"); }},
        {"Pop-up",
         [](Shown state) -> QWidget* {
             auto* made = new QComboBox;
             made->addItems({"Fit", "Fill"});
             if (state == Shown::last)
                 made->setEditable(true);
             return made;
         }},
        {"Text field",
         [](Shown state) -> QWidget* {
             auto* made = new QLineEdit(state == Shown::last ? QString() : "Larkspur");
             setMarkedWrong(made, state == Shown::last);
             return made;
         }},
        {"Check box",
         [](Shown state) -> QWidget* {
             auto* made = new QCheckBox("Show");
             made->setChecked(state == Shown::focus || state == Shown::disabled || state == Shown::last);
             return made;
         }},
        {"Radio button",
         [](Shown state) -> QWidget* {
             auto* made = new QRadioButton("Show");
             made->setChecked(state == Shown::focus || state == Shown::disabled || state == Shown::last);
             return made;
         }},
    };
    const char* heads[] = {"", "Normal", "Hover", "Focus", "Disabled", "Pressed / error"};
    for (int column = 0; column < 6; ++column) {
        auto* head = new QLabel(heads[column]);
        head->setForegroundRole(QPalette::PlaceholderText);
        grid->addWidget(head, 0, column);
        grid->setColumnMinimumWidth(column, 92);
    }
    for (int i = 0; i < rows.size(); ++i) {
        auto* name = new QLabel(rows.at(i).name);
        name->setForegroundRole(QPalette::PlaceholderText);
        grid->addWidget(name, i + 1, 0);
        for (int column = 0; column < 5; ++column) {
            const auto state = static_cast<Shown>(column);
            QWidget* widget = rows.at(i).make(state);
            grid->addWidget(widget, i + 1, column + 1);
            show(widget, state);
        }
    }
    auto* progress = new ProgressLine;
    progress->setFraction(0.62);
    grid->addWidget(progress, grid->rowCount(), 1, 1, 3);
    return ground;
}

QWidget* toolsBoard()
{
    auto* ground = new Ground(true);
    auto* row = new QHBoxLayout(ground);
    auto* tools = new QGridLayout;
    row->addLayout(tools);
    const char* names[] = {"Normal", "Hover", "Focus", "Disabled", "Pressed"};
    for (int column = 0; column < 5; ++column) {
        const auto state = static_cast<Shown>(column);
        auto* tool = new ToolButton("contents", names[column]);
        auto* chosen = new ToolButton("add-files", "Selected");
        chosen->setCheckable(true);
        chosen->setChecked(true);
        auto* build = new ToolButton("build", "Build", ToolButton::Kind::filled);
        for (ToolButton* each : {tool, chosen, build}) {
            if (state == Shown::last && each != build)
                emit each->pressed();
            if (state == Shown::last && each == build)
                build->setBusy(true);
        }
        tools->addWidget(tool, 0, column);
        tools->addWidget(chosen, 1, column);
        tools->addWidget(build, 2, column);
        for (ToolButton* each : {tool, chosen, build})
            show(each, state);
    }
    auto* rail = new TabRail;
    rail->addTab("layout", "Layout");
    rail->addTab("volume", "Volume");
    rail->addTab("file-info", "File Info");
    rail->addTab("arrange", "Arrange");
    rail->addTab("text", "Text");
    row->addWidget(rail);
    ground->setMinimumHeight(300);
    return ground;
}

QWidget* sheetBoard()
{
    auto* window = new Ground(true);
    window->resize(1180, 760);
    auto* host = new SheetHost(window);
    auto* content = new QWidget;
    content->setFixedWidth(700);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(24, 24, 24, 20);
    column->setSpacing(16);
    auto* title = new QLabel("Building Larkspur.dmg");
    title->setFont(lookOf(nullptr).font(Type::sheetTitle));
    column->addWidget(title);
    auto* progress = new ProgressLine;
    progress->setFraction(0.78);
    column->addWidget(progress);
    auto* middle = new QHBoxLayout;
    middle->setSpacing(20);
    auto* steps = new StepList;
    steps->setSteps({{"Check the project", StepState::done, "0:00", "done"},
                     {"Gather the files", StepState::done, "0:02", "done"},
                     {"Draw the background", StepState::done, "0:01", "done"},
                     {"Create the image", StepState::done, "0:06", "done"},
                     {"Lay out the window", StepState::failed, "0:05", "failed"},
                     {"Convert", StepState::running, "0:07", "running"},
                     {"Sign", StepState::waiting, "", "waiting"}});
    middle->addWidget(steps);
    auto* log = new LogView;
    for (int i = 0; i < 40; ++i)
        log->append(QString("Line %1 of the log").arg(i));
    log->append("$ hdiutil create -volname Larkspur -fs HFS+ temp.dmg", LogLine::command);
    log->append("Mounting image…");
    log->append("The picture was left out.", LogLine::warning);
    log->append("No space left on the volume.", LogLine::error);
    middle->addWidget(log, 1);
    column->addLayout(middle);
    auto* buttons = new QHBoxLayout;
    auto* copy = new QPushButton(toolIcon("copy"), "Copy Log");
    auto* save = new QPushButton("Save Log…");
    auto* hide = new QPushButton("Hide");
    auto* reveal = new QPushButton("Reveal");
    reveal->setDefault(true);
    for (QPushButton* each : {copy, save, hide, reveal})
        setLarge(each);
    buttons->addWidget(copy);
    buttons->addWidget(save);
    buttons->addStretch(1);
    buttons->addWidget(hide);
    buttons->addWidget(reveal);
    column->addLayout(buttons);
    host->open(content, reveal);
    // The log shows its lines after a moment.
    QMetaObject::invokeMethod(log, &LogView::jumpToEnd, Qt::QueuedConnection);
    return window;
}

QWidget* menuBoard()
{
    auto* ground = new Ground(true);
    ground->resize(520, 260);
    auto* bar = new QMenuBar(ground);
    bar->addMenu("&Velmora");
    bar->addMenu("&File");
    bar->addMenu("&Edit");
    bar->setGeometry(0, 0, 520, 26);
    auto* menu = new QMenu(ground);
    menu->setWindowFlags(Qt::Widget);
    menu->addAction("New")->setShortcut(QKeySequence("Ctrl+N"));
    menu->addAction("Open…")->setShortcut(QKeySequence("Ctrl+O"));
    menu->addMenu("Open Recent")->addAction("one");
    menu->addSeparator();
    menu->addAction("Save")->setEnabled(false);
    QAction* checked = menu->addAction("Show Guides");
    checked->setCheckable(true);
    checked->setChecked(true);
    menu->addAction(toolIcon("copy"), "Copy");
    menu->move(20, 40);
    menu->show();
    menu->setActiveAction(menu->actions().constFirst());
    return ground;
}

} // namespace

QList<Board> makeBoards()
{
    return {{"controls", controlsBoard()}, {"tools", toolsBoard()}, {"sheet", sheetBoard()}, {"menus", menuBoard()}};
}

} // namespace velmora
