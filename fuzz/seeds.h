#pragma once

#include "diskimage/base/storage.h"

#include <string>
#include <string_view>
#include <vector>

/// Inputs to begin with, made by our own writers, and such inputs with one thing wrong that no small change would hit
/// upon: cycles, overlaps, sizes near the end of what numbers hold, deep nesting.
namespace velmora::fuzz
{

struct Seed {
    std::string name{}; ///< a file name
    diskimage::Bytes bytes{};
};

/// Those of a target; of an unknown one none.
std::vector<Seed> seedsOf(std::string_view target);

/// The larger parts of the above.
std::vector<Seed> volumeSeeds();
std::vector<Seed> imageSeeds();
std::vector<Seed> imageTableSeeds();
std::vector<Seed> partitionSeeds();

/// All that is in a small disk.
diskimage::Bytes bytesOf(const diskimage::Source& disk);
/// Bytes that compress well without being zero.
diskimage::Bytes sampleBytes(std::size_t size);

} // namespace velmora::fuzz
