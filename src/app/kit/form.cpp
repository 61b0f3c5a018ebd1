#include "app/kit/form.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"
#include "app/kit/plain_labels.h"
#include "app/kit/switch.h"
#include "app/kit/velmora_style.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace velmora
{
namespace
{

constexpr double above = 14;
constexpr double below = 16;
constexpr double belowHeader = 10;

QHBoxLayout* bareRow(QWidget* holder, int spacing)
{
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    return row;
}

/// What the label of a control leads to: the control, or the first of those that it only holds. Nothing that the
/// label's key would switch over.
QWidget* firstControl(QWidget* control)
{
    QList<QWidget*> candidates = control->findChildren<QWidget*>();
    candidates.prepend(control);
    for (QWidget* each : candidates) {
        const auto* button = qobject_cast<QAbstractButton*>(each);
        if (each->focusPolicy() & Qt::TabFocus && !each->focusProxy() && !(button && button->isCheckable()))
            return each;
    }
    return nullptr;
}

} // namespace

QString accessibleNameFor(const QString& label)
{
    QString name = label;
    name.remove(QLatin1Char('&'));
    while (name.endsWith(QLatin1Char(':')) || name.endsWith(QChar(0x2026)) || name.endsWith(QLatin1Char(' ')))
        name.chop(1);
    return name;
}

QWidget* sideBySide(const QList<QWidget*>& controls)
{
    auto* holder = new QWidget;
    auto* row = bareRow(holder, lookOf(holder).length(controls.size() > 2 ? 6 : measure::rowGap));
    for (QWidget* control : controls) {
        // Even shares whatever their texts would like.
        control->setSizePolicy(QSizePolicy::Ignored, control->sizePolicy().verticalPolicy());
        row->addWidget(control, 1);
    }
    return holder;
}

QWidget* atLeft(const QList<QWidget*>& controls)
{
    auto* holder = new QWidget;
    auto* row = bareRow(holder, lookOf(holder).length(measure::rowGap));
    for (QWidget* control : controls)
        row->addWidget(control);
    row->addStretch(1);
    return holder;
}

FormRow::FormRow(const QString& label, QWidget* control, QWidget* parent)
    : QWidget(parent), m_control(control), m_column(new QVBoxLayout)
{
    const Look& look = lookOf(this);
    auto* row = bareRow(this, look.length(measure::rowGap));
    auto* title = new QLabel(label);
    title->setFixedWidth(look.length(measure::labelWidth));
    title->setMinimumHeight(look.length(measure::controlHeight));
    title->setForegroundRole(QPalette::PlaceholderText);
    title->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    row->addWidget(title, 0, Qt::AlignTop);
    m_column->setSpacing(look.length(4));
    m_column->addWidget(control);
    row->addLayout(m_column, 1);
    title->setBuddy(firstControl(control));
    // What only holds several controls has no name; they have.
    const bool holder = control->metaObject() == &QWidget::staticMetaObject;
    if (!holder && control->accessibleName().isEmpty())
        control->setAccessibleName(accessibleNameFor(label));
}

void FormRow::setError(const QString& sentence)
{
    setMarkedWrong(m_control, !sentence.isEmpty());
    m_control->setAccessibleDescription(sentence);
    if (!m_error && sentence.isEmpty())
        return;
    if (!m_error) {
        m_error = makeHint({});
        m_error->setForegroundRole(QPalette::BrightText);
        m_column->addWidget(m_error);
    }
    m_error->setText(sentence);
    m_error->setVisible(!sentence.isEmpty());
}

Section::Section(const QString& title, QWidget* parent)
    : QWidget(parent), m_title(new QLabel(title, this)), m_body(new QWidget(this)), m_rows(new QVBoxLayout(m_body))
{
    const Look& look = lookOf(this);
    auto* column = new QVBoxLayout(this);
    const int side = look.length(measure::panelPadding);
    column->setContentsMargins(side, look.length(above), side, look.length(below));
    column->setSpacing(look.length(belowHeader));
    auto* header = new QHBoxLayout;
    m_title->setFont(look.font(Type::controlStrong));
    m_title->setTextFormat(Qt::PlainText);
    m_title->setMinimumHeight(look.lineHeight(Type::controlStrong));
    m_title->setHidden(title.isEmpty());
    header->addWidget(m_title, 1);
    column->addLayout(header);
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setSpacing(look.length(measure::rowGap));
    column->addWidget(m_body);
    // Fixed would hold wrapped text to the height of its unwrapped form.
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void Section::setTitle(const QString& title)
{
    m_title->setText(title);
    m_title->setHidden(title.isEmpty());
}

Switch* Section::addSwitch()
{
    if (m_switch)
        return m_switch;
    m_switch = new Switch(this);
    m_switch->setAccessibleName(accessibleNameFor(m_title->text()));
    layout()->itemAt(0)->layout()->addWidget(m_switch);
    m_body->setVisible(false);
    connect(m_switch, &QCheckBox::toggled, m_body, &QWidget::setVisible);
    return m_switch;
}

void Section::addRow(QWidget* row)
{
    m_rows->addWidget(row);
}

FormRow* Section::addRow(const QString& label, QWidget* control)
{
    auto* row = new FormRow(label, control);
    addRow(row);
    return row;
}

QLabel* Section::addHint(const QString& text)
{
    QLabel* hint = makeHint(text);
    addRow(hint);
    return hint;
}

void Section::paintEvent(QPaintEvent*)
{
    // The first of a panel has the panel's head above it.
    if (y() > 0) {
        QPainter painter(this);
        drawHorizontalHairline(painter, 0, width(), 0, lookOf(this).palette.dividerColor);
    }
}

} // namespace velmora
