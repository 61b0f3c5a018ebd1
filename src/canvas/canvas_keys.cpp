// What the keyboard does on the canvas.

#include "canvas/canvas_accessibility.h"
#include "canvas/canvas_view.h"

#include <QKeyEvent>

namespace velmora
{

void CanvasView::keyPressEvent(QKeyEvent* event)
{
    event->accept();
    if (event->key() == Qt::Key_Escape) {
        if (isActing())
            finish(Ending::givenUp);
        else
            selectNothing(m_state);
        return;
    }
    if (isActing() || zoomKey(*event))
        return;
    const double step = event->modifiers() & Qt::ShiftModifier ? 10 : 1;
    const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    if (!plain) {
        event->ignore();
        return;
    }
    switch (event->key()) {
    case Qt::Key_Left:
        return nudge(-step, 0);
    case Qt::Key_Right:
        return nudge(step, 0);
    case Qt::Key_Up:
        return nudge(0, -step);
    case Qt::Key_Down:
        return nudge(0, step);
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        return removeSelection();
    case Qt::Key_Return:
    case Qt::Key_Enter:
        emit editSelectionRequested();
        return;
    case Qt::Key_Space:
        if (!event->isAutoRepeat()) {
            m_spaceHeld = true;
            setCursor(Qt::OpenHandCursor);
        }
        return;
    default:
        event->ignore();
    }
}

void CanvasView::keyReleaseEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Space || event->isAutoRepeat()) {
        event->ignore();
        return;
    }
    m_spaceHeld = false;
    if (!isActing())
        showCursor(mapFromGlobal(QCursor::pos()));
}

bool CanvasView::zoomKey(const QKeyEvent& event)
{
    if (!(event.modifiers() & Qt::ControlModifier))
        return false;
    switch (event.key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoomIn();
        return true;
    case Qt::Key_Minus:
        zoomOut();
        return true;
    case Qt::Key_9:
        zoomToFit();
        return true;
    default:
        return false;
    }
}

void CanvasView::nudge(double dx, double dy)
{
    const auto element = selectedElement(m_state);
    if (element) {
        m_state.nudgeSelection(dx, dy);
        announceMoved(*this, *element);
    } else if (m_state.editorMode() == EditorMode::background) {
        m_state.nudgeBackgroundImage(dx, -dy); // stored offsets grow upward
    }
}

void CanvasView::removeSelection()
{
    // With nothing selected that command would remove the background picture.
    if (selectedElement(m_state))
        m_state.removeSelectedOrBackground();
}

bool CanvasView::walk(bool forward)
{
    const auto next = neighbour(m_state, forward);
    if (next)
        select(m_state, *next);
    return next.has_value();
}

bool CanvasView::focusNextPrevChild(bool next)
{
    if (!hasFocus()) // one of the controls on the canvas
        return QWidget::focusNextPrevChild(next);
    return isActing() || walk(next) || QWidget::focusNextPrevChild(next);
}

void CanvasView::focusInEvent(QFocusEvent* /*event*/)
{
    announceSelection(*this, selectedElement(m_state));
}

void CanvasView::focusOutEvent(QFocusEvent* /*event*/)
{
    finish(Ending::done);
    m_spaceHeld = false;
}

} // namespace velmora
