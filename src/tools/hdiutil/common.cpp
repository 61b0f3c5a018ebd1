#include "tools/hdiutil/verbs.h"

#include "tools/support/session.h"

#include <stdexcept>

namespace fs = std::filesystem;

namespace velmora::tools::hdiutil
{

fs::path outputPath(const std::string& argument)
{
    fs::path path = fs::absolute(argument);
    if (!path.has_filename())
        throw std::runtime_error("\"" + argument + "\" is not the name of a file");
    if (!path.has_extension())
        path += ".dmg";
    return path;
}

void refuseAttached(const fs::path& image)
{
    std::error_code error;
    if (!fs::exists(image, error))
        return;
    if (const auto session = SessionStore().findImage(image))
        throw std::runtime_error("resource busy: \"" + image.string() + "\" is attached as " + session->diskDevice());
}

void throwIfStopped(const StopToken& stop)
{
    if (stop.stopRequested())
        throw std::runtime_error("stopped");
}

} // namespace velmora::tools::hdiutil
