#pragma once

#include <QImage>

namespace velmora
{

/// Blurs a Format_Alpha8 mask in place, very nearly as a Gaussian of standard deviation `sigma` pixels. Nothing comes
/// in from beyond the edges: leave a margin of `blurReach(sigma)`.
void blurMask(QImage& mask, double sigma);

/// How many pixels a blur spreads.
int blurReach(double sigma);

} // namespace velmora
