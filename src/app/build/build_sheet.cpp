#include "app/build/build_sheet.h"

#include "app/build/build_note.h"
#include "app/build/drive_picture.h"
#include "app/clipped_label.h"
#include "app/kit/icons.h"
#include "app/kit/log_view.h"
#include "app/kit/progress_line.h"
#include "app/kit/step_list.h"
#include "app/plain_widgets.h"
#include "app/text.h"
#include "editor/app_state.h"
#include "l10n/labels.h"
#include "platform/ports/desktop.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <array>
#include <system_error>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

constexpr double sheetWidth = 700;
constexpr double pictureSize = 48;
constexpr double rowHeight = 28;
/// Kept free for the note that a result may bring, so that the sheet has one size from start to finish.
constexpr double noteRoom = 76;
constexpr int clockPause = 200; // milliseconds

const char* stepLabel(BuildStep step)
{
    switch (step) {
    case BuildStep::check:
        return Labels::stepCheck;
    case BuildStep::staging:
        return Labels::stepStaging;
    case BuildStep::background:
        return Labels::stepBackground;
    case BuildStep::create:
        return Labels::stepCreate;
    case BuildStep::layout:
        return Labels::stepLayout;
    case BuildStep::volumeIcon:
        return Labels::stepVolumeIcon;
    case BuildStep::detach:
        return Labels::stepDetach;
    case BuildStep::convert:
        return Labels::stepConvert;
    case BuildStep::sign:
        return Labels::stepSign;
    case BuildStep::notarize:
        return Labels::stepNotarize;
    }
    return "";
}

struct ShownLine {
    QString text;
    LogLine kind = LogLine::message;
};

/// A line of the log as it is shown: with signs that every font has in the place of coloured pictures.
ShownLine shownLine(const QString& line)
{
    struct Mark {
        QString logged;
        QString shown;
        LogLine kind;
    };
    static const std::array marks{
        Mark{QStringLiteral("$ "), QStringLiteral("$ "), LogLine::command},
        Mark{QStringLiteral("⚠️ "), QStringLiteral("! "), LogLine::warning},
        Mark{QStringLiteral("❌ "), QStringLiteral("× "), LogLine::error},
        Mark{QStringLiteral("✅ "), QStringLiteral("✓ "), LogLine::success},
    };
    for (const Mark& mark : marks) {
        if (line.startsWith(mark.logged))
            return {mark.shown + line.mid(mark.logged.size()), mark.kind};
    }
    return {line};
}

Step shownStep(const BuildProgress::Row& row)
{
    const long seconds = static_cast<long>(row.spent.count());
    const QString duration = QStringLiteral(", %1 seconds").arg(seconds);
    Step step{.name = qtText(stepLabel(row.step)), .time = qtText(clockText(row.spent))};
    switch (row.state) {
    case BuildProgress::State::waiting:
        step.time.clear();
        step.spoken = QStringLiteral("waiting");
        break;
    case BuildProgress::State::running:
        step.state = StepState::running;
        step.spoken = QStringLiteral("running") + duration;
        break;
    case BuildProgress::State::done:
        step.state = StepState::done;
        step.spoken = QStringLiteral("done") + duration;
        break;
    case BuildProgress::State::failed:
        step.state = StepState::failed;
        step.spoken = QStringLiteral("failed") + duration;
        break;
    }
    return step;
}

/// The volume's icon at the size at which it is shown.
QPixmap shownIcon(const QImage& icon, int size, double ratio)
{
    const int pixels = qRound(size * ratio);
    QPixmap shown = QPixmap::fromImage(icon.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    shown.setDevicePixelRatio(ratio);
    return shown;
}

/// The mark of a failed build: a sign on a round ground.
QPixmap failureMark(const QWidget& widget)
{
    const Look& look = lookOf(&widget);
    const double ratio = widget.devicePixelRatioF();
    const int size = look.length(pictureSize);
    QPixmap mark(qRound(size * ratio), qRound(size * ratio));
    mark.setDevicePixelRatio(ratio);
    mark.fill(Qt::transparent);
    QPainter painter(&mark);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(look.roles.errorGround);
    painter.drawEllipse(QRectF(0, 0, size, size).adjusted(1, 1, -1, -1));
    const int sign = look.length(24);
    painter.drawPixmap(QPoint((size - sign) / 2, (size - sign) / 2),
                       iconPixmap(QStringLiteral("warning"), sign, ratio, {look.roles.error, Qt::transparent}));
    return mark;
}

BuildProgress::Time now()
{
    return std::chrono::steady_clock::now();
}

} // namespace

BuildSheet::BuildSheet(const AppContext& context, int margin, QWidget* parent)
    : QWidget(parent), m_context(context), m_margin(margin), m_bar(new ProgressLine), m_note(new BuildNote)
{
    const Look& look = lookOf(this);
    setObjectName(QStringLiteral("build"));
    m_bar->setObjectName(QStringLiteral("build.bar"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(0);
    layout->addWidget(makeHead());
    layout->addSpacing(look.length(16));
    layout->addWidget(m_bar);
    layout->addSpacing(look.length(16));
    layout->addWidget(makeBody(), 1);
    layout->addSpacing(look.length(20));
    layout->addWidget(makeButtons());
    connectButtons();

    m_clock.setInterval(clockPause);
    connect(&m_clock, &QTimer::timeout, this, &BuildSheet::tick);
    const AppState* state = &m_context.state;
    connect(state, &AppState::isBuildingChanged, this, [this, state] {
        if (state->isBuilding())
            begin();
    });
    connect(state, &AppState::buildStepChanged, this, [this](BuildStep step, double) { reach(step); });
    connect(state, &AppState::buildLogAppended, this, [this](const std::string& text) { appendLog(qtText(text)); });
    connect(state, &AppState::buildFinished, this, &BuildSheet::end);
}

QWidget* BuildSheet::makeHead()
{
    const Look& look = lookOf(this);
    auto* head = new QWidget;
    m_picture = new QLabel;
    m_picture->setAlignment(Qt::AlignCenter);
    m_picture->setFixedSize(look.length(pictureSize), look.length(pictureSize));
    m_title = new ClippedLabel(Type::sheetTitle, 1, QPalette::WindowText);
    m_title->setObjectName(QStringLiteral("build.title"));
    m_subtitle = new ClippedLabel(Type::control, 1, QPalette::PlaceholderText);
    m_subtitle->setObjectName(QStringLiteral("build.subtitle"));
    m_time = makeLabel(QString(), Type::sheetTitle);
    m_time->setObjectName(QStringLiteral("build.time"));
    m_timeCaption = makeHint(QString(), Type::control);
    m_timeCaption->setWordWrap(false);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(look.length(2));
    texts->addStretch(1);
    texts->addWidget(m_title);
    texts->addWidget(m_subtitle);
    texts->addStretch(1);
    auto* times = new QVBoxLayout;
    times->setSpacing(look.length(2));
    times->addStretch(1);
    times->addWidget(m_time, 0, Qt::AlignRight);
    times->addWidget(m_timeCaption, 0, Qt::AlignRight);
    times->addStretch(1);
    auto* layout = new QHBoxLayout(head);
    layout->setContentsMargins({});
    layout->setSpacing(look.length(16));
    layout->addWidget(m_picture);
    layout->addLayout(texts, 1);
    layout->addLayout(times);
    return head;
}

QWidget* BuildSheet::makeBody()
{
    const Look& look = lookOf(this);
    auto* body = new QWidget;
    m_steps = new StepList;
    m_steps->setObjectName(QStringLiteral("build.steps"));
    m_steps->setAccessibleName(qtText(Labels::buildSteps));
    m_log = new LogView;
    m_log->setObjectName(QStringLiteral("build.log"));
    m_log->setAccessibleName(qtText(Labels::buildLog));
    m_log->setJumpLabel(qtText(Labels::jumpToEnd));
    m_note->hide();

    auto* columns = new QHBoxLayout;
    columns->setSpacing(look.length(20));
    columns->addWidget(m_steps, 0, Qt::AlignTop);
    columns->addWidget(m_log, 1);
    auto* layout = new QVBoxLayout(body);
    layout->setContentsMargins({});
    layout->setSpacing(look.length(12));
    layout->addWidget(m_note);
    layout->addLayout(columns, 1);
    return body;
}

QPushButton* BuildSheet::addButton(QHBoxLayout& row, const char* label, const char* name)
{
    QPushButton* button = makeLargeButton(qtText(label), name);
    button->setAutoDefault(false);
    row.addWidget(button);
    return button;
}

QWidget* BuildSheet::makeButtons()
{
    auto* buttons = new QWidget;
    auto* row = new QHBoxLayout(buttons);
    row->setContentsMargins({});
    row->setSpacing(lookOf(this).length(8));
    m_copy = addButton(*row, Labels::copyLog, "build.copyLog");
    m_copy->setIcon(toolIcon(QStringLiteral("copy")));
    m_save = addButton(*row, Labels::saveLog, "build.saveLog");
    row->addStretch(1);
    m_hint = makeHint(qtText(Labels::buildGoesOn), Type::hint);
    m_hint->setWordWrap(false);
    row->addWidget(m_hint);
    m_hide = addButton(*row, Labels::hide, "build.hide");
    m_openFolder = addButton(*row, Labels::openImageFolder, "build.openFolder");
    m_close = addButton(*row, Labels::close, "build.close");
    m_again = addButton(*row, Labels::buildAgain, "build.again");
    m_reveal = addButton(*row, Labels::reveal, "build.reveal");
    return buttons;
}

void BuildSheet::connectButtons()
{
    AppState& state = m_context.state;
    connect(m_copy, &QPushButton::clicked, this, &BuildSheet::copyLog);
    connect(m_save, &QPushButton::clicked, this, [&state] { state.saveBuildLogViaPanel(); });
    connect(m_hide, &QPushButton::clicked, this, &BuildSheet::closeWanted);
    connect(m_close, &QPushButton::clicked, this, &BuildSheet::closeWanted);
    connect(m_reveal, &QPushButton::clicked, this, [&state] { state.revealLastOutput(); });
    connect(m_openFolder, &QPushButton::clicked, this,
            [this, &state] { m_context.desktop.openFolder(state.buildOutput().parent_path()); });
    connect(m_again, &QPushButton::clicked, this, [this, &state] {
        emit closeWanted();
        state.build();
    });
    connect(m_note->button(), &QPushButton::clicked, this, &BuildSheet::applyRemedy);
    auto* copy = new QShortcut(QKeySequence::Copy, this);
    copy->setContext(Qt::WidgetWithChildrenShortcut);
    connect(copy, &QShortcut::activated, this, &BuildSheet::copyLog);
}

QSize BuildSheet::sizeHint() const
{
    const Look& look = lookOf(this);
    const double rows = static_cast<double>(std::max<qsizetype>(m_steps->steps().size(), 7));
    const double inner = pictureSize + 16 + 6 + 16 + rows * rowHeight + noteRoom + 20 + measure::largeControlHeight;
    return {look.length(sheetWidth), look.length(inner) + 2 * m_margin};
}

QWidget* BuildSheet::firstControl() const
{
    if (!m_progress.isOver())
        return m_hide;
    if (m_context.state.buildError())
        return m_failure.remedy == BuildRemedy::none ? m_again : m_note->button();
    return m_reveal;
}

void BuildSheet::begin()
{
    const AppState& state = m_context.state;
    m_progress = BuildProgress(neededSteps(state.project()), now());
    m_log->clearLog();
    m_note->hide();
    m_bar->setOutcome(ProgressLine::Outcome::open);
    m_bar->show();
    m_title->setText(qtText(Labels::building).arg(qtPath(state.buildOutput().filename())));
    m_subtitle->setText(qtText(Labels::buildingTo).arg(qtPath(state.buildOutput().parent_path())));
    m_timeCaption->setText(qtText(Labels::elapsed));
    for (QWidget* shown : {static_cast<QWidget*>(m_hide), static_cast<QWidget*>(m_hint), static_cast<QWidget*>(m_time),
                           static_cast<QWidget*>(m_timeCaption)})
        shown->show();
    for (QPushButton* later : {m_openFolder, m_close, m_again, m_reveal})
        later->hide();
    showPicture();
    showSteps();
    updateGeometry();
    tick();
    m_clock.start();
    emit openWanted();
}

void BuildSheet::reach(BuildStep step)
{
    if (!m_progress.reach(step, now()))
        return;
    tick();
    announce(qtText(stepLabel(step)));
}

void BuildSheet::end()
{
    const AppState& state = m_context.state;
    m_clock.stop();
    m_progress.finish(!state.buildError(), now());
    tick();
    m_hide->hide();
    m_hint->hide();
    m_close->show();
    if (state.buildError())
        showFailure();
    else
        showSuccess();
    showPicture();
    emit openWanted(); // also when it was hidden: whoever did that wants to know now
}

void BuildSheet::showSuccess()
{
    const AppState& state = m_context.state;
    std::error_code failure;
    const std::uintmax_t bytes = fs::file_size(state.buildOutput(), failure);
    const QString folder = qtPath(state.buildOutput().parent_path());
    m_title->setText(qtText(Labels::buildReady).arg(qtPath(state.buildOutput().filename())));
    m_subtitle->setText(failure ? folder : qtText(Labels::sizeInFolder).arg(qtText(sizeText(bytes)), folder));
    m_timeCaption->setText(qtText(Labels::buildTime));
    m_bar->setOutcome(ProgressLine::Outcome::success);
    m_openFolder->show();
    m_reveal->show();
    m_reveal->setDefault(true);
    if (!state.buildWarnings().empty()) {
        QStringList sentences;
        for (const std::string& warning : state.buildWarnings())
            sentences << qtText(warning);
        m_note->show(BuildNote::Kind::warning, qtText(Labels::buildLacksSomething), sentences.join(QLatin1Char('\n')));
    }
    announce(m_title->text());
}

void BuildSheet::showFailure()
{
    const AppState& state = m_context.state;
    m_failure = explainFailure(*state.buildError(), state.buildErrorField(), state.project());
    m_title->setText(qtText(Labels::buildFailed));
    const BuildStep* step = m_progress.current();
    const QString time = qtText(clockText(m_progress.elapsed(now())));
    m_subtitle->setText(step ? qtText(Labels::stoppedAt).arg(qtText(stepLabel(*step)), time) : QString());
    m_bar->hide(); // it will go no further
    m_time->hide();
    m_timeCaption->hide();
    m_again->show();
    m_again->setDefault(true);
    QString remedy;
    switch (m_failure.remedy) {
    case BuildRemedy::none:
        break;
    case BuildRemedy::showItem:
        remedy = qtText(Labels::showItem);
        break;
    case BuildRemedy::addFiles:
        remedy = localized("toolbar.add_files");
        break;
    case BuildRemedy::volumeTab:
        remedy = qtText(Labels::showInVolume);
        break;
    case BuildRemedy::layoutTab:
        remedy = qtText(Labels::showInLayout);
        break;
    case BuildRemedy::textTab:
        remedy = qtText(Labels::showInText);
        break;
    case BuildRemedy::showOverlay:
    case BuildRemedy::showCaption:
        remedy = qtText(Labels::showInArrange);
        break;
    }
    m_note->show(BuildNote::Kind::error, qtText(m_failure.reason), qtText(m_failure.detail), remedy);
    announce(m_title->text() + QStringLiteral(". ") + qtText(m_failure.reason));
}

void BuildSheet::tick()
{
    const auto time = now();
    m_time->setText(qtText(clockText(m_progress.elapsed(time))));
    m_bar->setFraction(m_progress.filled(time));
    showSteps();
}

void BuildSheet::showSteps()
{
    QList<Step> steps;
    for (const BuildProgress::Row& row : m_progress.rows(now()))
        steps << shownStep(row);
    m_steps->setSteps(steps);
}

void BuildSheet::showPicture()
{
    const AppState& state = m_context.state;
    if (m_progress.isOver() && state.buildError()) {
        m_picture->setPixmap(failureMark(*this));
        return;
    }
    const SmallPicture& icon = m_icon.read(state.project().volumeIconPath);
    const int size = lookOf(this).length(pictureSize);
    m_picture->setPixmap(icon.isReadable() ? shownIcon(icon.image, size, devicePixelRatioF())
                                           : drivePicture(size, devicePixelRatioF()));
}

bool BuildSheet::event(QEvent* event)
{
    // The mark has the theme's colours, and both pictures the screen's resolution.
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::Show)
        showPicture();
    return QWidget::event(event);
}

void BuildSheet::appendLog(const QString& text)
{
    LogLine kind = LogLine::message;
    const QString whole = text.endsWith(QLatin1Char('\n')) ? text.chopped(1) : text;
    for (const QString& line : whole.split(QLatin1Char('\n'))) {
        const ShownLine shown = shownLine(line);
        // An error's further lines belong to it.
        if (kind != LogLine::error || shown.kind != LogLine::message)
            kind = shown.kind;
        m_log->append(shown.text, kind);
    }
}

void BuildSheet::announce(const QString& text)
{
    m_steps->setAccessibleDescription(text);
    QAccessibleEvent alert(m_steps, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void BuildSheet::copyLog()
{
    const bool part = m_log->textCursor().hasSelection();
    QGuiApplication::clipboard()->setText(part ? m_log->copyText() : qtText(m_context.state.buildLog()));
}

void BuildSheet::applyRemedy()
{
    AppState& state = m_context.state;
    emit closeWanted();
    switch (m_failure.remedy) {
    case BuildRemedy::none:
        break;
    case BuildRemedy::showItem:
        state.editContents();
        state.selectItem(m_failure.element);
        state.setInspectorTab(InspectorTab::fileInfo);
        break;
    case BuildRemedy::addFiles:
        state.addFilesViaPanel();
        break;
    case BuildRemedy::volumeTab:
        state.setInspectorTab(InspectorTab::volume);
        break;
    case BuildRemedy::layoutTab:
        state.setInspectorTab(InspectorTab::layout);
        break;
    case BuildRemedy::textTab:
        state.setInspectorTab(InspectorTab::text);
        break;
    case BuildRemedy::showOverlay:
        state.selectOverlay(m_failure.element);
        break;
    case BuildRemedy::showCaption:
        state.selectTextOverlay(m_failure.element);
        break;
    }
}

} // namespace velmora
