#pragma once

#include <QOperatingSystemVersion>

namespace velmora
{

/// Whether the program runs on a Mac, whose menus, keys, panels and windows have customs of their own.
inline bool isMac()
{
    return QOperatingSystemVersion::currentType() == QOperatingSystemVersion::MacOS;
}

} // namespace velmora
