#include "app/inspector/inspector.h"

#include "app/focus_areas.h"
#include "app/inspector/panel.h"
#include "app/kit/paint.h"
#include "app/kit/plain_labels.h"
#include "app/kit/tab_rail.h"
#include "app/mnemonics.h"
#include "app/text.h"
#include "editor/app_state.h"
#include "l10n/labels.h"
#include "l10n/language_manager.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace velmora
{
namespace
{

/// A tab of the inspector; the order is that of AppState::inspectorTab.
struct Tab {
    const char* key;
    const char* icon;
    const char* name;
    InspectorPanel* (*make)(const AppContext&);
};

constexpr std::array tabs{
    Tab{"tab.layout", "layout", "layout", makeLayoutPanel},
    Tab{"tab.volume", "volume", "volume", makeVolumePanel},
    Tab{"tab.file_info", "file-info", "fileInfo", makeFileInfoPanel},
    Tab{"tab.arrange", "arrange", "arrange", makeArrangePanel},
    Tab{"tab.text", "text", "text", makeTextPanel},
};

QString helpOf(const Tab& tab)
{
    return localized(std::string(tab.key) + "_help");
}

QScrollArea* makePage(const QString& name)
{
    auto* page = new QScrollArea;
    page->setObjectName(name);
    page->setFrameShape(QFrame::NoFrame);
    page->setWidgetResizable(true);
    page->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    page->setFocusPolicy(Qt::NoFocus);
    page->viewport()->setAutoFillBackground(false);
    return page;
}

} // namespace

Inspector::Inspector(const AppContext& context, QWidget* parent)
    : QWidget(parent),
      m_context(context),
      m_title(makeLabel(QString(), Type::panelHead)),
      m_stack(new QStackedWidget),
      m_rail(new TabRail),
      m_panelArea(new QWidget)
{
    const Look& look = lookOf(this);
    setObjectName(QStringLiteral("inspector"));
    setAccessibleName(qtText(Labels::inspector));
    setFixedWidth(look.length(width));
    setBackgroundRole(QPalette::AlternateBase); // what fills itself in here has the panel's ground
    m_panelArea->setObjectName(QStringLiteral("inspector.panel"));
    m_panelArea->setAccessibleName(qtText(Labels::inspectorPanel));
    m_rail->setObjectName(QStringLiteral("inspector.tabs"));
    m_title->setObjectName(QStringLiteral("inspector.title"));
    m_title->setFixedHeight(look.length(44));
    m_title->setContentsMargins(look.length(measure::panelPadding), 0, 0, 0);

    auto* panel = new QVBoxLayout(m_panelArea);
    panel->setContentsMargins(1, 0, 1, 0);
    panel->setSpacing(0);
    panel->addWidget(m_title);
    panel->addSpacing(1);
    panel->addWidget(m_stack, 1);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addWidget(m_panelArea, 1);
    layout->addWidget(m_rail);

    for (std::size_t i = 0; i < tabs.size(); ++i) {
        ToolButton* button = m_rail->addTab(QLatin1String(tabs[i].icon), localized(tabs[i].key), helpOf(tabs[i]));
        button->setObjectName(QLatin1String("tab.") + QLatin1String(tabs[i].name));
        m_pages[i] = makePage(QLatin1String("inspector.page.") + QLatin1String(tabs[i].name));
        m_stack->addWidget(m_pages[i]);
    }
    AppState& state = m_context.state;
    connect(m_rail, &TabRail::currentChosen, &state, &AppState::setInspectorTab);
    connect(&state, &AppState::inspectorTabChanged, this, &Inspector::showTab);
    for (const auto changed :
         {&AppState::projectChanged, &AppState::selectionChanged, &AppState::overlaySelectionChanged,
          &AppState::textSelectionChanged, &AppState::objectChanged})
        connect(&state, changed, this, [this] {
            if (InspectorPanel* shown = m_panels[static_cast<std::size_t>(m_stack->currentIndex())])
                shown->refresh();
        });
    connect(&m_context.languages, &LanguageManager::changed, this, &Inspector::retranslate);
    showTab();
}

void Inspector::showTab()
{
    const int tab = m_context.state.inspectorTab();
    if (tab < 0 || tab >= tabCount)
        return;
    const auto index = static_cast<std::size_t>(tab);
    if (!m_panels[index]) {
        m_panels[index] = tabs[index].make(m_context);
        m_pages[index]->setWidget(m_panels[index]);
        m_panels[index]->setAutoFillBackground(false); // which setWidget() switches on
    }
    m_rail->setCurrentIndex(tab);
    m_title->setText(localized(tabs[index].key));
    m_stack->setCurrentIndex(tab);
    m_panels[index]->refresh();
    if (isVisible())
        giveMnemonics(*m_panels[index]);
}

void Inspector::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    showTab(); // now in a window, whose menus have their letters
}

void Inspector::retranslate()
{
    for (std::size_t i = 0; i < tabs.size(); ++i) {
        ToolButton* button = m_rail->tab(static_cast<int>(i));
        button->setText(localized(tabs[i].key));
        button->setToolTip(helpOf(tabs[i]));
        button->setAccessibleDescription(helpOf(tabs[i]));
        // Their texts are all over them: panels are made anew when they are shown next.
        m_panels[i] = nullptr;
        delete m_pages[i]->takeWidget();
    }
    showTab();
}

QWidget* Inspector::panelArea() const
{
    return m_panelArea;
}

QWidget* Inspector::tabColumn() const
{
    return m_rail;
}

void Inspector::focusFirstField()
{
    if (QWidget* first = firstFocusable(*m_stack->currentWidget()))
        first->setFocus(Qt::TabFocusReason);
}

void Inspector::showDraggedBox(const Uuid& id, const Rect& box)
{
    if (InspectorPanel* shown = m_panels[static_cast<std::size_t>(m_stack->currentIndex())])
        shown->showDraggedBox(id, box);
}

void Inspector::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    painter.fillRect(rect(), look.roles.panel);
    const QColor& line = look.palette.dividerColor;
    drawVerticalHairline(painter, 0, 0, height(), line);
    drawVerticalHairline(painter, m_panelArea->width() - 1, 0, height(), line);
    drawHorizontalHairline(painter, 0, m_panelArea->width(), m_title->height(), line);
}

} // namespace velmora
