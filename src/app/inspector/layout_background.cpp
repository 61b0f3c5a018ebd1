#include "app/inspector/layout_background.h"

#include "app/inspector/fields.h"
#include "app/inspector/gradient_strip.h"
#include "app/inspector/layout_picture.h"
#include "app/kit/color_well.h"
#include "app/kit/look.h"
#include "app/kit/segmented_control.h"
#include "app/text.h"
#include "l10n/labels.h"
#include "render/conversions.h"

#include <QHBoxLayout>
#include <QLabel>

namespace velmora
{
namespace
{

ColorWell* colorWell(const char* objectName, const char* spokenName)
{
    auto* well = new ColorWell;
    well->setObjectName(QLatin1String(objectName));
    well->setAccessibleName(qtText(spokenName));
    return well;
}

} // namespace

BackgroundSection::BackgroundSection(const AppContext& context, SmallPictureReader& picture)
    : Section(localized("section.window_background")),
      m_context(context),
      m_picture(new PictureRows(context.state, picture))
{
    auto* kind = new SegmentedControl;
    kind->setObjectName(QStringLiteral("layout.backgroundKind"));
    kind->setAccessibleName(localized("section.window_background"));
    for (const BackgroundKind each : allCases<BackgroundKind>())
        kind->addSegment(qtText(displayName(each)));
    addRow(kind);
    m_reads.push_back(bindSegments(*kind, choiceField<int>(m_context.state, &DMGProject::backgroundKind)));
    onlyFor(BackgroundKind::gradient, gradientColors());
    onlyFor(BackgroundKind::gradient, gradientAngle());
    onlyFor(BackgroundKind::color, colorRow());
    addRow(m_picture);
    onlyFor(BackgroundKind::image, m_picture);
    QLabel* hint = addHint(localized("window_bg_overlay_hint"));
    m_reads.push_back([this, hint] {
        // With a picture there is its own advice, and less room.
        hint->setVisible(m_context.state.project().backgroundKind != BackgroundKind::image);
    });
}

void BackgroundSection::refresh()
{
    for (const auto& read : m_reads)
        read();
    if (m_context.state.project().backgroundKind == BackgroundKind::image)
        m_picture->refresh();
}

void BackgroundSection::onlyFor(BackgroundKind kind, QWidget* row)
{
    m_reads.push_back([this, kind, row] { row->setVisible(m_context.state.project().backgroundKind == kind); });
}

QWidget* BackgroundSection::colorRow()
{
    const auto color = projectField(m_context.state, &DMGProject::backgroundColor, "backgroundColor");
    return addRow(localized("text_color"), makeColorRow("layout.color", Labels::backgroundColor, color, m_reads));
}

QWidget* BackgroundSection::gradientColors()
{
    const auto start = projectField(m_context.state, &DMGProject::gradientStart, "gradientStart");
    const auto end = projectField(m_context.state, &DMGProject::gradientEnd, "gradientEnd");
    ColorWell* startWell = colorWell("layout.gradientStart", Labels::startColor);
    ColorWell* endWell = colorWell("layout.gradientEnd", Labels::endColor);
    auto* strip = new GradientStrip;
    m_reads.push_back(bindColor(*startWell, start));
    m_reads.push_back(bindColor(*endWell, end));
    m_reads.push_back([=] { strip->setColors(toQColor(start.value()), toQColor(end.value())); });
    auto* holder = new QWidget;
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins({});
    row->setSpacing(lookOf(this).length(measure::rowGap));
    for (QWidget* control : std::initializer_list<QWidget*>{startWell, strip, endWell})
        row->addWidget(control);
    return addRow(qtText(Labels::colors), holder);
}

QWidget* BackgroundSection::gradientAngle()
{
    const auto angle = projectField(m_context.state, &DMGProject::gradientAngle, "gradientAngle");
    return addRow(localized("angle"), makeAngleRow("layout.gradient", Labels::gradientAngle, angle, m_reads));
}

} // namespace velmora
