#include "app/toolbar.h"

#include "app/kit/accessibility.h"
#include "app/kit/look.h"
#include "app/kit/paint.h"
#include "app/kit/roving_focus.h"
#include "app/text.h"
#include "editor/app_state.h"
#include "l10n/labels.h"
#include "l10n/language_manager.h"

#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

namespace velmora
{
namespace
{

/// A line between two groups of tools.
class Rule : public QWidget
{
public:
    Rule() { setFixedHeight(lookOf(this).length(17)); }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const Look& look = lookOf(this);
        const int inset = look.length(4); // beside the toolbar's own 6
        drawHorizontalHairline(painter, inset, QWidget::width() - inset, height() / 2, look.palette.dividerColor);
    }
};

} // namespace

Toolbar::Toolbar(const AppContext& context, QWidget* parent)
    : QWidget(parent),
      m_context(context),
      m_focus(new RovingFocus(this)),
      m_addFiles(addTool("add-files", "toolbar.add_files", "addFiles")),
      m_addImage(addTool("add-image", "toolbar.add_image", "addImage")),
      m_addText(addTool("add-text", "toolbar.add_text", "addText")),
      m_background(addMode("background", "toolbar.background", "background")),
      m_contents(addMode("contents", "toolbar.contents", "contents")),
      m_licenses(addMode("licenses", "toolbar.licenses", "licenses")),
      m_remove(addTool("remove", "toolbar.remove", "remove")),
      m_build(addTool("build", "toolbar.build", "build", ToolButton::Kind::filled))
{
    setObjectName(QStringLiteral("toolbar"));
    setAccessibleName(qtText(Labels::toolbar));
    setAccessibleRole(this, QAccessible::ToolBar);
    setFixedWidth(lookOf(this).length(width));
    layOut();
    connectTools();
    retranslate();
    refresh();
}

ToolButton* Toolbar::addTool(const char* icon, const char* key, const char* name, ToolButton::Kind kind)
{
    auto* button = new ToolButton(QLatin1String(icon), localized(key), kind, this);
    button->setObjectName(QLatin1String("toolbar.") + QLatin1String(name));
    m_focus->add(button);
    m_tools.push_back({button, key});
    return button;
}

ToolButton* Toolbar::addMode(const char* icon, const char* key, const char* name)
{
    ToolButton* button = addTool(icon, key, name);
    button->setCheckable(true);
    return button;
}

void Toolbar::layOut()
{
    const Look& look = lookOf(this);
    auto* tools = new QWidget;
    tools->setObjectName(QStringLiteral("toolbar.tools"));
    auto* column = new QVBoxLayout(tools);
    column->setContentsMargins(look.length(6), look.length(8), look.length(7), look.length(8));
    column->setSpacing(look.length(4));
    const auto addRule = [column] {
        const int spacing = column->spacing();
        column->addSpacing(-spacing);
        column->addWidget(new Rule);
        column->addSpacing(-spacing);
    };
    for (ToolButton* button : {m_addFiles, m_addImage, m_addText})
        column->addWidget(button);
    addRule();
    auto* modes = new QWidget;
    modes->setAccessibleName(qtText(Labels::modes));
    setAccessibleRole(modes, QAccessible::Grouping);
    auto* ofModes = new QVBoxLayout(modes);
    ofModes->setContentsMargins({});
    ofModes->setSpacing(column->spacing());
    for (ToolButton* button : {m_background, m_contents, m_licenses})
        ofModes->addWidget(button);
    column->addWidget(modes);
    addRule();
    column->addWidget(m_remove);
    column->addStretch(1);

    auto* scroller = new QScrollArea;
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->setWidgetResizable(true);
    scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroller->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // the wheel and the focus move it
    scroller->setFocusPolicy(Qt::NoFocus);
    scroller->setWidget(tools);
    tools->setAutoFillBackground(false); // which setWidget() switches on
    scroller->viewport()->setAutoFillBackground(false);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, look.length(8));
    layout->setSpacing(0);
    layout->addWidget(scroller, 1);
    auto* bottom = new QVBoxLayout;
    bottom->setContentsMargins(look.length(6), 0, look.length(7), 0);
    bottom->addWidget(m_build);
    layout->addLayout(bottom);
    connect(m_focus, &RovingFocus::moved, scroller, [scroller](QWidget* control) {
        if (scroller->widget()->isAncestorOf(control))
            scroller->ensureWidgetVisible(control);
    });
}

void Toolbar::connectTools()
{
    AppState& state = m_context.state;
    connect(m_addFiles, &ToolButton::clicked, &state, [&state] { state.addFilesViaPanel(); });
    connect(m_addImage, &ToolButton::clicked, &state, [&state] { state.presentOverlayPicker(); });
    connect(m_addText, &ToolButton::clicked, &state, [&state] { state.addTextOverlay(); });
    connect(m_background, &ToolButton::clicked, &state, [&state] { state.editBackground(); });
    connect(m_contents, &ToolButton::clicked, &state, [&state] { state.editContents(); });
    connect(m_licenses, &ToolButton::clicked, &state, [&state] { state.editLicenses(); });
    connect(m_remove, &ToolButton::clicked, &state, [&state] { state.removeSelectedOrBackground(); });
    connect(m_build, &ToolButton::clicked, this, [this, &state] {
        if (state.isBuilding())
            emit buildShown();
        else
            state.build();
    });
    // A press on the chosen mode unchecks its button; the state says what is chosen.
    for (ToolButton* mode : {m_background, m_contents, m_licenses})
        connect(mode, &ToolButton::clicked, this, &Toolbar::refresh);
    for (const auto changed :
         {&AppState::editorModeChanged, &AppState::selectionChanged, &AppState::overlaySelectionChanged,
          &AppState::textSelectionChanged, &AppState::isBuildingChanged, &AppState::projectChanged})
        connect(&state, changed, this, &Toolbar::refresh);
    connect(&m_context.languages, &LanguageManager::changed, this, &Toolbar::retranslate);
}

void Toolbar::refresh()
{
    const AppState& state = m_context.state;
    m_background->setChecked(state.editorMode() == EditorMode::background);
    m_contents->setChecked(state.editorMode() == EditorMode::contents);
    m_licenses->setChecked(state.editorMode() == EditorMode::licenses);
    m_remove->setEnabled(state.canRemoveSelection());
    m_build->setBusy(state.isBuilding());
    m_build->setAccessibleDescription(state.isBuilding() ? qtText(Labels::buildIsRunning) : QString());
}

void Toolbar::retranslate()
{
    for (const Tool& tool : m_tools) {
        tool.button->setText(localized(tool.key));
        tool.button->setAccessibleName(localized(tool.key));
    }
}

void Toolbar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ThemePalette& colors = lookOf(this).palette;
    drawChrome(painter, rect(), colors);
    drawVerticalHairline(painter, QWidget::width() - 1, 0, height(), colors.dividerColor);
}

} // namespace velmora
