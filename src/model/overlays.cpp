#include "model/overlays.h"

#include <cmath>

namespace velmora
{
namespace
{

template <typename Overlay>
void storeBounds(Overlay& overlay, const Rect& rect)
{
    overlay.x = rect.x;
    overlay.y = rect.y;
    overlay.width = std::abs(rect.width);
    overlay.height = std::abs(rect.height);
}

} // namespace

void DMGOverlayImage::setBounds(const Rect& rect)
{
    storeBounds(*this, rect);
}

bool DMGOverlayImage::canResetToOriginalSize() const
{
    return std::abs(width - effectiveOriginalWidth()) > 0.5 || std::abs(height - effectiveOriginalHeight()) > 0.5;
}

void DMGTextOverlay::setBounds(const Rect& rect)
{
    storeBounds(*this, rect);
}

} // namespace velmora
