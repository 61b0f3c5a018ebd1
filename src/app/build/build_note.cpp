#include "app/build/build_note.h"

#include "app/clipped_label.h"
#include "app/kit/form.h"
#include "app/kit/look.h"
#include "app/kit/paint.h"
#include "app/text.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora
{

BuildNote::BuildNote(QWidget* parent)
    : Note(parent),
      m_headline(new ClippedLabel(Type::controlStrong, 1, QPalette::WindowText)),
      m_detail(new ClippedLabel(Type::hint, 2, QPalette::PlaceholderText)),
      m_button(new QPushButton)
{
    const Look& look = lookOf(this);
    setObjectName(QStringLiteral("build.note"));
    m_button->setObjectName(QStringLiteral("build.remedy"));
    m_button->hide();
    auto* texts = new QVBoxLayout;
    texts->setSpacing(look.length(2));
    texts->addStretch(1);
    texts->addWidget(m_headline);
    texts->addWidget(m_detail);
    texts->addStretch(1);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(look.length(12), look.length(8), look.length(12), look.length(8));
    layout->setSpacing(look.length(16));
    layout->addLayout(texts, 1);
    layout->addWidget(m_button);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setSizePolicy(policy);
}

void BuildNote::show(Kind kind, const QString& headline, const QString& detail, const QString& button)
{
    m_kind = kind;
    m_headline->setText(headline);
    m_detail->setText(detail);
    m_detail->setVisible(!detail.isEmpty());
    m_button->setText(withoutMnemonics(button));
    m_button->setAccessibleName(accessibleNameFor(button));
    m_button->setVisible(!button.isEmpty());
    setAccessibleName(headline);
    setAccessibleDescription(detail);
    setFixedHeight(lookOf(this).length(detail.isEmpty() ? 44 : 64));
    if (isVisible())
        announce();
    else
        QWidget::show(); // which announces it
}

void BuildNote::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    drawBox(painter, rect(), look.length(measure::noteRadius),
            m_kind == Kind::error ? look.roles.errorGround : look.roles.warningGround, QColor());
}

} // namespace velmora
