#include "board.h"

#include "app/kit/angle_dial.h"
#include "app/kit/checker_thumbnail.h"
#include "app/kit/color_well.h"
#include "app/kit/empty_state.h"
#include "app/kit/focus_ring.h"
#include "app/kit/form.h"
#include "app/kit/icons.h"
#include "app/kit/log_view.h"
#include "app/kit/look.h"
#include "app/kit/note_banner.h"
#include "app/kit/number_field.h"
#include "app/kit/paint.h"
#include "app/kit/password_field.h"
#include "app/kit/path_label.h"
#include "app/kit/progress_line.h"
#include "app/kit/segmented_control.h"
#include "app/kit/sheet_host.h"
#include "app/kit/step_list.h"
#include "app/kit/switch.h"
#include "app/kit/tab_rail.h"
#include "app/kit/value_slider.h"
#include "app/kit/velmora_style.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QCoreApplication>
#include <QFileDialog>
#include <QFontDialog>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QPlainTextEdit>
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
    widget->ensurePolished();
    switch (state) {
    case Shown::hover: {
        widget->setAttribute(Qt::WA_UnderMouse);
        QEvent enter(QEvent::Enter);
        QCoreApplication::sendEvent(widget, &enter);
        break;
    }
    case Shown::focus:
        if (auto* segments = qobject_cast<SegmentedControl*>(widget))
            widget = segments->segment(0);
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
        if (m_chrome)
            drawChrome(painter, rect(), look.palette);
        else
            painter.fillRect(rect(), look.roles.panel);
    }

private:
    bool m_chrome;
};

NumberField* numberField(const char* prefix, double value)
{
    auto* field = new NumberField;
    field->setPrefix(prefix);
    field->setRange(0, 3000, 10);
    field->setValue(value);
    return field;
}

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
        {"Number field",
         [](Shown state) -> QWidget* {
             NumberField* made = numberField("W", 600);
             if (state == Shown::focus)
                 made->selectAll();
             if (state == Shown::last) {
                 made->selectAll();
                 QKeyEvent key(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, "12x");
                 QCoreApplication::sendEvent(made, &key);
             }
             return made;
         }},
        {"Segments",
         [](Shown state) -> QWidget* {
             auto* made = new SegmentedControl;
             made->addSegment("A");
             made->addSegment("B");
             made->setCurrentIndex(state == Shown::hover ? 1 : 0);
             return made;
         }},
        {"Slider",
         [](Shown) -> QWidget* {
             auto* made = new ValueSlider({16, 512, 4, SliderScale::Kind::logarithmic});
             made->setValue(80);
             return made;
         }},
        {"Switch",
         [](Shown state) -> QWidget* {
             auto* made = new Switch;
             made->setChecked(state != Shown::normal);
             return made;
         }},
        {"Color well",
         [](Shown state) -> QWidget* {
             auto* made = new ColorWell;
             made->setColor(state == Shown::focus ? QColor(0xE6, 0x9A, 0x5C)
                                                  : QColor(0x8C, 0x8C, 0x94, state == Shown::last ? 90 : 255));
             return made;
         }},
        {"Angle dial",
         [](Shown state) -> QWidget* {
             auto* made = new AngleDial;
             made->setAngle(state == Shown::focus ? 315 : 45);
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
            const bool small =
                qobject_cast<AngleDial*>(widget) || qobject_cast<ColorWell*>(widget) || qobject_cast<Switch*>(widget);
            grid->addWidget(widget, i + 1, column + 1, small ? Qt::AlignLeft : Qt::Alignment());
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

QWidget* layoutPanel()
{
    auto* panel = new QWidget;
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto* size = new Section("Window Size");
    size->addRow("Size", sideBySide({numberField("W", 600), numberField("H", 360)}));
    size->addRow("Position", sideBySide({numberField("X", 200), numberField("Y", -12)}));
    auto* fit = new QPushButton("Fit to Image");
    fit->setEnabled(false);
    size->addRow(sideBySide({fit, new QPushButton("Default Settings")}));
    column->addWidget(size);
    auto* background = new Section("Window Background");
    auto* kind = new SegmentedControl;
    for (const char* name : {"Gradient Fill", "Solid Color", "Image"})
        kind->addSegment(name);
    background->addRow(kind);
    background->addRow("Colors", atLeft({new ColorWell, new ColorWell}));
    auto* angle = numberField("", 0);
    angle->setUnit("°");
    angle->setFixedWidth(lookOf(nullptr).length(measure::halfControl));
    background->addRow("Angle:", atLeft({new AngleDial, angle}));
    background->addHint("For arrows and badges, use Add Image in the toolbar — not Window Background.");
    column->addWidget(background);
    auto* options = new Section("Window Options");
    auto* icon = new ValueSlider({16, 512, 4, SliderScale::Kind::logarithmic});
    icon->setValue(80);
    icon->setText([](double value) { return QString("%1 pt").arg(value); });
    options->addRow("Icon size", icon);
    auto* text = new ValueSlider({10, 16, 1});
    text->setValue(12);
    text->setTicks(true);
    text->setText([](double value) { return QString("%1 pt").arg(value); });
    options->addRow("Text size", text);
    auto* boxes = new QWidget;
    auto* boxColumn = new QVBoxLayout(boxes);
    boxColumn->setContentsMargins(0, 2, 0, 2);
    boxColumn->setSpacing(4);
    for (const char* name : {"Show Sidebar", "Show Icon Preview", "Show Item Info"})
        boxColumn->addWidget(new QCheckBox(name));
    options->addRow("Options", boxes);
    column->addWidget(options);
    column->addStretch(1);
    return panel;
}

QWidget* volumePanel()
{
    auto* panel = new QWidget;
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto* format = new Section("Volume Format");
    auto* kind = new QComboBox;
    kind->addItems({"Compressed (zlib · UDZO)", "Read/Write (UDRW)"});
    format->addRow(kind);
    auto* fileSystem = new SegmentedControl;
    fileSystem->addSegment("HFS+");
    fileSystem->addSegment("APFS");
    format->addRow("File system", fileSystem);
    auto* megabytes = numberField("", 250);
    megabytes->setUnit("MB");
    megabytes->setFixedWidth(lookOf(nullptr).length(measure::halfControl));
    format->addRow("Image size", atLeft({megabytes}));
    column->addWidget(format);
    auto* encryption = new Section("Encryption");
    auto* password = new PasswordField;
    password->setText("correct horse");
    encryption->addRow("Password", password);
    auto* repeat = new PasswordField;
    repeat->setText("correct");
    encryption->addRow("Repeat", repeat)->setError("The passwords do not match.");
    column->addWidget(encryption);
    auto* missing = new Section("Read Me.rtf");
    auto* note = new NoteBanner;
    note->setText("The file is missing.", "It was moved or deleted, so the image cannot be built.");
    note->setButton("Locate…");
    missing->addRow(note);
    auto* path = new PathLabel;
    path->setPath("/Users/mara/Projects/Larkspur/Documents/Larkspur.app");
    missing->addRow("Path", path);
    column->addWidget(missing);
    auto* shadow = new Section("Shadow");
    shadow->addSwitch()->setChecked(true);
    auto* alignment = new SegmentedControl;
    for (const char* name : {"align-left", "align-center", "align-right", "align-justified"})
        alignment->addSegment(name, name);
    auto* vertical = new SegmentedControl;
    for (const char* name : {"align-top", "align-middle", "align-bottom"})
        vertical->addSegment(name, name);
    shadow->addRow("Alignment", sideBySide({alignment, vertical}));
    column->addWidget(shadow);
    column->addStretch(1);
    return panel;
}

QWidget* thumbnailPanel()
{
    auto* panel = new QWidget;
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, 0);
    auto* section = new Section("Pictures");
    QImage light(120, 60, QImage::Format_ARGB32_Premultiplied);
    light.fill(Qt::transparent);
    QPainter painter(&light);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawEllipse(10, 5, 100, 50);
    painter.end();
    auto* white = new CheckerThumbnail({96, 54});
    white->setImage(light);
    auto* icon = new CheckerThumbnail({48, 48});
    icon->setImage(programIconPixmap(96, 1).toImage());
    icon->setInset(3);
    auto* none = new CheckerThumbnail({48, 48});
    none->setSign("warning");
    section->addRow(atLeft({white, icon, none}));
    column->addWidget(section);
    auto* empty =
        new EmptyState("arrange", "Nothing selected",
                       "Click an icon on the canvas, or switch to Background to arrange arrows and captions.");
    empty->setButton("Add Files…");
    column->addWidget(empty, 1);
    return panel;
}

QWidget* panelsBoard()
{
    auto* ground = new Ground(false);
    auto* row = new QHBoxLayout(ground);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (QWidget* panel : {layoutPanel(), volumePanel(), thumbnailPanel()}) {
        panel->setFixedWidth(lookOf(panel).length(300));
        row->addWidget(panel);
    }
    ground->setFixedHeight(lookOf(ground).length(700));
    return ground;
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

/// What Qt brings along: its panels follow by palette and style alone.
QList<Board> dialogBoards()
{
    auto* message = new QMessageBox(QMessageBox::Warning, "Velmora", "Save the changes to “Larkspur”?",
                                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    message->setInformativeText("Unsaved changes will be lost.");
    auto* color = new QColorDialog(QColor(0x2E, 0x7A, 0xF5));
    color->setOptions(QColorDialog::ShowAlphaChannel | QColorDialog::DontUseNativeDialog);
    auto* file = new QFileDialog;
    file->setOption(QFileDialog::DontUseNativeDialog);
    file->setDirectory("/usr/share");
    auto* font = new QFontDialog;
    font->setOption(QFontDialog::DontUseNativeDialog);

    auto* lists = new Ground(false);
    auto* row = new QHBoxLayout(lists);
    auto* list = new QListWidget;
    for (int i = 0; i < 40; ++i)
        list->addItem(QString("Item %1").arg(i));
    list->setCurrentRow(2);
    row->addWidget(list);
    auto* text = new QPlainTextEdit("A text that is edited.\nIn several lines.");
    row->addWidget(text);
    auto* popUp = new QComboBox(lists);
    popUp->addItems({"Fill (crop)", "Fit (letterbox)", "Stretch"});
    popUp->setCurrentIndex(1);
    row->addWidget(popUp, 0, Qt::AlignTop);
    lists->setFixedSize(560, 220);
    return {{"message", message}, {"color", color}, {"file", file}, {"font", font}, {"lists", lists}};
}

} // namespace

QList<Board> makeBoards()
{
    QList<Board> boards{{"controls", controlsBoard()},
                        {"tools", toolsBoard()},
                        {"sheet", sheetBoard()},
                        {"menus", menuBoard()},
                        {"panels", panelsBoard()}};
    return boards + dialogBoards();
}

} // namespace velmora
