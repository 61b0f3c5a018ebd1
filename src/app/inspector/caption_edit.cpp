#include "app/inspector/caption_edit.h"

#include "app/kit/look.h"
#include "app/plain_widgets.h"

#include <QFocusEvent>
#include <QResizeEvent>

#include <algorithm>
#include <cmath>

namespace velmora
{
namespace
{

constexpr double fewestLines = 3;
constexpr double mostLines = 6;

} // namespace

CaptionEdit::CaptionEdit(QWidget* parent) : QPlainTextEdit(parent)
{
    setTabChangesFocus(true);
    setUndoRedoEnabled(false); // the project's history has every step
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    document()->setDocumentMargin(lookOf(this).length(4));
    const int beside = lookOf(this).length(measure::fieldInset - 4) - 1;
    setViewportMargins(beside, 0, beside, 0);
    connect(this, &QPlainTextEdit::textChanged, this, [this] {
        fitHeight();
        if (!m_taking)
            emit edited(exactText(*this));
    });
    fitHeight();
}

void CaptionEdit::setText(const QString& text)
{
    if (exactText(*this) == text)
        return;
    m_taking = true;
    setPlainText(text);
    m_taking = false;
}

void CaptionEdit::fitHeight()
{
    // A plain text's document is measured in lines.
    const double lines = std::clamp(document()->size().height(), fewestLines, mostLines);
    const double text = lines * fontMetrics().lineSpacing() + 2 * document()->documentMargin();
    setFixedHeight(static_cast<int>(std::ceil(text)) + 2 * frameWidth());
}

void CaptionEdit::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    if (event->oldSize().width() != event->size().width())
        fitHeight();
}

void CaptionEdit::focusOutEvent(QFocusEvent* event)
{
    QPlainTextEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason) // its own menu is open
        emit editingFinished();
}

} // namespace velmora
