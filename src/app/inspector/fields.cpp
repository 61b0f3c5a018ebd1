#include "app/inspector/fields.h"

#include "app/inspector/hex_field.h"
#include "app/kit/angle_dial.h"
#include "app/kit/color_well.h"
#include "app/kit/form.h"
#include "app/kit/look.h"
#include "app/kit/number_field.h"
#include "app/kit/segmented_control.h"
#include "app/kit/value_slider.h"
#include "render/conversions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLineEdit>

#include <memory>

namespace velmora
{
namespace
{

/// Keeps the wheel from a control that has not the focus.
class WheelGuard : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Wheel || static_cast<QWidget*>(watched)->hasFocus())
            return false;
        event->ignore(); // scrolls the panel
        return true;
    }
};

/// A drag is one step, however long the hand rests meanwhile; a key or a turn of the wheel belongs to a run.
template <typename Control>
void bindDrag(Control& control, AppState& state)
{
    QObject::connect(&control, &Control::dragBegan, &state, &AppState::beginGesture);
    QObject::connect(&control, &Control::dragEnded, &state, &AppState::endGesture);
    QObject::connect(&control, &Control::editingFinished, &state, &AppState::endTypingRun);
}

/// A control at each end of a row.
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

} // namespace

Field<int> twoWayField(AppState& state, bool DMGProject::*member)
{
    return {state, [member](const DMGProject& p) { return p.*member ? 0 : 1; },
            [member](DMGProject& p, int choice) { p.*member = choice == 0; }, [] { return EditKey{}; }};
}

std::function<void()> bindNumber(NumberField& control, const NumberSpec& spec, Field<double> field)
{
    control.setObjectName(QLatin1String(spec.objectName));
    control.setAccessibleName(qtText(spec.spokenName));
    const std::string_view unit = spec.unit;
    control.setAccessibleDescription(unit.empty() || unit == "pt" ? QStringLiteral("points") : qtText(unit));
    control.setPrefix(qtText(spec.prefix));
    control.setUnit(qtText(spec.unit));
    control.setRange(spec.minimum, spec.maximum, spec.step);
    control.setDecimals(spec.decimals);
    QObject::connect(&control, &NumberField::valueEdited, &control, [field](double value) { field.store(value); });
    QObject::connect(&control, &QAbstractSpinBox::editingFinished, &control,
                     [&state = field.state] { state.endTypingRun(); });
    return [&control, field] { control.setValue(field.value()); };
}

std::function<void()> bindSlider(ValueSlider& control, Field<double> field)
{
    QObject::connect(&control, &ValueSlider::valueEdited, &control, [field](double value) { field.store(value); });
    bindDrag(control, field.state);
    return [&control, field] { control.setValue(field.value()); };
}

std::function<void()> bindText(QLineEdit& control, Field<std::string> field)
{
    QObject::connect(&control, &QLineEdit::textEdited, &control,
                     [field](const QString& text) { field.store(text.toStdString()); });
    QObject::connect(&control, &QLineEdit::editingFinished, &control, [&state = field.state] { state.endTypingRun(); });
    return [&control, field] {
        const QString text = qtText(field.value());
        if (control.text() != text)
            control.setText(text);
    };
}

std::function<void()> bindCheck(QCheckBox& control, Field<bool> field)
{
    QObject::connect(&control, &QCheckBox::clicked, &control, [field](bool on) { field.store(on); });
    return [&control, field] { control.setChecked(field.value()); };
}

std::function<void()> bindColor(ColorWell& control, Field<CodableColor> field)
{
    // The panel's colours are rounded: Cancel brings back the very components of before.
    const auto before = std::make_shared<std::optional<CodableColor>>();
    QObject::connect(&control, &ColorWell::colorEdited, &control, [field, before](const QColor& color) {
        if (!*before)
            *before = field.value();
        field.store(color == toQColor(**before) ? **before : toCodableColor(color));
    });
    QObject::connect(&control, &ColorWell::editingFinished, &control, [&state = field.state, before] {
        before->reset();
        state.endTypingRun();
    });
    return [&control, field] { control.setColor(toQColor(field.value())); };
}

std::function<void()> bindHex(HexField& control, Field<CodableColor> field)
{
    QObject::connect(&control, &HexField::colorEdited, &control, [field](const QColor& color) {
        field.store(toCodableColor(color));
        field.state.endTypingRun();
    });
    return [&control, field] { control.setColor(toQColor(field.value())); };
}

std::function<void()> bindDial(AngleDial& control, Field<double> field)
{
    QObject::connect(&control, &AngleDial::angleEdited, &control, [field](double degrees) { field.store(degrees); });
    bindDrag(control, field.state);
    return [&control, field] { control.setAngle(field.value()); };
}

std::function<void()> bindChoice(QComboBox& control, Field<int> field)
{
    control.setFocusPolicy(Qt::StrongFocus);
    control.installEventFilter(new WheelGuard(&control));
    QObject::connect(&control, &QComboBox::activated, &control, [field](int index) { field.store(index); });
    return [&control, field] { control.setCurrentIndex(field.value()); };
}

std::function<void()> bindSegments(SegmentedControl& control, Field<int> field)
{
    for (int i = 0; i < control.count(); ++i)
        control.segment(i)->setObjectName(control.objectName() + QStringLiteral(".%1").arg(i));
    QObject::connect(&control, &SegmentedControl::currentChosen, &control, [field](int index) { field.store(index); });
    return [&control, field] { control.setCurrentIndex(field.value()); };
}

NumberField* makeNumber(const NumberSpec& spec, const Field<double>& field, Reads& reads)
{
    auto* control = new NumberField;
    reads.push_back(bindNumber(*control, spec, field));
    return control;
}

QComboBox* makePopUp(const char* objectName, const QString& spokenName, const QStringList& cases,
                     const Field<int>& field, Reads& reads)
{
    auto* control = new QComboBox;
    control->setObjectName(QLatin1String(objectName));
    control->setAccessibleName(spokenName);
    control->addItems(cases);
    reads.push_back(bindChoice(*control, field));
    return control;
}

QWidget* makeColorRow(const char* objectName, const char* spokenName, const Field<CodableColor>& field, Reads& reads)
{
    auto* well = new ColorWell;
    well->setObjectName(QLatin1String(objectName));
    well->setAccessibleName(qtText(spokenName));
    auto* hex = new HexField;
    hex->setObjectName(well->objectName() + QStringLiteral("Hex"));
    hex->setAccessibleName(well->accessibleName() + QStringLiteral(" in hexadecimal"));
    reads.push_back(bindColor(*well, field));
    reads.push_back(bindHex(*hex, field));
    return atLeft({well, hex});
}

QWidget* makeAngleRow(const char* objectName, const char* spokenName, const Field<double>& field, Reads& reads)
{
    auto* dial = new AngleDial;
    dial->setObjectName(QLatin1String(objectName) + QStringLiteral("Dial"));
    dial->setAccessibleName(qtText(spokenName));
    dial->setSpokenText([](double angle) { return NumberField::format(angle, 0) + QStringLiteral(" degrees"); });
    reads.push_back(bindDial(*dial, field));
    const std::string numberName = std::string(objectName) + "Angle";
    NumberField* number = makeNumber(
        {.objectName = numberName.c_str(), .spokenName = spokenName, .maximum = 360, .unit = "°"}, field, reads);
    number->setAccessibleDescription(QStringLiteral("degrees"));
    number->setWrapping(true);
    number->setFixedWidth(lookOf(number).length(measure::halfControl));
    return atBothEnds(dial, number);
}

} // namespace velmora
