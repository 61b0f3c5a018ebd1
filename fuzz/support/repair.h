#pragma once

#include "diskimage/base/bytes.h"

/// Checksums put right, so that a changed input reaches the code behind their comparison.
namespace velmora::fuzz
{

/// Of the headers and tables of a GUID partition table, where they can be found.
void repairGpt(diskimage::MutableByteView disk);
/// Of the chunks of a PNG file, up to the first with an impossible length.
void repairPng(diskimage::MutableByteView file);

} // namespace velmora::fuzz
