#include "app/kit/note_banner.h"

#include "app/kit/icons.h"
#include "app/kit/look.h"
#include "app/kit/paint.h"

#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora
{
NoteBanner::NoteBanner(QWidget* parent) : Note(parent), m_text(new QLabel(this)), m_button(new QPushButton(this))
{
    const Look& look = lookOf(this);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(look.length(10 + 16 + 8), look.length(8), look.length(10), look.length(8));
    column->setSpacing(look.length(8));
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::RichText);
    m_text->setFont(look.font(Type::hint));
    column->addWidget(m_text);
    column->addWidget(m_button, 0, Qt::AlignLeft);
    m_button->hide();
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    connect(m_button, &QPushButton::clicked, this, &NoteBanner::buttonClicked);
}

void NoteBanner::setText(const QString& lead, const QString& rest)
{
    const QString separator = lead.isEmpty() || rest.isEmpty() ? QString() : QStringLiteral(" ");
    m_text->setText(QStringLiteral("<span style=\"font-weight:600\">%1</span>%2%3")
                        .arg(lead.toHtmlEscaped(), separator, rest.toHtmlEscaped()));
    setAccessibleName(lead + separator + rest);
    announce();
}

void NoteBanner::setButton(const QString& label)
{
    m_button->setText(label);
    m_button->setVisible(!label.isEmpty());
}

void NoteBanner::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    drawBox(painter, rect(), look.length(measure::noteRadius), look.roles.warningGround, {});
    painter.drawPixmap(look.length(10), look.length(8),
                       iconPixmap(QStringLiteral("warning"), look.length(16), devicePixelRatioF(),
                                  {look.roles.warning, Qt::transparent}));
}

} // namespace velmora
