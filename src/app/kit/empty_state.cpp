#include "app/kit/empty_state.h"

#include "app/kit/icons.h"
#include "app/kit/look.h"

#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora
{
namespace
{

constexpr double above = 56; ///< from the panel's head to the sign
constexpr double sign = 40;

QLabel* centredLabel(const QFont& font, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setFont(font);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

EmptyState::EmptyState(const QString& icon, const QString& title, const QString& sentence, QWidget* parent)
    : QWidget(parent), m_icon(icon), m_button(new QPushButton(this))
{
    const Look& look = lookOf(this);
    m_title = centredLabel(look.font(Type::bodyStrong), this);
    m_sentence = centredLabel(look.font(Type::control), this);
    m_sentence->setForegroundRole(QPalette::PlaceholderText);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(look.length(20), look.length(above + sign + 12), look.length(20), look.length(16));
    column->setSpacing(look.length(4));
    column->addWidget(m_title);
    column->addWidget(m_sentence);
    column->addSpacing(look.length(8));
    column->addWidget(m_button, 0, Qt::AlignHCenter);
    column->addStretch(1);
    m_button->hide();
    setTexts(title, sentence);
    connect(m_button, &QPushButton::clicked, this, &EmptyState::buttonClicked);
}

void EmptyState::setTexts(const QString& title, const QString& sentence)
{
    m_title->setText(title);
    m_sentence->setText(sentence);
    m_sentence->setVisible(!sentence.isEmpty());
}

void EmptyState::setButton(const QString& label)
{
    m_button->setText(label);
    m_button->setVisible(!label.isEmpty());
}

void EmptyState::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    const int side = look.length(sign);
    IconColors colors = iconColors(look);
    colors.ink = look.roles.secondary;
    painter.drawPixmap((width() - side) / 2, look.length(above), iconPixmap(m_icon, side, devicePixelRatioF(), colors));
}

} // namespace velmora
