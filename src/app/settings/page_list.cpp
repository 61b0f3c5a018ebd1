#include "app/settings/page_list.h"

#include "app/kit/icons.h"
#include "app/kit/look.h"
#include "app/kit/paint.h"

#include <QPainter>
#include <QStyledItemDelegate>

namespace velmora
{
namespace
{

constexpr int iconRole = Qt::UserRole + 1;
constexpr double listWidth = 168;
constexpr double rowHeight = 32;
constexpr double rowGap = 2;
constexpr double sideGap = 8;
constexpr double iconLeft = 11;
constexpr double iconSize = 18;
constexpr double rowRadius = 6;

class PageDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {0, lookOf(option.widget).length(rowHeight + rowGap)};
    }
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const Look& look = lookOf(option.widget);
        const QRectF row(option.rect.left() + look.length(sideGap), option.rect.top(),
                         option.rect.width() - 2 * look.length(sideGap), look.length(rowHeight));
        const bool selected = option.state & QStyle::State_Selected;
        const bool inFront = option.widget->isActiveWindow();
        const double radius = look.length(rowRadius);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (selected)
            drawBox(*painter, row, radius, faded(look.roles.accentSoft, inFront ? 1 : 0.6), {});
        else if (option.state & QStyle::State_MouseOver)
            drawBox(*painter, row, radius, look.palette.hoverFill, {});
        const bool focused = option.state & QStyle::State_HasFocus && option.state & QStyle::State_KeyboardFocusChange;
        if (focused)
            drawFocusRing(*painter, row.adjusted(2, 2, -2, -2), radius - 2, false, look);

        const int side = look.length(iconSize);
        const QPoint corner(static_cast<int>(row.left()) + look.length(iconLeft),
                            static_cast<int>(row.top() + (row.height() - side) / 2));
        painter->drawPixmap(corner,
                            iconPixmap(index.data(iconRole).toString(), side, option.widget->devicePixelRatioF(),
                                       selected ? selectedIconColors(look) : iconColors(look)));
        const double left = corner.x() + side + look.length(10);
        drawLine(*painter, QRectF(left, row.top(), row.right() - left - look.length(4), row.height()),
                 Qt::AlignLeft | Qt::AlignVCenter, index.data(Qt::DisplayRole).toString(), look.font(Type::bodyMedium),
                 selected ? look.roles.accentText : look.roles.primary);
        painter->restore();
    }
};

} // namespace

PageList::PageList(QWidget* parent) : QListWidget(parent)
{
    const Look& look = lookOf(this);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    setItemDelegate(new PageDelegate(this));
    setFixedWidth(look.length(listWidth));
    setViewportMargins(0, look.length(12), 0, 0);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
}

QListWidgetItem* PageList::addPage(const QString& icon)
{
    auto* row = new QListWidgetItem(this);
    row->setData(iconRole, icon);
    return row;
}

} // namespace velmora
