#pragma once

#include "app/kit/look.h"

#include <QImage>

namespace velmora
{

/// All icons of the family in their sizes on the panel, and the program's own. `ratio` device pixels to the point.
QImage iconSheet(const Look& look, double ratio);

} // namespace velmora
