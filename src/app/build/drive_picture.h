#pragma once

#include <QPixmap>

namespace velmora
{

/// A drive, as a volume without an icon of its own is shown: `size` device-independent pixels wide and high.
QPixmap drivePicture(int size, double ratio);

} // namespace velmora
