#pragma once

#include "app/inspector/fields.h"
#include "app/inspector/panel.h"

class QPushButton;

namespace velmora
{

/// What the Arrange tab shows while one kind of thing is selected.
class ArrangePart : public InspectorPanel
{
    Q_OBJECT

public:
    using InspectorPanel::InspectorPanel;

    /// Whether that kind of thing is selected.
    [[nodiscard]] virtual bool applies() const = 0;

protected:
    [[nodiscard]] AppState& state() const { return m_context.state; }
    /// A number of a row that needs no place of its own in the code.
    template <typename Element>
    NumberField* addNumber(const NumberSpec& spec, const std::function<std::optional<Uuid>()>& selected,
                           double Element::*member)
    {
        return makeNumber(spec, elementField<Element, double>(state(), selected, member, spec.objectName), reads());
    }
    /// A section without a header, with one button.
    void addButtonSection(QPushButton* button);
};

/// The number fields for the place and size of a box on the canvas.
struct BoxFields {
    NumberField* x = nullptr;
    NumberField* y = nullptr;
    NumberField* width = nullptr;
    NumberField* height = nullptr;

    /// Shows a box that is being dragged; fields in which a person types keep their text.
    void show(const Rect& box) const;
};

ArrangePart* makeArrangeItem(const AppContext& context);
ArrangePart* makeArrangeOverlay(const AppContext& context);
ArrangePart* makeArrangeText(const AppContext& context);

} // namespace velmora
