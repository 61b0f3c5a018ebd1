#pragma once

#include "app/text.h"
#include "editor/app_state.h"
#include "model/enums.h"

#include <QStringList>

#include <functional>
#include <vector>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QWidget;

namespace velmora
{

class AngleDial;
class ColorWell;
class HexField;
class NumberField;
class SegmentedControl;
class ValueSlider;

/// A value of the open project that a control shows and writes. Edits of one `key` that follow each other closely are
/// one step of the history.
template <typename T>
struct Field {
    AppState& state;
    std::function<T(const DMGProject&)> read;
    std::function<void(DMGProject&, const T&)> write;
    std::function<EditKey()> key;

    [[nodiscard]] T value() const { return read(state.project()); }
    void store(const T& value) const
    {
        if (value == this->value())
            return;
        state.edit(key(), [&](DMGProject& project) { write(project, value); });
    }
};

/// A field of the project itself; `name` is that in the document.
template <typename T>
Field<T> projectField(AppState& state, T DMGProject::*member, const std::string& name)
{
    return {state, [member](const DMGProject& p) { return p.*member; },
            [member](DMGProject& p, const T& value) { p.*member = value; }, [name] { return EditKey{.field = name}; }};
}

/// A field of the project every change of which is a step of its own, as the number `T`: true and false, the cases of
/// an enumeration.
template <typename T, typename Member>
Field<T> choiceField(AppState& state, Member DMGProject::*member)
{
    return {state, [member](const DMGProject& p) { return static_cast<T>(p.*member); },
            [member](DMGProject& p, const T& value) { p.*member = static_cast<Member>(value); },
            [] { return EditKey{}; }};
}

/// A choice of two, as the number of its segment or row: 0 is true.
Field<int> twoWayField(AppState& state, bool DMGProject::*member);

/// A field of the element whose id `selected` answers; it reads as T{} and is not written while there is none.
template <typename Element, typename T, typename Member>
Field<T> elementField(AppState& state, std::function<std::optional<Uuid>()> selected, Member Element::*member,
                      const std::string& name)
{
    return {state,
            [selected, member](const DMGProject& p) {
                const Element* element = findElement(p.*elementsOf<Element>, selected());
                return element ? T(element->*member) : T{};
            },
            [selected, member](DMGProject& p, const T& value) {
                if (Element* element = findElement(p.*elementsOf<Element>, selected()))
                    element->*member = static_cast<Member>(value);
            },
            [selected, name] { return EditKey{.field = name, .element = selected()}; }};
}

/// How a number is entered.
struct NumberSpec {
    const char* objectName;
    const char* spokenName; ///< for assistive technology
    const char* prefix = "";
    double minimum = 0;
    double maximum = 3000;
    double step = 1;
    const char* unit = "";
    int decimals = 2;
};

// Each binds a control to a field: the control writes at once, and the returned function shows the present value.

std::function<void()> bindNumber(NumberField& control, const NumberSpec& spec, Field<double> field);
std::function<void()> bindSlider(ValueSlider& control, Field<double> field);
std::function<void()> bindText(QLineEdit& control, Field<std::string> field);
std::function<void()> bindCheck(QCheckBox& control, Field<bool> field);
std::function<void()> bindColor(ColorWell& control, Field<CodableColor> field);
std::function<void()> bindHex(HexField& control, Field<CodableColor> field);
std::function<void()> bindDial(AngleDial& control, Field<double> field);
/// The field's cases have the numbers of the rows. The wheel turns over a pop-up without the focus scroll the panel.
std::function<void()> bindChoice(QComboBox& control, Field<int> field);
/// The field's cases have the numbers of the segments.
std::function<void()> bindSegments(SegmentedControl& control, Field<int> field);

// Each makes what several panels have, bound, and adds what shows the present values to `reads`.

/// What shows a panel's values, each as it is now.
using Reads = std::vector<std::function<void()>>;

NumberField* makeNumber(const NumberSpec& spec, const Field<double>& field, Reads& reads);
/// The cases of an enumeration in a pop-up. An empty spoken name leaves it to the row's label.
QComboBox* makePopUp(const char* objectName, const QString& spokenName, const QStringList& cases,
                     const Field<int>& field, Reads& reads);
template <typename E>
QComboBox* makePopUp(const char* objectName, const QString& spokenName, AppState& state, E DMGProject::*member,
                     Reads& reads)
{
    QStringList cases;
    for (const E each : allCases<E>())
        cases << qtText(displayName(each));
    return makePopUp(objectName, spokenName, cases, choiceField<int>(state, member), reads);
}
/// A colour's well, called `objectName`, and the field of its digits, which has "Hex" added.
QWidget* makeColorRow(const char* objectName, const char* spokenName, const Field<CodableColor>& field, Reads& reads);
/// A direction's dial and its number at the row's right end: `objectName` with "Dial" and "Angle" added.
QWidget* makeAngleRow(const char* objectName, const char* spokenName, const Field<double>& field, Reads& reads);

} // namespace velmora
