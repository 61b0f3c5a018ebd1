#include "app/inspector/action_button.h"
#include "app/inspector/arrange_part.h"
#include "app/inspector/caption_edit.h"
#include "app/kit/form.h"
#include "app/kit/look.h"
#include "app/kit/number_field.h"
#include "app/kit/segmented_control.h"
#include "app/kit/switch.h"
#include "app/text.h"
#include "l10n/labels.h"
#include "render/conversions.h"

#include <QLineEdit>
#include <QPushButton>

namespace velmora
{
namespace
{

using T = DMGTextOverlay;

QWidget* alone(NumberField* field)
{
    field->setFixedWidth(lookOf(field).length(measure::halfControl));
    return atLeft({field});
}

class ArrangeText : public ArrangePart
{
public:
    explicit ArrangeText(const AppContext& context) : ArrangePart(context)
    {
        addCaption();
        addShadow();
        addPlace();
        addButtonSection(actionButton(localized("remove_text"), "arrange.removeText",
                                      [this] { state().removeSelectedTextOverlay(); }));
    }

    [[nodiscard]] bool applies() const override { return state().selectedTextOverlay() != nullptr; }

    void showDraggedBox(const Uuid& id, const Rect& box) override
    {
        if (state().textSelection() == id)
            m_box.show(box);
    }

private:
    [[nodiscard]] std::function<std::optional<Uuid>()> selected() const
    {
        return [this] { return state().textSelection(); };
    }

    template <typename Value, typename Member>
    Field<Value> field(Member T::*member, const char* name) const
    {
        return elementField<T, Value>(state(), selected(), member, name);
    }

    void addCaption()
    {
        Section* section = addSection(localized("section.text_overlay"));
        auto* identifier = new QLineEdit;
        identifier->setObjectName(QStringLiteral("arrange.textIdentifier"));
        onRefresh(bindText(*identifier, field<std::string>(&T::identifier, "identifier")));
        section->addRow(localized("text_identifier"), identifier);

        auto* caption = new CaptionEdit;
        caption->setObjectName(QStringLiteral("arrange.textContent"));
        const auto text = field<std::string>(&T::text, "text");
        connect(caption, &CaptionEdit::edited, this, [text](const QString& typed) { text.store(typed.toStdString()); });
        connect(caption, &CaptionEdit::editingFinished, this, [this] { state().endTypingRun(); });
        onRefresh([caption, text] { caption->setText(qtText(text.value())); });
        section->addRow(localized("text_content"), caption);

        QPushButton* font = actionButton(localized("text_font"), "arrange.textFont", [this] {
            if (const auto id = state().textSelection())
                state().presentFontPanel(*id);
        });
        onRefresh([this, font] {
            if (const T* overlay = state().selectedTextOverlay()) {
                const QString name = fontDisplayName(*overlay);
                font->setText(withoutMnemonics(
                    font->fontMetrics().elidedText(name, Qt::ElideMiddle, lookOf(font).length(176 - 2 * 10))));
                font->setToolTip(name);
                font->setAccessibleDescription(name);
            }
        });
        section->addRow(qtText(Labels::font), oneOf(font));
        addColor(*section, localized("text_color"), &T::color, "arrange.textColor", Labels::textColor);
        section->addRow(localized("text_alignment"), alignment());
    }

    /// A button that takes what there is and no more, however long its text.
    static QWidget* oneOf(QPushButton* button) { return sideBySide({button}); }

    void addColor(Section& section, const QString& label, CodableColor T::*member, const char* name,
                  const char* spokenName)
    {
        section.addRow(label, makeColorRow(name, spokenName, field<CodableColor>(member, name), reads()));
    }

    struct Choice {
        const char* label;
        const char* icon;
    };

    template <typename Enum>
    SegmentedControl* segments(const char* name, const char* spokenName, double width, Enum T::*member,
                               std::initializer_list<Choice> choices)
    {
        auto* control = new SegmentedControl;
        control->setObjectName(QLatin1String(name));
        control->setAccessibleName(qtText(spokenName));
        for (const Choice& choice : choices)
            control->addSegment(qtText(choice.label), QLatin1String(choice.icon));
        control->setFixedWidth(lookOf(this).length(width));
        onRefresh(bindSegments(*control, field<int>(member, "")));
        return control;
    }

    QWidget* alignment()
    {
        SegmentedControl* across =
            segments("arrange.textAlignH", Labels::horizontalAlignment, 97, &T::horizontalAlignment,
                     {{Labels::alignLeft, "align-left"},
                      {Labels::alignCenter, "align-center"},
                      {Labels::alignRight, "align-right"},
                      {Labels::alignJustified, "align-justified"}});
        SegmentedControl* down = segments("arrange.textAlignV", Labels::verticalAlignment, 71, &T::verticalAlignment,
                                          {{Labels::alignTop, "align-top"},
                                           {Labels::alignMiddle, "align-middle"},
                                           {Labels::alignBottom, "align-bottom"}});
        return atLeft({across, down});
    }

    void addShadow()
    {
        Section* section = addSection(localized("text_shadow"));
        Switch* on = section->addSwitch();
        on->setObjectName(QStringLiteral("arrange.shadow"));
        onRefresh(bindCheck(*on, field<bool>(&T::shadowEnabled, "")));
        addColor(*section, localized("text_color"), &T::shadowColor, "arrange.shadowColor", Labels::shadowColor);

        section->addRow(localized("text_shadow_angle"),
                        makeAngleRow("arrange.shadow", Labels::shadowAngle,
                                     field<double>(&T::shadowAngle, "shadowAngle"), reads()));
        const auto points = [](const char* name, const char* spoken) {
            return NumberSpec{.objectName = name, .spokenName = spoken, .maximum = 40, .unit = "pt"};
        };
        section->addRow(
            localized("text_shadow_offset"),
            alone(addNumber(points("arrange.shadowOffset", Labels::shadowOffset), selected(), &T::shadowOffset)));
        section->addRow(localized("text_shadow_blur"),
                        alone(addNumber(points("arrange.shadowBlur", Labels::shadowBlur), selected(), &T::shadowBlur)));
        NumberField* opacity = addNumber(
            {.objectName = "arrange.shadowOpacity", .spokenName = Labels::shadowOpacity, .maximum = 1, .step = 0.05},
            selected(), &T::shadowOpacity);
        opacity->setAccessibleDescription(QStringLiteral("from 0 to 1"));
        opacity->setDecimals(2, NumberField::Digits::always);
        section->addRow(localized("text_shadow_opacity"), alone(opacity));
    }

    void addPlace()
    {
        Section* section = addSection(localized("text_position"));
        section->addHint(localized("text_overlay_hint"));
        m_box = {
            addNumber({.objectName = "arrange.textX", .spokenName = Labels::textX, .prefix = "X"}, selected(), &T::x),
            addNumber({.objectName = "arrange.textY", .spokenName = Labels::textY, .prefix = "Y"}, selected(), &T::y),
            addNumber({.objectName = "arrange.textWidth",
                       .spokenName = Labels::textWidth,
                       .prefix = "W",
                       .minimum = 40,
                       .maximum = 2000},
                      selected(), &T::width),
            addNumber({.objectName = "arrange.textHeight",
                       .spokenName = Labels::textHeight,
                       .prefix = "H",
                       .minimum = 24,
                       .maximum = 2000},
                      selected(), &T::height),
        };
        section->addRow(localized("text_position"), sideBySide({m_box.x, m_box.y}));
        section->addRow(qtText(Labels::size), sideBySide({m_box.width, m_box.height}));
        const auto center = [this](const char* key, const char* name, bool horizontal, bool vertical) {
            return actionButton(localized(key), name, [=, this] {
                if (const auto id = state().textSelection())
                    state().centerTextOverlayOnCanvas(horizontal, vertical, *id);
            });
        };
        section->addRow(sideBySide({center("text_center_h", "arrange.centerH", true, false),
                                    center("text_center_v", "arrange.centerV", false, true),
                                    center("text_center_both", "arrange.center", true, true)}));
    }

    BoxFields m_box{};
};

} // namespace

ArrangePart* makeArrangeText(const AppContext& context)
{
    return new ArrangeText(context);
}

} // namespace velmora
