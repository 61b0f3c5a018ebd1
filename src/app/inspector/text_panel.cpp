#include "app/inspector/fields.h"
#include "app/inspector/panel.h"
#include "app/inspector/text_sample.h"
#include "app/kit/form.h"
#include "app/kit/number_field.h"
#include "app/kit/segmented_control.h"
#include "app/kit/value_slider.h"
#include "app/text.h"
#include "l10n/labels.h"

namespace velmora
{
namespace
{

/// The labels of the icons in the window.
class TextPanel : public InspectorPanel
{
public:
    explicit TextPanel(const AppContext& context) : InspectorPanel(context)
    {
        AppState& state = m_context.state;
        Section* section = addSection(qtText(Labels::iconLabels));
        auto* sample = new TextSample(context.arrows, context.pictures);
        sample->setObjectName(QStringLiteral("text.sample"));
        sample->setAccessibleName(qtText(Labels::iconLabels));
        section->addRow(sample);
        onRefresh([&state, sample] { sample->showProject(state.project()); });

        auto* size = new ValueSlider({.minimum = 10, .maximum = 16, .step = 1});
        size->setObjectName(QStringLiteral("text.size"));
        size->setTicks(true);
        size->setText([](double value) { return NumberField::format(value, 2) + QStringLiteral(" pt"); });
        size->setSpokenText([](double value) { return NumberField::format(value, 2) + QStringLiteral(" points"); });
        onRefresh(bindSlider(*size, projectField(state, &DMGProject::textSize, "textSize")));
        section->addRow(localized("text_size"), size);

        auto* position = new SegmentedControl;
        position->setObjectName(QStringLiteral("text.labelPosition"));
        position->addSegment(localized("label_bottom"));
        position->addSegment(localized("label_right"));
        onRefresh(bindSegments(*position, twoWayField(state, &DMGProject::labelOnBottom)));
        section->addRow(localized("label_position"), position);
        addSection({})->addHint(qtText(Labels::appliesToEveryIcon));
    }
};

} // namespace

InspectorPanel* makeTextPanel(const AppContext& context)
{
    return new TextPanel(context);
}

} // namespace velmora
