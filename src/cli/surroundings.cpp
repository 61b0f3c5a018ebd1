#include "cli/surroundings.h"

#include "platform/folders.h"

namespace velmora::cli
{

Surroundings::Surroundings()
    : m_arrows({.resources = Folders::resources(),
                .applicationSupport = Folders::applicationSupport(),
                .temporary = Folders::temporary()},
               m_cache)
{
}

BuildEnvironment Surroundings::environment(const StopToken& stop)
{
    return BuildEnvironment::system(m_arrows, m_cache, stop);
}

} // namespace velmora::cli
