#pragma once

#include "diskimage/hfs/names.h"

#include <string>

namespace velmora
{

/// Orders stored names (diskimage::hfs::storedName) as a volume does: those that it takes for one are equal here.
struct VolumeOrder {
    bool operator()(const std::u16string& a, const std::u16string& b) const
    {
        return diskimage::hfs::compareNames(a, b) < 0;
    }
};

} // namespace velmora
