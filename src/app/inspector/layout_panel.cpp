#include "app/inspector/action_button.h"
#include "app/inspector/fields.h"
#include "app/inspector/layout_background.h"
#include "app/inspector/panel.h"
#include "app/kit/form.h"
#include "app/kit/look.h"
#include "app/kit/number_field.h"
#include "app/kit/value_slider.h"
#include "app/text.h"
#include "l10n/labels.h"

#include <QCheckBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora
{
namespace
{

/// The Finder window: its size and place, its background, what it shows.
class LayoutPanel : public InspectorPanel
{
public:
    explicit LayoutPanel(const AppContext& context) : InspectorPanel(context)
    {
        addWindowSize();
        auto* background = new BackgroundSection(context, m_picture);
        insertSection(background);
        onRefresh([background] { background->refresh(); });
        addOptions();
    }

private:
    AppState& state() { return m_context.state; }

    NumberField* number(const NumberSpec& spec, double DMGProject::*member, const char* name)
    {
        return makeNumber(spec, projectField(state(), member, name), reads());
    }

    void addWindowSize()
    {
        Section* section = addSection(localized("section.window_size"));
        using P = DMGProject;
        NumberField* width = number({.objectName = "layout.windowWidth",
                                     .spokenName = Labels::windowWidth,
                                     .prefix = "W",
                                     .minimum = 300,
                                     .maximum = 1600,
                                     .step = 10},
                                    &P::windowWidth, "windowWidth");
        NumberField* height = number({.objectName = "layout.windowHeight",
                                      .spokenName = Labels::windowHeight,
                                      .prefix = "H",
                                      .minimum = 200,
                                      .maximum = 1200,
                                      .step = 10},
                                     &P::windowHeight, "windowHeight");
        section->addRow(qtText(Labels::size), sideBySide({width, height}));
        NumberField* left =
            number({.objectName = "layout.windowLeft", .spokenName = Labels::windowLeft, .prefix = "X", .step = 10},
                   &P::windowLeft, "windowLeft");
        NumberField* top =
            number({.objectName = "layout.windowTop", .spokenName = Labels::windowTop, .prefix = "Y", .step = 10},
                   &P::windowTop, "windowTop");
        section->addRow(localized("text_position"), sideBySide({left, top}));
        QPushButton* fit =
            actionButton(localized("fit_to_image"), "layout.fitToImage", [this] { state().fitWindowToImage(); });
        QPushButton* reset =
            actionButton(localized("defaults.reset"), "layout.defaults", [this] { state().resetToDefaultSettings(); });
        section->addRow(sideBySide({fit, reset}));
        onRefresh([this, fit] {
            const bool can =
                state().hasBackgroundImage() && m_picture.read(state().project().backgroundImagePath).isReadable();
            fit->setEnabled(can);
            fit->setToolTip(can ? QString() : qtText(Labels::chooseImageFirst));
            fit->setAccessibleDescription(fit->toolTip());
        });
    }

    QCheckBox* check(const char* key, const char* name, bool DMGProject::*member)
    {
        auto* box = new QCheckBox(localized(key));
        box->setObjectName(QLatin1String("layout.") + QLatin1String(name));
        onRefresh(bindCheck(*box, choiceField<bool>(state(), member)));
        return box;
    }

    void addOptions()
    {
        Section* section = addSection(localized("section.window_options"));
        auto* size =
            new ValueSlider({.minimum = 16, .maximum = 512, .step = 4, .kind = SliderScale::Kind::logarithmic});
        size->setObjectName(QStringLiteral("layout.iconSize"));
        size->setText([](double value) { return NumberField::format(value, 2) + QStringLiteral(" pt"); });
        size->setSpokenText([](double value) { return NumberField::format(value, 2) + QStringLiteral(" points"); });
        onRefresh(bindSlider(*size, projectField(state(), &DMGProject::iconSize, "iconSize")));
        section->addRow(localized("icon_size"), size);

        auto* boxes = new QWidget;
        auto* column = new QVBoxLayout(boxes);
        column->setContentsMargins({});
        column->setSpacing(lookOf(this).length(4));
        column->addWidget(check("show_sidebar", "showSidebar", &DMGProject::showSidebar));
        column->addWidget(check("show_icon_preview", "showIconPreview", &DMGProject::showIconPreview));
        column->addWidget(check("show_item_info", "showItemInfo", &DMGProject::showItemInfo));
        section->addRow(localized("options"), boxes);
    }

    SmallPictureReader m_picture{}; ///< the background's
};

} // namespace

InspectorPanel* makeLayoutPanel(const AppContext& context)
{
    return new LayoutPanel(context);
}

} // namespace velmora
