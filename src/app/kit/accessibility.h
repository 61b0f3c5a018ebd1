#pragma once

namespace velmora
{

/// Has assistive technology see the kit's own controls as what they are: tools and tabs, radio buttons, sliders with
/// their values in words, lists of steps, alerts. Once a program; applyLook() does it.
void installAccessibility();

} // namespace velmora
