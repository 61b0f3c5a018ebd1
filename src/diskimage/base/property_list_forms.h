#pragma once

#include "diskimage/base/property_list.h"

/// The two readers behind readPlist, each in a file of its own.
namespace velmora::diskimage
{

/// Deeper lists than any program writes are refused before they can exhaust the stack.
inline constexpr int maximumPlistDepth = 128;

Plist readBinaryPlist(ByteView bytes);
Plist readXmlPlist(ByteView bytes);

} // namespace velmora::diskimage
