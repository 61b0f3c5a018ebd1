#include "app/kit/empty_state.h"

#include "app/kit/icons.h"
#include "app/kit/look.h"
#include "app/kit/plain_labels.h"

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

QLabel* centredLabel(const QString& text, Type type)
{
    QLabel* label = makeLabel(text, type);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    return label;
}

} // namespace

EmptyState::EmptyState(const QString& icon, const QString& title, const QString& sentence, QWidget* parent)
    : QWidget(parent), m_icon(icon), m_button(new QPushButton(this))
{
    const Look& look = lookOf(this);
    QLabel* explanation = centredLabel(sentence, Type::control);
    explanation->setForegroundRole(QPalette::PlaceholderText);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(look.length(20), look.length(above + sign + 12), look.length(20), look.length(16));
    column->setSpacing(look.length(4));
    column->addWidget(centredLabel(title, Type::bodyStrong));
    column->addWidget(explanation);
    column->addSpacing(look.length(8));
    column->addWidget(m_button, 0, Qt::AlignHCenter);
    column->addStretch(1);
    m_button->hide();
    connect(m_button, &QPushButton::clicked, this, &EmptyState::buttonClicked);
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
