#include "app/inspector/arrange_part.h"

#include "app/kit/form.h"
#include "app/kit/number_field.h"

#include <QPushButton>

namespace velmora
{

void ArrangePart::addButtonSection(QPushButton* button)
{
    addSection({})->addRow(button);
}

void BoxFields::show(const Rect& box) const
{
    x->setValue(box.x);
    y->setValue(box.y);
    width->setValue(box.width);
    height->setValue(box.height);
}

} // namespace velmora
