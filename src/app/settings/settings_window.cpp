#include "app/settings/settings_window.h"

#include "app/chrome.h"
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

namespace velmora
{
namespace
{

constexpr int keyRole = Qt::UserRole;

} // namespace

SettingsWindow::SettingsWindow(const AppContext& context, const WindowCommands& commands, QWidget* parent)
    : QWidget(parent, Qt::Window), m_context(context), m_list(new PageList), m_pages(new QStackedWidget)
{
    const Look& look = lookOf(this);
    setObjectName(QStringLiteral("settings"));
    setFixedSize(look.length(680), look.length(536));
    m_list->setObjectName(QStringLiteral("settings.list"));
    m_list->setAccessibleName(qtText(Labels::settings).chopped(1));

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addWidget(m_list);
    layout->addWidget(m_pages, 1);

    addPage("theme", "settings.theme", "theme", makeThemePage(m_context));
    addPage("updates", "settings.updates", "updates", makeUpdatesPage(m_context));
    addPage("language", "settings.language", "language", makeLanguagePage(m_context));
    addPage("window", "", "window", makeWindowPage(m_context, commands, parent));
    addPage("about", "settings.about", "about", makeAboutPage(m_context));
    addPage("help", "settings.help", "help", makeHelpPage(m_context));
    retranslate();
    connect(m_list, &QListWidget::currentRowChanged, this, &SettingsWindow::choose);
    connect(&m_context.languages, &LanguageManager::changed, this, &SettingsWindow::retranslate);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), this), &QShortcut::activated, this, &QWidget::close);
}

void SettingsWindow::addPage(const char* icon, const char* key, const char* name, QWidget* page)
{
    m_list->addPage(QLatin1String(icon))->setData(keyRole, QLatin1String(key));
    page->setObjectName(QLatin1String("settings.page.") + QLatin1String(name));
    m_pages->addWidget(page);
}

void SettingsWindow::retranslate()
{
    for (int i = 0; i < m_list->count(); ++i) {
        const QByteArray key = m_list->item(i)->data(keyRole).toString().toUtf8();
        m_list->item(i)->setText(key.isEmpty() ? qtText(Labels::window) : localized(key.toStdString()));
    }
    if (const QListWidgetItem* row = m_list->currentItem())
        setWindowTitle(row->text());
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
    paintChrome(painter, rect(), look);
    drawVerticalHairline(painter, m_list->width() - 1, 0, height(), look.palette.dividerColor);
}

} // namespace velmora
