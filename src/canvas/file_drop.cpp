#include "canvas/file_drop.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>

namespace velmora
{

DropSurface::DropSurface(QWidget* canvas) : QWidget(canvas)
{
    setAcceptDrops(true);
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_NoSystemBackground);
}

std::optional<std::filesystem::path> DropSurface::firstFile(const QMimeData& data)
{
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            return std::filesystem::path(url.toLocalFile().toStdString());
    }
    return std::nullopt;
}

void DropSurface::dragEnterEvent(QDragEnterEvent* event)
{
    const auto file = firstFile(*event->mimeData());
    if (!file || (!m_left.empty() && file->extension() == "." + m_left)) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    emit targetedChanged(true);
}

void DropSurface::dragMoveEvent(QDragMoveEvent* event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void DropSurface::dragLeaveEvent(QDragLeaveEvent* event)
{
    event->accept();
    emit targetedChanged(false);
}

void DropSurface::dropEvent(QDropEvent* event)
{
    emit targetedChanged(false);
    const auto file = firstFile(*event->mimeData());
    if (!file) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    // The program that the file comes from waits for the end of this event; an alert must not keep it waiting.
    const QPointF point = mapToParent(event->position());
    QTimer::singleShot(0, this, [this, file = *file, point] { emit dropped(file, point); });
}

} // namespace velmora
