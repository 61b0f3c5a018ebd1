#include "editor/file_names.h"

#include "pipeline/clean_name.h"

namespace velmora
{

std::string proposedFileName(std::string_view name, std::string_view extension)
{
    const std::string clean = cleanName(name);
    return (clean.empty() ? "Untitled" : clean) + "." + std::string(extension);
}

} // namespace velmora
