#include "app/kit/path_label.h"

#include "app/kit/look.h"

#include <QMimeData>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <memory>

namespace velmora
{
namespace
{

constexpr QChar breakHere(0x200B); ///< a space without width

int rowMargin(const Look& look)
{
    return (look.length(measure::controlHeight) - look.lineHeight(Type::control)) / 2;
}

} // namespace

PathLabel::PathLabel(QWidget* parent) : QTextEdit(parent)
{
    setFrameShape(QFrame::NoFrame);
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    // One line stands in the middle of a row.
    const int margin = rowMargin(lookOf(this));
    setViewportMargins(0, margin, 0, margin);
    setFont(lookOf(this).font(Type::control));
}

void PathLabel::setPath(const QString& path)
{
    m_path = path;
    QString wrapped = path;
    wrapped.replace(QLatin1Char('/'), QString(QLatin1Char('/')) + breakHere);
    setPlainText(wrapped);
    setAccessibleDescription(path);
    updateGeometry();
}

int PathLabel::heightForWidth(int width) const
{
    const std::unique_ptr<QTextDocument> copy(document()->clone());
    copy->setTextWidth(width);
    const Look& look = lookOf(this);
    return std::max(static_cast<int>(std::ceil(copy->size().height())) + 2 * rowMargin(look),
                    look.length(measure::controlHeight));
}

QSize PathLabel::sizeHint() const
{
    const int width = lookOf(this).length(176);
    return {width, heightForWidth(width)};
}

QSize PathLabel::minimumSizeHint() const
{
    return {lookOf(this).length(80), lookOf(this).length(measure::controlHeight)};
}

QMimeData* PathLabel::createMimeDataFromSelection() const
{
    auto* copied = new QMimeData;
    copied->setText(textCursor().selection().toPlainText().remove(breakHere));
    return copied;
}

void PathLabel::wheelEvent(QWheelEvent* event)
{
    event->ignore(); // the whole path is in view: the panel scrolls
}

} // namespace velmora
