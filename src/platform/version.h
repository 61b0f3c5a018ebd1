#pragma once

namespace velmora
{

/// The program's version, such as "0.1.0".
extern const char* const programVersion;

} // namespace velmora
