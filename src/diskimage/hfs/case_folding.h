#pragma once

namespace velmora::diskimage::hfs
{

/// The unit that stands for `unit` in a case-insensitive comparison; 0 for one that is skipped.
char16_t foldedUnit(char16_t unit);

} // namespace velmora::diskimage::hfs
