#include "app/inspector/icon_source.h"

#include <QWidget>

namespace velmora
{

IconSource::IconSource(QWidget* widget) : m_widget(widget)
{
    m_reading.setSingleShot(true);
    QObject::connect(&m_reading, &QTimer::timeout, widget, [this] {
        m_icons.readSome();
        if (m_icons.hasUnread())
            m_reading.start(0);
        m_widget->update();
    });
}

void IconSource::draw(QPainter& painter, const DMGItem& item, const QRectF& square)
{
    m_icons.draw(painter, m_icons.look(item), square, m_widget->devicePixelRatioF());
}

void IconSource::endDrawing()
{
    if (m_icons.hasUnread() && !m_reading.isActive())
        m_reading.start(0);
}

} // namespace velmora
