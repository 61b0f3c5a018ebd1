#include "app/settings/settings_window.h"

#include "app/kit/form.h"
#include "app/kit/look.h"
#include "app/kit/paint.h"
#include "app/settings/page_list.h"
#include "app/settings/pages.h"
#include "app/settings/settings_pages.h"
#include "app/text.h"
#include "l10n/labels.h"
#include "l10n/language_manager.h"
#include "platform/settings.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QShortcut>
#include <QStackedWidget>

#include <algorithm>
#include <array>

namespace velmora
{
namespace
{

struct PageEntry {
    const char* name; ///< of its icon too
    const char* key;  ///< in the string tables; empty where they have none
};

/// In the order of SettingsTab.
constexpr std::array entries{
    PageEntry{"theme", "settings.theme"},       PageEntry{"updates", "settings.updates"},
    PageEntry{"language", "settings.language"}, PageEntry{"window", ""},
    PageEntry{"about", "settings.about"},       PageEntry{"help", "settings.help"},
};

} // namespace

SettingsWindow::SettingsWindow(const AppContext& context, const WindowCommands& commands, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_context(context),
      m_commands(commands),
      m_list(new PageList),
      m_pages(new QStackedWidget)
{
    const Look& look = lookOf(this);
    setObjectName(QStringLiteral("settings"));
    setFixedSize(look.length(680), look.length(536));
    m_list->setObjectName(QStringLiteral("settings.list"));
    m_list->setAccessibleName(accessibleNameFor(qtText(Labels::settings)));

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addWidget(m_list);
    layout->addWidget(m_pages, 1);

    for (const PageEntry& entry : entries)
        m_list->addPage(QLatin1String(entry.name));
    makePages();
    connect(m_list, &QListWidget::currentRowChanged, this, &SettingsWindow::choose);
    // Later: it is a control of a page that changes the language.
    connect(&m_context.languages, &LanguageManager::changed, this, &SettingsWindow::makePages, Qt::QueuedConnection);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), this), &QShortcut::activated, this, &QWidget::close);
}

void SettingsWindow::makePages()
{
    const int shown = m_pages->currentIndex();
    const QWidget* focus = focusWidget();
    const QString focused = focus && m_pages->isAncestorOf(focus) ? focus->objectName() : QString();
    while (m_pages->count() > 0)
        delete m_pages->widget(0);
    const std::array pages{makeThemePage(m_context),    makeUpdatesPage(m_context),
                           makeLanguagePage(m_context), makeWindowPage(m_context, m_commands, parentWidget()),
                           makeAboutPage(m_context),    makeHelpPage(m_context)};
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::string_view key = entries.at(i).key;
        m_list->item(static_cast<int>(i))->setText(key.empty() ? qtText(Labels::window) : localized(key));
        pages.at(i)->setObjectName(QLatin1String("settings.page.") + QLatin1String(entries.at(i).name));
        m_pages->addWidget(pages.at(i));
    }
    m_pages->setCurrentIndex(std::max(shown, 0));
    if (const QListWidgetItem* row = m_list->currentItem())
        setWindowTitle(row->text());
    if (QWidget* again = focused.isEmpty() ? nullptr : m_pages->findChild<QWidget*>(focused))
        again->setFocus(Qt::OtherFocusReason);
}

void SettingsWindow::showTab(int tab)
{
    if (tab == SettingsTab::last)
        tab = static_cast<int>(
            std::clamp<std::int64_t>(m_context.settings.intValue(storageKey).value_or(0), 0, SettingsTab::count - 1));
    m_list->setCurrentRow(tab);
    if (!isVisible() && parentWidget())
        move(parentWidget()->geometry().center() - rect().center());
    show();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
    if (!focusWidget())
        m_list->setFocus(Qt::OtherFocusReason);
}

void SettingsWindow::choose(int tab)
{
    if (tab < 0)
        return;
    m_context.settings.setInt(storageKey, tab);
    m_pages->setCurrentIndex(tab);
    setWindowTitle(m_list->item(tab)->text());
}

void SettingsWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

void SettingsWindow::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    drawChrome(painter, rect(), look.palette);
    drawVerticalHairline(painter, m_list->width() - 1, 0, height(), look.palette.dividerColor);
}

} // namespace velmora
