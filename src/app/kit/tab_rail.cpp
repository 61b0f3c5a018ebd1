#include "app/kit/tab_rail.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"
#include "app/kit/roving_focus.h"

#include <QPainter>
#include <QVBoxLayout>

namespace velmora
{

TabRail::TabRail(QWidget* parent) : QWidget(parent), m_focus(new RovingFocus(this))
{
    const Look& look = lookOf(this);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, look.length(8), 0, look.length(8));
    column->setSpacing(look.length(4));
    column->addStretch(1);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    connect(m_focus, &RovingFocus::moved, this,
            [this](QWidget* tab) { choose(static_cast<int>(m_tabs.indexOf(static_cast<ToolButton*>(tab)))); });
}

ToolButton* TabRail::addTab(const QString& icon, const QString& label, const QString& help)
{
    auto* tab = new ToolButton(icon, label, ToolButton::Kind::tab, this);
    tab->setCheckable(true);
    tab->setAutoExclusive(true);
    tab->setToolTip(help);
    tab->setAccessibleDescription(help);
    const int index = count();
    static_cast<QVBoxLayout*>(layout())->insertWidget(index, tab, 0, Qt::AlignHCenter);
    m_tabs.append(tab);
    m_focus->add(tab);
    connect(tab, &QAbstractButton::clicked, this, [this, index] { choose(index); });
    if (index == 0)
        setCurrentIndex(0);
    return tab;
}

void TabRail::setCurrentIndex(int index)
{
    if (ToolButton* chosen = tab(index)) {
        m_current = index;
        chosen->setChecked(true);
        m_focus->setCurrent(chosen);
    }
}

void TabRail::choose(int index)
{
    if (index == m_current)
        return;
    setCurrentIndex(index);
    emit currentChosen(index);
}

QSize TabRail::sizeHint() const
{
    return {lookOf(this).length(60), QWidget::sizeHint().height()};
}

void TabRail::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    drawChrome(painter, rect(), lookOf(this).palette);
}

} // namespace velmora
