#include "platform/version.h"

namespace velmora
{

const char* const programVersion = VELMORA_VERSION;

} // namespace velmora
