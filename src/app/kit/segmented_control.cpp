#include "app/kit/segmented_control.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"
#include "app/kit/roving_focus.h"
#include "app/kit/segment.h"

#include <QPainter>

#include <algorithm>
#include <utility>

namespace velmora
{
namespace
{

constexpr double inset = 2;
constexpr double chipRadius = 4;
constexpr unsigned lightGround = 0xE8EAEF; ///< white chips show on it

} // namespace

SegmentedControl::SegmentedControl(QWidget* parent)
    : QWidget(parent), m_focus(new RovingFocus(this)), m_left(this, motion::knob), m_width(this, motion::knob)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(m_focus, &RovingFocus::moved, this,
            [this](QWidget* segment) { choose(static_cast<int>(m_segments.indexOf(static_cast<Segment*>(segment)))); });
}

void SegmentedControl::addSegment(const QString& name, const QString& icon)
{
    auto* segment = new Segment(name, icon, this);
    const int index = count();
    m_segments.append(segment);
    m_focus->add(segment);
    connect(segment, &QAbstractButton::clicked, this, [this, index] { choose(index); });
    if (index == 0)
        setCurrentIndex(0);
    updateGeometry();
    place();
}

QWidget* SegmentedControl::segment(int index) const
{
    return m_segments.value(index);
}

void SegmentedControl::setCurrentIndex(int index)
{
    Segment* segment = m_segments.value(index);
    if (!segment)
        return;
    const int before = std::exchange(m_current, index);
    segment->setChecked(true);
    m_focus->setCurrent(segment);
    if (before < 0) {
        place();
    } else if (index != before) {
        m_left.moveTo(segment->x());
        m_width.moveTo(segment->width());
    }
}

void SegmentedControl::choose(int index)
{
    if (index == m_current)
        return;
    setCurrentIndex(index);
    emit currentChosen(index);
}

QSize SegmentedControl::minimumSizeHint() const
{
    const Look& look = lookOf(this);
    int width = look.length(2 * inset);
    for (const Segment* segment : m_segments)
        width += segment->sizeHint().width();
    return {width, look.length(measure::controlHeight)};
}

QSize SegmentedControl::sizeHint() const
{
    const Look& look = lookOf(this);
    int widest = 0;
    for (const Segment* segment : m_segments)
        widest = std::max(widest, segment->sizeHint().width());
    return {widest * count() + look.length(2 * inset), look.length(measure::controlHeight)};
}

void SegmentedControl::place()
{
    if (m_segments.isEmpty())
        return;
    const int edge = lookOf(this).length(inset);
    const int room = std::max(0, width() - 2 * edge);
    const int equal = room / count();
    // Equal parts where the labels fit into them; else each label gets what it needs and a part of the rest.
    int needed = 0;
    bool fits = true;
    for (const Segment* segment : m_segments) {
        needed += segment->sizeHint().width();
        fits = fits && segment->sizeHint().width() <= equal;
    }
    const double spare = (room - needed) / static_cast<double>(count());
    double left = edge;
    for (Segment* segment : m_segments) {
        const double width = fits ? room / static_cast<double>(count()) : segment->sizeHint().width() + spare;
        const int from = static_cast<int>(left + 0.5);
        const int to = static_cast<int>(left + width + 0.5);
        segment->setGeometry(from, edge, std::max(0, to - from), height() - 2 * edge);
        left += width;
    }
    if (const Segment* chosen = m_segments.value(m_current)) {
        m_left.jumpTo(chosen->x());
        m_width.jumpTo(chosen->width());
    }
}

void SegmentedControl::resizeEvent(QResizeEvent*)
{
    place();
}

void SegmentedControl::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    const QColor ground = look.dark() ? (isEnabled() ? look.roles.field : QColor()) : QColor::fromRgb(lightGround);
    drawBox(painter, rect(), look.length(measure::buttonRadius), ground, look.roles.border);
    if (m_current < 0)
        return;
    const double edge = look.length(inset);
    const QRectF chip(m_left.value(), edge, m_width.value(), height() - 2 * edge);
    QColor fill = look.roles.button;
    if (look.dark())
        fill = laidOver(isEnabled() ? fill : look.roles.panel, look.palette.hoverFill);
    if (!look.dark() && isEnabled())
        drawBox(painter, chip.translated(0, 0.5), look.length(chipRadius), faded(Qt::black, 0.14), {});
    drawBox(painter, chip, look.length(chipRadius), fill, {});
}

} // namespace velmora
