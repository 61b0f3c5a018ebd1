#pragma once

#include <QPixmap>

#include <string>

namespace velmora
{

class OverlayImageCache;

/// The volume's icon as a picture of `size` device-independent pixels: the one that the project names, or a drive.
QPixmap volumePicture(const std::string& iconPath, int size, double ratio, OverlayImageCache& pictures);

} // namespace velmora
