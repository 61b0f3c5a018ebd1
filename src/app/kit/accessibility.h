#pragma once

#include <QAccessible>

class QWidget;

namespace velmora
{

/// Has assistive technology see the kit's own controls as what they are: tools and tabs, radio buttons, sliders with
/// their values in words, lists of steps, alerts. Once a program; applyLook() does it.
void installAccessibility();

/// Has assistive technology see a plain widget as a group, a tool bar or whatever else it is. Before its first child.
void setAccessibleRole(QWidget* widget, QAccessible::Role role);

} // namespace velmora
