#include "app/inspector/layout_background.h"

#include "app/inspector/fields.h"
#include "app/inspector/gradient_strip.h"
#include "app/inspector/hex_field.h"
#include "app/inspector/layout_picture.h"
#include "app/kit/angle_dial.h"
#include "app/kit/color_well.h"
#include "app/kit/look.h"
#include "app/kit/number_field.h"
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

/// Controls from the left to the right end of a row; those that can grow take the room.
QWidget* acrossTheRow(const QList<QWidget*>& controls, bool stretchBehindFirst)
{
    auto* holder = new QWidget;
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins({});
    row->setSpacing(lookOf(holder).length(measure::rowGap));
    for (QWidget* control : controls) {
        row->addWidget(control);
        if (stretchBehindFirst && control == controls.front())
            row->addStretch(1);
    }
    return holder;
}

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
    ColorWell* well = colorWell("layout.color", "Background color");
    m_reads.push_back(bindColor(*well, color));
    auto* hex = new HexField;
    hex->setObjectName(QStringLiteral("layout.colorHex"));
    hex->setAccessibleName(QStringLiteral("Background color as hexadecimal number"));
    m_reads.push_back(bindHex(*hex, color));
    return addRow(localized("text_color"), atLeft({well, hex}));
}

QWidget* BackgroundSection::gradientColors()
{
    const auto start = projectField(m_context.state, &DMGProject::gradientStart, "gradientStart");
    const auto end = projectField(m_context.state, &DMGProject::gradientEnd, "gradientEnd");
    ColorWell* startWell = colorWell("layout.gradientStart", "Start color");
    ColorWell* endWell = colorWell("layout.gradientEnd", "End color");
    auto* strip = new GradientStrip;
    m_reads.push_back(bindColor(*startWell, start));
    m_reads.push_back(bindColor(*endWell, end));
    m_reads.push_back([=] { strip->setColors(toQColor(start.value()), toQColor(end.value())); });
    return addRow(qtText(Labels::colors), acrossTheRow({startWell, strip, endWell}, false));
}

QWidget* BackgroundSection::gradientAngle()
{
    const auto angle = projectField(m_context.state, &DMGProject::gradientAngle, "gradientAngle");
    auto* dial = new AngleDial;
    dial->setObjectName(QStringLiteral("layout.gradientDial"));
    dial->setAccessibleName(QStringLiteral("Gradient angle"));
    dial->setSpokenText([](double value) { return NumberField::format(value, 0) + QStringLiteral(" degrees"); });
    m_reads.push_back(bindDial(*dial, angle));
    auto* field = new NumberField;
    field->setWrapping(true);
    m_reads.push_back(bindNumber(
        *field, {.objectName = "layout.gradientAngle", .spokenName = "Gradient angle", .maximum = 360, .unit = "°"},
        angle));
    field->setAccessibleDescription(QStringLiteral("degrees"));
    field->setFixedWidth(lookOf(this).length(84)); // as wide as one of a pair
    return addRow(localized("angle"), acrossTheRow({dial, field}, true));
}

} // namespace velmora
