#include "app/main_window.h"

#include "app/about.h"
#include "app/arrow_picker.h"
#include "app/build/build_sheet.h"
#include "app/dropped_document.h"
#include "app/focus_areas.h"
#include "app/inspector/inspector.h"
#include "app/kit/icons.h"
#include "app/kit/sheet_host.h"
#include "app/license_editor.h"
#include "app/menus.h"
#include "app/settings/settings_window.h"
#include "app/text.h"
#include "app/toolbar.h"
#include "app/typing.h"
#include "app/window_size.h"
#include "canvas/canvas_elements.h"
#include "canvas/canvas_view.h"
#include "editor/app_state.h"
#include "l10n/labels.h"
#include "l10n/language_manager.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QShortcut>
#include <QStackedWidget>
#include <QTimer>

#include <utility>

namespace velmora
{
namespace
{

constexpr QSize smallestSize(960, 640);

/// Selects the element after the selected one, round and round.
void selectNext(AppState& state)
{
    const auto elements = canvasElements(state.project(), state.editorMode());
    if (!elements.empty())
        select(state, neighbour(state, true).value_or(elements.front()));
}

} // namespace

MainWindow::MainWindow(const AppContext& context)
    : m_context(context),
      m_frame(new QWidget),
      m_toolbar(new Toolbar(context)),
      m_work(new QStackedWidget),
      m_canvas(new CanvasView(context.state, context.themes, context.arrows, context.pictures, nullptr)),
      m_license(new LicenseEditor(context)),
      m_inspector(new Inspector(context)),
      m_sheets(nullptr),
      m_buildSheet(nullptr)
{
    setObjectName(QStringLiteral("mainWindow"));
    setWindowIcon(programIcon());
    setMinimumSize(smallestSize);
    setAcceptDrops(true);
    layOut();
    m_sheets = new SheetHost(m_frame);
    m_buildSheet = new BuildSheet(m_context, m_sheets->padding(), m_frame);
    m_buildSheet->hide();
    addMenus();
    addShortcuts();
    new HistoryKeys(this);
    connectState();
    updateTitle();
    showMode();
}

MainWindow::~MainWindow() = default;

void MainWindow::layOut()
{
    setCentralWidget(m_frame);
    m_work->setObjectName(QStringLiteral("workArea"));
    m_work->addWidget(m_canvas);
    m_work->addWidget(m_license);
    auto* columns = new QHBoxLayout(m_frame);
    columns->setContentsMargins({});
    columns->setSpacing(0);
    columns->addWidget(m_toolbar);
    columns->addWidget(m_work, 1);
    columns->addWidget(m_inspector);
}

void MainWindow::addMenus()
{
    m_menus = std::make_unique<Menus>(*menuBar(), m_context,
                                      MenuTargets{
                                          .showAbout = [this] { showAboutPanel(m_context.desktop, this); },
                                          .openSettings = [this](int tab) { openSettings(tab); },
                                          .closeWindow = [this] { close(); },
                                          .fillScreen = [this] { WindowPrefs::fillScreen(*this); },
                                          .defaultSize = [this] { WindowPrefs::defaultSize(*this); },
                                          .zoomIn = [this] { m_canvas->zoomIn(); },
                                          .zoomOut = [this] { m_canvas->zoomOut(); },
                                          .zoomToFit = [this] { m_canvas->zoomToFit(); },
                                          .selectNext = [this] { selectNext(m_context.state); },
                                          .sheetIsOpen = [this] { return m_sheets->isOpen(); },
                                      });
}

void MainWindow::addShortcuts()
{
    const auto cycle = [this](int direction) {
        if (m_sheets->isOpen())
            return;
        cycleFocusArea(focusAreas(), direction);
    };
    connect(new QShortcut(QKeySequence(Qt::Key_F6), this), &QShortcut::activated, this, [cycle] { cycle(1); });
    connect(new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F6), this), &QShortcut::activated, this,
            [cycle] { cycle(-1); });
}

QList<QWidget*> MainWindow::focusAreas() const
{
    return {m_toolbar, m_work, m_inspector->panelArea(), m_inspector->tabColumn()};
}

bool MainWindow::focusNextPrevChild(bool next)
{
    return stepFocus(focusAreas(), next) || QMainWindow::focusNextPrevChild(next);
}

void MainWindow::connectState()
{
    const AppState* state = &m_context.state;
    connect(state, &AppState::documentURLChanged, this, &MainWindow::updateTitle);
    connect(state, &AppState::isDirtyChanged, this, &MainWindow::updateTitle);
    connect(state, &AppState::editorModeChanged, this, &MainWindow::showMode);
    connect(state, &AppState::showArrowPickerChanged, this, &MainWindow::showPicker);
    connect(&m_context.languages, &LanguageManager::changed, this, [this] {
        m_context.state.setShowArrowPicker(false);
        delete std::exchange(m_picker, nullptr); // the next one has the new texts
        m_canvas->update();
    });
    connect(m_toolbar, &Toolbar::buildShown, this, &MainWindow::openBuildSheet);
    connect(m_buildSheet, &BuildSheet::openWanted, this, &MainWindow::openBuildSheet);
    connect(m_buildSheet, &BuildSheet::closeWanted, this, &MainWindow::closeSheet);
    connect(m_canvas, &CanvasView::editSelectionRequested, m_inspector, [this] {
        m_context.state.setInspectorTab(InspectorTab::arrange);
        m_inspector->focusFirstField();
    });
    connect(m_canvas, &CanvasView::boxDragged, m_inspector, &Inspector::showDraggedBox);
    connect(m_sheets, &SheetHost::escapePressed, this, &MainWindow::closeSheet);
    connect(m_sheets, &SheetHost::openChanged, this, [this](bool open) {
        m_menus->update();
        if (!open && m_buildSheetWaits)
            openBuildSheet();
    });
}

void MainWindow::showAtStart()
{
    m_context.state.migrateLegacyIconCoordinates();
    WindowPrefs::sizeNewWindow(*this, m_context.settings);
    m_canvas->setFocus(Qt::OtherFocusReason);
    show();
}

void MainWindow::openSettings(int tab)
{
    if (!m_settings)
        m_settings = new SettingsWindow(m_context,
                                        {.fillScreen = [this] { WindowPrefs::fillScreen(*this); },
                                         .defaultSize = [this] { WindowPrefs::defaultSize(*this); }},
                                        this);
    m_settings->showTab(tab);
}

void MainWindow::updateTitle()
{
    const AppState& state = m_context.state;
    // Where the platform has a mark of its own it stands at "[*]"; a name that holds one is no mark.
    setWindowTitle(qtText(state.documentName()).replace(QLatin1String("[*]"), QLatin1String("[*][*]")) +
                   QLatin1String("[*]") + (state.isDirty() ? QString::fromUtf8(Labels::editedMark) : QString()));
    setWindowModified(state.isDirty());
    setWindowFilePath(state.documentURL() ? qtPath(*state.documentURL()) : QString());
}

void MainWindow::showMode()
{
    const bool license = m_context.state.editorMode() == EditorMode::licenses;
    m_work->setCurrentWidget(license ? static_cast<QWidget*>(m_license) : m_canvas);
}

void MainWindow::showPicker()
{
    if (!m_context.state.showArrowPicker()) {
        if (m_sheets->content() == m_picker)
            m_sheets->close();
        return;
    }
    if (!m_picker)
        m_picker = new ArrowPicker(m_context, m_sheets->padding(), m_frame);
    m_sheets->open(m_picker, m_picker->prepare());
}

void MainWindow::openBuildSheet()
{
    m_buildSheetWaits = m_context.state.showArrowPicker(); // nothing is taken from under somebody's hands
    if (!m_buildSheetWaits)
        m_sheets->open(m_buildSheet, m_buildSheet->firstControl());
}

void MainWindow::closeSheet()
{
    if (m_context.state.showArrowPicker())
        m_context.state.setShowArrowPicker(false);
    else
        m_sheets->close();
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    commitTyping();
    if (!m_context.state.confirmQuit()) {
        event->ignore();
        return;
    }
    event->accept();
    emit closed();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (!m_sheets->isOpen() && droppedDocument(event->mimeData()))
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    const auto document = droppedDocument(event->mimeData());
    if (!document)
        return;
    event->acceptProposedAction();
    // The program that the file comes from waits until this returns; a question may follow.
    QTimer::singleShot(0, this, [this, file = *document] {
        commitTyping();
        m_context.state.openHandedOver(file);
    });
}

} // namespace velmora
