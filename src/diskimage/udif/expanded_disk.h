#pragma once

#include "diskimage/udif/image.h"

#include <memory>
#include <vector>

namespace velmora::diskimage::udif
{

/// The disk that checked tables describe, covering it without gaps. Reads expand the chunks they touch; a few recent
/// ones are kept. `file` must outlive the result.
std::unique_ptr<Source> expandedDisk(const Source& file, std::uint64_t dataForkOffset,
                                     const std::vector<BlockTable>& tables);

} // namespace velmora::diskimage::udif
