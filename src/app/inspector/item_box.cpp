#include "app/inspector/item_box.h"

#include "app/inspector/item_list.h"
#include "app/kit/form.h"
#include "app/kit/icons.h"
#include "app/kit/paint.h"
#include "app/kit/plain_labels.h"
#include "app/text.h"
#include "l10n/labels.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace velmora
{
namespace
{

constexpr double barHeight = 24;
constexpr double barButtonWidth = 26;
constexpr int mostRows = 6;

QString countText(int items, int leftOut)
{
    const QString all = items == 1 ? qtText(Labels::oneItem) : qtText(Labels::itemCount).arg(items);
    return leftOut == 0 ? all : all + qtText(Labels::leftOutCount).arg(leftOut);
}

} // namespace

/// A flat button of the bar, with a hairline at its right.
class BarButton : public QAbstractButton
{
public:
    BarButton(const char* icon, const char* objectName, const QString& name) : m_icon(QLatin1String(icon))
    {
        setObjectName(QLatin1String(objectName));
        setAccessibleName(accessibleNameFor(name));
        setToolTip(accessibleNameFor(name));
        setFixedSize(lookOf(this).length(barButtonWidth), lookOf(this).length(barHeight));
        setFocusPolicy(Qt::StrongFocus);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        const Look& look = lookOf(this);
        QPainter painter(this);
        if (isEnabled() && (isDown() || underMouse())) {
            // The frame is rounded at the bar's outer corner.
            const double radius = look.length(measure::noteRadius) - 1;
            const QRectF whole = QRectF(rect()).adjusted(0, x() > 1 ? 0 : -2 * radius, x() > 1 ? 0 : 2 * radius, 0);
            painter.setClipRect(rect());
            drawBox(painter, whole, x() > 1 ? 0 : radius, isDown() ? look.palette.dividerColor : look.palette.hoverFill,
                    {});
        }
        drawVerticalHairline(painter, width() - 1, 0, height(), look.palette.dividerColor);
        const int side = look.length(14);
        painter.drawPixmap((width() - 1 - side) / 2, (height() - side) / 2,
                           iconPixmap(m_icon, side, devicePixelRatioF(), {look.ink(isEnabled()), Qt::transparent}));
    }

private:
    QString m_icon;
};

ItemBox::ItemBox(AppState& state, QWidget* parent)
    : QWidget(parent),
      m_state(state),
      m_list(new ItemList(state, this)),
      m_add(new BarButton("plus", "fileInfo.add", qtText(Labels::addItem))),
      m_remove(new BarButton("minus", "fileInfo.remove", qtText(Labels::removeItem))),
      m_count(makeHint(QString()))
{
    const Look& look = lookOf(this);
    m_count->setWordWrap(false);
    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(0, 0, look.length(8), 0);
    bar->setSpacing(0);
    bar->addWidget(m_add);
    bar->addWidget(m_remove);
    bar->addStretch(1);
    bar->addWidget(m_count);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(1, 1, 1, 1);
    column->setSpacing(0);
    column->addWidget(m_list);
    column->addLayout(bar);
    connect(m_add, &QAbstractButton::clicked, this, &ItemBox::offerAdding);
    connect(m_remove, &QAbstractButton::clicked, m_list, &ItemList::removeSelected);
}

void ItemBox::refresh()
{
    m_list->refresh();
    const int items = m_list->items().rowCount();
    m_list->setFixedHeight(std::clamp(items, 1, mostRows) * lookOf(this).length(ItemList::rowHeight));
    m_remove->setEnabled(m_list->currentIndex().isValid());
    m_count->setText(countText(items, m_list->items().leftOut()));
}

void ItemBox::offerAdding()
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const QString& text, const char* name, void (AppState::*act)()) {
        QAction* action = menu->addAction(withoutMnemonics(text));
        action->setObjectName(QLatin1String(name));
        // Once the menu is closed: a panel may follow.
        connect(action, &QAction::triggered, &m_state, act, Qt::QueuedConnection);
    };
    add(localized("toolbar.add_files") + QStringLiteral("…"), "fileInfo.addFiles", &AppState::addFilesViaPanel);
    add(qtText(Labels::addApplicationsLink), "fileInfo.addLink", &AppState::addApplicationsLink);
    menu->popup(m_add->mapToGlobal(QPoint(0, m_add->height() + 2)));
}

void ItemBox::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    drawBox(painter, rect(), look.length(measure::noteRadius), look.roles.field, look.roles.border);
}

} // namespace velmora
