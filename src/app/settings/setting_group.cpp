#include "app/settings/setting_group.h"

#include "app/kit/paint.h"
#include "app/plain_widgets.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace velmora
{
namespace
{

constexpr double groupRadius = 9;
constexpr double rowHeight = 40;
constexpr double rowPadding = 14;
constexpr double markSize = 16;

} // namespace

SettingGroup::SettingGroup(QWidget* parent) : QWidget(parent), m_layout(new QVBoxLayout(this))
{
    m_layout->setContentsMargins({});
    m_layout->setSpacing(0);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
}

void SettingGroup::addRow(QWidget* row)
{
    row->setMinimumHeight(lookOf(this).length(rowHeight));
    m_rows << row;
    m_layout->addWidget(row);
}

void SettingGroup::addRow(const QString& label, const QString& explanation, const QList<QWidget*>& controls)
{
    const Look& look = lookOf(this);
    auto* row = new QWidget;
    auto* texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addWidget(makeLabel(label, Type::body));
    if (!explanation.isEmpty())
        texts->addWidget(makeHint(explanation));
    auto* layout = new QHBoxLayout(row);
    const int side = look.length(rowPadding);
    const int above = look.length(explanation.isEmpty() ? 6 : 7);
    layout->setContentsMargins(side, above, side, above);
    layout->setSpacing(look.length(8));
    layout->addLayout(texts, 1);
    for (QWidget* control : controls)
        layout->addWidget(control, 0, Qt::AlignVCenter);
    addRow(row);
}

void SettingGroup::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    drawBox(painter, rect(), look.length(groupRadius), look.roles.panel, look.roles.border);
    for (qsizetype i = 1; i < m_rows.size(); ++i)
        drawHorizontalHairline(painter, 1, width() - 1, m_rows[i]->y(), look.palette.dividerColor);
}

ChoiceRow::ChoiceRow(const QString& text, QWidget* parent) : QRadioButton(parent)
{
    setText(text);
    setAccessibleName(text);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFont(lookOf(this).font(Type::body));
}

QSize ChoiceRow::sizeHint() const
{
    const Look& look = lookOf(this);
    return {fontMetrics().horizontalAdvance(text()) + look.length(2 * rowPadding + markSize + 8),
            look.length(rowHeight)};
}

FocusShape ChoiceRow::focusShape() const
{
    // Within the row: its neighbours touch it.
    return {QRectF(rect()).adjusted(3, 3, -3, -3), lookOf(this).length(groupRadius) - 3.0};
}

void ChoiceRow::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    if (underMouse())
        drawBox(painter, QRectF(rect()).adjusted(1, 1, -1, -1), look.length(groupRadius) - 1, look.palette.hoverFill,
                {});
    const int padding = look.length(rowPadding);
    const int mark = look.length(markSize);
    const QRectF box(width() - padding - mark, (height() - mark) / 2, mark, mark);
    if (isChecked())
        drawAccentTick(painter, box, look);
    else
        drawBox(painter, box, mark / 2.0, look.roles.field, look.roles.control);
    drawLine(painter, QRectF(padding, 0, box.left() - 2 * padding, height()), Qt::AlignLeft | Qt::AlignVCenter, text(),
             font(), look.ink(isEnabled()));
}

} // namespace velmora
