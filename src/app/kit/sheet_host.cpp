#include "app/kit/sheet_host.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"

#include <QApplication>
#include <QGraphicsOpacityEffect>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include <cmath>

namespace velmora
{
namespace
{

constexpr double radius = 12;
constexpr double rise = 8;

QColor coverColor(const Look& look)
{
    return faded(Qt::black, look.dark() ? 0.46 : 0.26);
}

/// The panel itself; the host draws its shadow.
class SheetPanel : public QWidget
{
public:
    explicit SheetPanel(QWidget* parent) : QWidget(parent)
    {
        auto* box = new QVBoxLayout(this);
        box->setContentsMargins(0, 0, 0, 0);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        const Look& look = lookOf(this);
        QPainter painter(this);
        drawBox(painter, rect(), look.length(radius), look.roles.sheet,
                laidOver(look.roles.sheet, faded(look.dark() ? Qt::white : Qt::black, 0.16)));
    }
    // What the content does not take is no business of the window below.
    void mousePressEvent(QMouseEvent* event) override { event->accept(); }
};

/// The default button among a sheet's controls.
QPushButton* defaultButton(const QWidget* content)
{
    for (QPushButton* button : content->findChildren<QPushButton*>()) {
        if (button->isDefault() && button->isEnabled() && button->isVisibleTo(content))
            return button;
    }
    return nullptr;
}

bool takesTab(const QWidget* widget, const QWidget* within)
{
    return widget != within && within->isAncestorOf(widget) && widget->focusPolicy() & Qt::TabFocus &&
           widget->isEnabled() && widget->isVisibleTo(within) && !widget->focusProxy();
}

/// The control after or before `from` in the order of the Tab key that lies within `within`; goes round at the ends.
QWidget* nextTabStop(QWidget* from, const QWidget* within, bool forward)
{
    QWidget* each = from;
    do {
        each = forward ? each->nextInFocusChain() : each->previousInFocusChain();
        if (takesTab(each, within))
            return each;
    } while (each && each != from);
    return nullptr;
}

} // namespace

SheetHost::SheetHost(QWidget* window)
    : QWidget(window), m_panel(new SheetPanel(this)), m_opacity(new QGraphicsOpacityEffect(m_panel))
{
    setObjectName(QStringLiteral("sheetHost"));
    m_panel->setGraphicsEffect(m_opacity);
    m_opacity->setEnabled(false);
    m_animation.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { step(value.toDouble()); });
    connect(&m_animation, &QVariantAnimation::finished, this, &SheetHost::finish);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { takeBackFocus(now); });
    window->installEventFilter(this);
    hide();
}

SheetHost::~SheetHost()
{
    // What the children report while they are deleted finds no host any more.
    disconnect(qApp, nullptr, this, nullptr);
    if (m_content)
        m_content->disconnect(this);
}

int SheetHost::padding() const
{
    return lookOf(this).length(24);
}

void SheetHost::open(QWidget* content, QWidget* focus)
{
    if (m_content && m_content != content) {
        m_content->disconnect(this);
        m_content->hide();
    }
    if (!m_open) {
        QWidget* before = window()->focusWidget();
        m_focusBefore = before && !isAncestorOf(before) ? before : nullptr;
    }
    const bool wasOpen = m_open;
    m_open = true;
    m_content = content;
    // The panel takes on the size that the content asks for, also when it changes while the sheet is open.
    m_panel->layout()->addWidget(content);
    content->installEventFilter(this);
    connect(content, &QObject::destroyed, this, &SheetHost::close, Qt::UniqueConnection);
    content->show();
    setGeometry(parentWidget()->rect());
    show();
    raise();
    place();
    m_panel->setFocus(Qt::OtherFocusReason);
    QWidget* first = focus ? focus : nextTabStop(m_panel, m_panel, true);
    if (first)
        first->setFocus(Qt::OtherFocusReason);
    else
        setFocus(Qt::OtherFocusReason);
    if (!wasOpen) {
        animate(1, motion::sheetIn);
        emit openChanged(true);
    }
}

void SheetHost::close()
{
    if (!m_open)
        return;
    m_open = false;
    if (m_focusBefore)
        m_focusBefore->setFocus(Qt::OtherFocusReason);
    else if (QWidget* within = window()->focusWidget(); within && (within == this || isAncestorOf(within)))
        within->clearFocus();
    animate(0, motion::sheetOut);
    emit openChanged(false);
}

void SheetHost::animate(double to, int duration)
{
    m_animation.stop();
    duration = lookOf(this).duration(duration);
    if (duration == 0 || !window()->isVisible()) {
        step(to);
        finish();
        return;
    }
    m_opacity->setEnabled(true);
    m_animation.setStartValue(m_shown);
    m_animation.setEndValue(to);
    m_animation.setDuration(duration);
    m_animation.start();
}

void SheetHost::step(double shown)
{
    m_shown = shown;
    m_opacity->setOpacity(shown);
    place();
    update();
}

void SheetHost::finish()
{
    // The effect paints everything twice: it stays only while it is needed.
    m_opacity->setEnabled(false);
    if (!m_open) {
        hide();
        if (m_content)
            m_content->hide();
    }
}

void SheetHost::place()
{
    if (!m_content)
        return;
    const QSize wanted = m_content->sizeHint().expandedTo(m_content->minimumSize());
    const int margin = lookOf(this).length(16);
    const QSize size = wanted.boundedTo(this->size() - QSize(2 * margin, 2 * margin));
    const int sunk = static_cast<int>(std::lround((1 - m_shown) * lookOf(this).length(rise)));
    m_panel->setGeometry(QRect(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2 + sunk), size));
}

bool SheetHost::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        setGeometry(parentWidget()->rect());
        place();
    } else if (watched == m_content && event->type() == QEvent::LayoutRequest) {
        place();
    }
    return QWidget::eventFilter(watched, event);
}

void SheetHost::takeBackFocus(QWidget* now)
{
    if (!m_open || !m_content || !now || now == this || isAncestorOf(now) || now->window() != window())
        return;
    QWidget* first = nextTabStop(m_panel, m_panel, true);
    (first ? first : this)->setFocus(Qt::OtherFocusReason);
}

bool SheetHost::focusNextPrevChild(bool next)
{
    QWidget* from = window()->focusWidget();
    if (!from || !isAncestorOf(from))
        from = m_panel;
    QWidget* goal = nextTabStop(from, m_panel, next);
    if (goal && goal != from)
        goal->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void SheetHost::keyPressEvent(QKeyEvent* event)
{
    if (!m_open || !m_content) {
        QWidget::keyPressEvent(event);
        return;
    }
    // All other keys end here as well: none is for the window below.
    event->accept();
    if (event->key() == Qt::Key_Escape) {
        emit escapePressed();
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        auto* focused = qobject_cast<QPushButton*>(window()->focusWidget());
        QPushButton* button = focused && isAncestorOf(focused) ? focused : defaultButton(m_content);
        if (button)
            button->click();
    }
}

void SheetHost::mousePressEvent(QMouseEvent* event)
{
    event->accept();
}

void SheetHost::wheelEvent(QWheelEvent* event)
{
    event->accept();
}

void SheetHost::contextMenuEvent(QContextMenuEvent* event)
{
    event->accept();
}

void SheetHost::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    painter.fillRect(rect(), faded(coverColor(look), m_shown));
    painter.setOpacity(m_shown);
    drawShadow(painter, m_panel->geometry(), look.length(radius),
               {static_cast<double>(look.length(64)), static_cast<double>(look.length(24)), faded(Qt::black, 0.38)});
}

} // namespace velmora
