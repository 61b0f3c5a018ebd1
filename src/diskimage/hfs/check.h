#pragma once

#include "diskimage/base/storage.h"

#include <string>
#include <vector>

namespace velmora::diskimage::hfs
{

/// Checks every invariant of an HFS+ volume that fills `volume`: headers, bitmap, trees, catalog, forks, attributes.
/// Returns one sentence a fault, none for a sound volume, at most `limit`. Damaged input never throws.
std::vector<std::string> checkVolume(const Source& volume, std::size_t limit = 100);

} // namespace velmora::diskimage::hfs
