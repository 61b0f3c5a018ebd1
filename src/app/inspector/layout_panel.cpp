#include "app/inspector/fields.h"
#include "app/inspector/panel.h"
#include "app/kit/angle_dial.h"
#include "app/kit/color_well.h"
#include "app/kit/form.h"
#include "app/kit/look.h"
#include "app/kit/number_field.h"
#include "app/kit/segmented_control.h"
#include "app/kit/value_slider.h"
#include "app/text.h"
#include "l10n/labels.h"
#include "model/enums.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace velmora
{
namespace
{

/// Two controls with their own widths at the ends of a row.
QWidget* atBothEnds(QWidget* left, QWidget* right)
{
    auto* holder = new QWidget;
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins({});
    row->addWidget(left);
    row->addStretch(1);
    row->addWidget(right);
    return holder;
}

class LayoutPanel : public InspectorPanel
{
public:
    explicit LayoutPanel(const AppContext& context) : InspectorPanel(context)
    {
        addWindowSize();
        addBackground();
        addOptions();
    }

private:
    AppState& state() { return m_context.state; }

    NumberField* number(const NumberSpec& spec, double DMGProject::*member, const char* name)
    {
        auto* field = new NumberField;
        onRefresh(bindNumber(*field, spec, projectField(state(), member, name)));
        return field;
    }

    QPushButton* button(const QString& text, const char* name, std::function<void()> act)
    {
        auto* made = new QPushButton(withoutMnemonics(text));
        made->setObjectName(QLatin1String(name));
        made->setAccessibleName(accessibleNameFor(text));
        QObject::connect(made, &QPushButton::clicked, this, std::move(act));
        return made;
    }

    ColorWell* colorWell(const char* name, const char* spoken, CodableColor DMGProject::*member, const char* field)
    {
        auto* well = new ColorWell;
        well->setObjectName(QLatin1String(name));
        well->setAccessibleName(qtText(spoken));
        onRefresh(bindColor(*well, projectField(state(), member, field)));
        return well;
    }

    void addWindowSize()
    {
        Section* section = addSection(localized("section.window_size"));
        using P = DMGProject;
        section->addRow(qtText(Labels::size), sideBySide({number({.objectName = "layout.windowWidth",
                                                                  .spokenName = "Window width",
                                                                  .prefix = "W",
                                                                  .minimum = 300,
                                                                  .maximum = 1600,
                                                                  .step = 10},
                                                                 &P::windowWidth, "windowWidth"),
                                                          number({.objectName = "layout.windowHeight",
                                                                  .spokenName = "Window height",
                                                                  .prefix = "H",
                                                                  .minimum = 200,
                                                                  .maximum = 1200,
                                                                  .step = 10},
                                                                 &P::windowHeight, "windowHeight")}));
        section->addRow(
            qtText(Labels::position),
            sideBySide(
                {number({.objectName = "layout.windowLeft", .spokenName = "Window left", .prefix = "X", .step = 10},
                        &P::windowLeft, "windowLeft"),
                 number({.objectName = "layout.windowTop", .spokenName = "Window top", .prefix = "Y", .step = 10},
                        &P::windowTop, "windowTop")}));
        QPushButton* fit =
            button(localized("fit_to_image"), "layout.fitToImage", [this] { state().fitWindowToImage(); });
        QPushButton* reset =
            button(localized("defaults.reset"), "layout.defaults", [this] { state().resetToDefaultSettings(); });
        section->addRow(sideBySide({fit, reset}));
        onRefresh([this, fit] {
            fit->setEnabled(state().hasBackgroundImage());
            fit->setToolTip(fit->isEnabled() ? QString() : qtText(Labels::chooseImageFirst));
        });
    }

    void addBackground()
    {
        Section* section = addSection(localized("section.window_background"));
        auto* kind = new SegmentedControl;
        kind->setObjectName(QStringLiteral("layout.backgroundKind"));
        kind->setAccessibleName(localized("section.window_background"));
        for (const BackgroundKind each : allCases<BackgroundKind>())
            kind->addSegment(qtText(displayName(each)));
        section->addRow(kind);
        const auto kindOf = [](const DMGProject& p) { return static_cast<int>(p.backgroundKind); };
        onRefresh(bindSegments(*kind,
                               {state(), kindOf,
                                [](DMGProject& p, int value) { p.backgroundKind = static_cast<BackgroundKind>(value); },
                                [] { return EditKey{}; }}));
        rowsOf(BackgroundKind::gradient, gradientRows(*section));
        rowsOf(BackgroundKind::color,
               {section->addRow(qtText(Labels::color),
                                atLeft({colorWell("layout.color", "Background color", &DMGProject::backgroundColor,
                                                  "backgroundColor")}))});
        rowsOf(BackgroundKind::image, imageRows(*section));
        section->addHint(localized("window_bg_overlay_hint"));
    }

    /// Rows that only one kind of background has.
    void rowsOf(BackgroundKind kind, const QList<QWidget*>& rows)
    {
        onRefresh([this, kind, rows] {
            for (QWidget* row : rows)
                row->setVisible(state().project().backgroundKind == kind);
        });
    }

    QList<QWidget*> gradientRows(Section& section)
    {
        QWidget* colors = section.addRow(
            qtText(Labels::colors),
            atBothEnds(colorWell("layout.gradientStart", "Start color", &DMGProject::gradientStart, "gradientStart"),
                       colorWell("layout.gradientEnd", "End color", &DMGProject::gradientEnd, "gradientEnd")));
        const auto angle = projectField(state(), &DMGProject::gradientAngle, "gradientAngle");
        auto* dial = new AngleDial;
        dial->setObjectName(QStringLiteral("layout.gradientDial"));
        dial->setAccessibleName(QStringLiteral("Gradient angle"));
        connect(dial, &AngleDial::angleEdited, this, [angle](double degrees) { angle.store(degrees); });
        connect(dial, &AngleDial::editingFinished, this, [this] { state().endTypingRun(); });
        onRefresh([dial, angle] { dial->setAngle(angle.value()); });
        auto* field = new NumberField;
        field->setWrapping(true);
        onRefresh(bindNumber(
            *field, {.objectName = "layout.gradientAngle", .spokenName = "Gradient angle", .maximum = 360, .unit = "°"},
            angle));
        field->setFixedWidth(lookOf(this).length(84)); // as wide as one of a pair
        return {colors, section.addRow(localized("angle"), atBothEnds(dial, field))};
    }

    QList<QWidget*> imageRows(Section& section)
    {
        auto* name = new QLabel;
        name->setTextFormat(Qt::PlainText);
        name->setObjectName(QStringLiteral("layout.imageName"));
        QPushButton* choose =
            button(localized("choose_image"), "layout.chooseImage", [this] { state().pickBackgroundImage(); });
        QPushButton* remove =
            button(localized("remove_background"), "layout.removeImage", [this] { state().clearBackgroundImage(); });
        auto* fit = new QComboBox;
        fit->setObjectName(QStringLiteral("layout.fitMode"));
        for (const BackgroundImageFit each : allCases<BackgroundImageFit>())
            fit->addItem(qtText(displayName(each)));
        connect(fit, &QComboBox::activated, this, [this](int index) {
            state().edit({}, [index](DMGProject& p) { p.backgroundImageFit = static_cast<BackgroundImageFit>(index); });
        });
        auto* scale = new ValueSlider({.minimum = 0.25, .maximum = 3, .step = 0.05});
        scale->setObjectName(QStringLiteral("layout.imageScale"));
        scale->setText([](double value) { return QString::number(qRound(value * 100)) + QLatin1Char('%'); });
        scale->setHome(1, 0.02);
        onRefresh(bindSlider(*scale, projectField(state(), &DMGProject::backgroundImageScale, "backgroundImageScale")));
        QWidget* offset = sideBySide({number({.objectName = "layout.imageOffsetX",
                                              .spokenName = "Image offset X",
                                              .prefix = "X",
                                              .minimum = -2000,
                                              .maximum = 2000},
                                             &DMGProject::backgroundImageOffsetX, "backgroundImageOffsetX"),
                                      number({.objectName = "layout.imageOffsetY",
                                              .spokenName = "Image offset Y",
                                              .prefix = "Y",
                                              .minimum = -2000,
                                              .maximum = 2000},
                                             &DMGProject::backgroundImageOffsetY, "backgroundImageOffsetY")});
        QPushButton* reset = button(localized("bg_reset_adjust"), "layout.resetAdjustments",
                                    [this] { state().resetBackgroundImageAdjustments(); });
        onRefresh([this, name, choose, remove, fit] {
            const DMGProject& project = state().project();
            const bool has = !project.backgroundImagePath.empty();
            name->setText(has ? qtPath(std::filesystem::path(project.backgroundImagePath).filename())
                              : localized("no_image"));
            choose->setText(localized(has ? "replace_image" : "choose_image"));
            remove->setEnabled(has);
            fit->setCurrentIndex(static_cast<int>(project.backgroundImageFit));
        });
        QWidget* buttons = sideBySide({choose, remove});
        section.addRow(name);
        section.addRow(buttons);
        QWidget* fitRow = section.addRow(localized("bg_fit_mode"), fit);
        QWidget* scaleRow = section.addRow(localized("bg_scale"), scale);
        QWidget* offsetRow = section.addRow(qtText(Labels::offset), offset);
        section.addRow(reset);
        return {name, buttons, fitRow, scaleRow, offsetRow, reset};
    }

    void addOptions()
    {
        Section* section = addSection(localized("section.window_options"));
        auto* size =
            new ValueSlider({.minimum = 16, .maximum = 512, .step = 4, .kind = SliderScale::Kind::logarithmic});
        size->setObjectName(QStringLiteral("layout.iconSize"));
        size->setText([](double value) { return NumberField::format(value, 2) + QStringLiteral(" pt"); });
        onRefresh(bindSlider(*size, projectField(state(), &DMGProject::iconSize, "iconSize")));
        section->addRow(localized("icon_size"), size);
        const auto check = [&](const char* key, const char* name, bool DMGProject::*member) {
            auto* box = new QCheckBox(localized(key));
            box->setObjectName(QLatin1String("layout.") + QLatin1String(name));
            onRefresh(
                bindCheck(*box, {state(), [member](const DMGProject& p) { return p.*member; },
                                 [member](DMGProject& p, bool on) { p.*member = on; }, [] { return EditKey{}; }}));
            return box;
        };
        section->addRow(localized("options"), check("show_sidebar", "showSidebar", &DMGProject::showSidebar));
        section->addRow({}, check("show_icon_preview", "showIconPreview", &DMGProject::showIconPreview));
        section->addRow({}, check("show_item_info", "showItemInfo", &DMGProject::showItemInfo));
    }
};

} // namespace

InspectorPanel* makeLayoutPanel(const AppContext& context)
{
    return new LayoutPanel(context);
}

} // namespace velmora
