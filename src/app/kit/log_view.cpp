#include "app/kit/log_view.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"
#include "app/kit/spaced_layout.h"
#include "l10n/labels.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>

#include <algorithm>

namespace velmora
{
namespace
{

constexpr int batchInterval = 40; ///< milliseconds: several times in a blink
constexpr double capsuleHeight = 24;

QColor inkOf(LogLine kind, const Look& look)
{
    switch (kind) {
    case LogLine::command:
        return look.roles.secondary;
    case LogLine::warning:
        return look.roles.warning;
    case LogLine::error:
        return look.roles.error;
    case LogLine::success:
        return look.roles.success;
    default:
        return look.roles.primary;
    }
}

QTextCharFormat formatOf(LogLine kind, const Look& look)
{
    QTextCharFormat format;
    format.setForeground(inkOf(kind, look));
    return format;
}

/// A round button that floats over the log.
class Capsule : public QPushButton
{
public:
    using QPushButton::QPushButton;

    [[nodiscard]] QSize sizeHint() const override
    {
        const Look& look = lookOf(this);
        const QFontMetricsF metrics(look.font(Type::hintMedium));
        return {static_cast<int>(metrics.horizontalAdvance(text())) + look.length(40), look.length(capsuleHeight)};
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        const Look& look = lookOf(this);
        QPainter painter(this);
        QColor fill = look.roles.button;
        if (isDown() || underMouse())
            fill = laidOver(fill, isDown() ? look.palette.dividerColor : look.palette.hoverFill);
        drawBox(painter, rect(), height() / 2.0, fill, look.roles.border);
        const int side = look.length(12);
        drawLine(painter, QRectF(side, 0, width() - side - look.length(22), height()), Qt::AlignLeft | Qt::AlignVCenter,
                 text(), look.font(Type::hintMedium), look.roles.primary);
        drawChevron(painter, QPointF(width() - look.length(15), height() / 2.0), look.length(8), false,
                    look.roles.secondary);
    }
};

} // namespace

LogView::LogView(QWidget* parent) : QPlainTextEdit(parent), m_jump(new Capsule(this))
{
    const Look& look = lookOf(this);
    QTextDocument* text = makeSpacedDocument(this, look, Type::log, 8);
    text->setMaximumBlockCount(shownLines);
    setDocument(text);
    setFont(look.font(Type::log));
    setReadOnly(true);
    setFrameShape(QFrame::StyledPanel);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);

    m_jump->setText(QString::fromUtf8(Labels::jumpToEnd));
    m_jump->setObjectName(QStringLiteral("log.jumpToEnd"));
    m_jump->setFocusPolicy(Qt::TabFocus);
    m_jump->setCursor(Qt::ArrowCursor);
    m_jump->hide();
    connect(m_jump, &QPushButton::clicked, this, &LogView::jumpToEnd);

    m_flush.setSingleShot(true);
    m_flush.setInterval(batchInterval);
    connect(&m_flush, &QTimer::timeout, this, &LogView::flush);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &LogView::scrolled);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &LogView::scrolled);
}

void LogView::append(const QString& text, LogLine kind)
{
    for (const QString& line : text.split(QLatin1Char('\n')))
        m_pending.push_back({line, kind});
    // Twice what can be shown, so that a flood does not move the whole queue with every line.
    if (m_pending.size() > 2 * static_cast<std::size_t>(shownLines))
        m_pending.erase(m_pending.begin(), m_pending.end() - shownLines);
    if (!m_flush.isActive())
        m_flush.start();
}

void LogView::flush()
{
    if (m_pending.empty())
        return;
    if (m_pending.size() > static_cast<std::size_t>(shownLines))
        m_pending.erase(m_pending.begin(), m_pending.end() - shownLines);
    // While the person reads, the text under the eye stays where it is although lines at the top are dropped.
    const int firstVisible = firstVisibleBlock().blockNumber();
    const int blocksBefore = document()->isEmpty() ? 0 : blockCount();
    const int added = static_cast<int>(m_pending.size());
    m_inserting = true;
    insertPending();
    const int dropped = blocksBefore + added - blockCount();
    if (m_following) {
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    } else if (dropped > 0) {
        const QTextBlock block = document()->findBlockByNumber(std::max(0, firstVisible - dropped));
        verticalScrollBar()->setValue(block.firstLineNumber());
    }
    m_inserting = false;
    scrolled();
}

void LogView::insertPending()
{
    const Look& look = lookOf(this);
    const bool startsEmpty = document()->isEmpty();
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    cursor.beginEditBlock();
    for (std::size_t i = 0; i < m_pending.size(); ++i) {
        const Line& line = m_pending[i];
        if (i > 0 || !startsEmpty)
            cursor.insertBlock();
        cursor.block().setUserState(static_cast<int>(line.kind));
        cursor.insertText(line.text, formatOf(line.kind, look));
    }
    cursor.endEditBlock();
    m_pending.clear();
}

void LogView::clearLog()
{
    m_pending.clear();
    m_flush.stop();
    m_following = true;
    clear();
    scrolled();
}

QString LogView::copyText() const
{
    const QTextCursor cursor = textCursor();
    return cursor.hasSelection() ? cursor.selection().toPlainText() : toPlainText();
}

void LogView::jumpToEnd()
{
    flush();
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    scrolled();
}

void LogView::setJumpLabel(const QString& label)
{
    m_jump->setText(label);
    placeJump();
}

void LogView::scrolled()
{
    if (m_inserting)
        return;
    const QScrollBar* bar = verticalScrollBar();
    m_following = bar->value() >= bar->maximum();
    m_jump->setVisible(!m_following);
    if (!m_following)
        placeJump();
}

void LogView::placeJump()
{
    const int margin = lookOf(this).length(10);
    const QSize size = m_jump->sizeHint();
    m_jump->setGeometry(QRect(QPoint(width() - size.width() - margin, height() - size.height() - margin), size));
    m_jump->raise();
}

void LogView::resizeEvent(QResizeEvent* event)
{
    const bool following = m_following;
    m_inserting = true; // a new range is no scrolling
    QPlainTextEdit::resizeEvent(event);
    if (following)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    m_inserting = false;
    scrolled();
}

bool LogView::event(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        restoreColors();
    return QPlainTextEdit::event(event);
}

void LogView::restoreColors()
{
    // The text carries its colours: after a change of the theme they are given anew.
    const Look& look = lookOf(this);
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        const int kind = std::clamp(block.userState(), 0, static_cast<int>(LogLine::success));
        cursor.setPosition(block.position());
        cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
        cursor.setCharFormat(formatOf(static_cast<LogLine>(kind), look));
    }
    cursor.endEditBlock();
}

} // namespace velmora
