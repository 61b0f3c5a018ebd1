#include "app/inspector/item_head.h"

#include "app/clipped_label.h"
#include "app/text.h"

#include <QPainter>
#include <QVBoxLayout>

namespace velmora
{

ItemHead::ItemHead(double iconSize, QWidget* parent)
    : QWidget(parent),
      m_side(lookOf(this).length(iconSize)),
      m_icons(this),
      m_name(new ClippedLabel(Type::bodyStrong, 1, QPalette::WindowText)),
      m_about(new ClippedLabel(Type::hint, 1, QPalette::PlaceholderText))
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(m_side + lookOf(this).length(12), 0, 0, 0);
    column->setSpacing(0);
    column->addStretch(1);
    column->addWidget(m_name);
    column->addWidget(m_about);
    column->addStretch(1);
    setFixedHeight(m_side);
}

void ItemHead::setItem(const DMGItem& item, const QString& about)
{
    m_name->setText(qtText(item.displayName));
    m_about->setText(about);
    m_item = item;
    update();
}

void ItemHead::expireIcon()
{
    m_icons.expire();
    update();
}

void ItemHead::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    m_icons.beginDrawing();
    m_icons.draw(painter, m_item, QRectF(0, 0, m_side, m_side));
    m_icons.endDrawing();
}

} // namespace velmora
