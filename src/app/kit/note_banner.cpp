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
namespace
{

struct Colors {
    QColor ink{};
    QColor ground{};
    const char* icon = "";
};

Colors colorsOf(NoteBanner::Kind kind, const ThemeRoles& roles)
{
    switch (kind) {
    case NoteBanner::Kind::error:
        return {roles.error, roles.errorGround, "cross-circle"};
    case NoteBanner::Kind::success:
        return {roles.success, roles.successGround, "tick-circle"};
    default:
        return {roles.warning, roles.warningGround, "warning"};
    }
}

} // namespace

NoteBanner::NoteBanner(Kind kind, QWidget* parent)
    : Note(parent), m_kind(kind), m_text(new QLabel(this)), m_button(new QPushButton(this))
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
    const Colors colors = colorsOf(m_kind, look.roles);
    QPainter painter(this);
    drawBox(painter, rect(), look.length(measure::noteRadius), colors.ground, {});
    painter.drawPixmap(
        look.length(10), look.length(8),
        iconPixmap(QLatin1String(colors.icon), look.length(16), devicePixelRatioF(), {colors.ink, Qt::transparent}));
}

} // namespace velmora
