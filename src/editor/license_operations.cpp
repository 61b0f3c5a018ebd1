#include "editor/app_state.h"

#include "editor/file_types.h"
#include "pipeline/text.h"
#include "platform/file_tree.h"

#include <cstdint>
#include <exception>
#include <string>

namespace velmora
{
namespace
{

/// No agreement is this long; a larger file was chosen by mistake.
constexpr std::uint64_t longestText = 4 * 1024 * 1024;

std::string readText(const std::filesystem::path& file)
{
    std::string bytes = readFile(file, longestText);
    if (bytes.rfind("\xEF\xBB\xBF", 0) == 0)
        bytes.erase(0, 3);
    if (!isUtf8(bytes) || bytes.find('\0') != std::string::npos)
        throw FileError("\"" + file.string() + "\" is not a text in UTF-8.");
    return bytes;
}

} // namespace

void AppState::importLicenseText()
{
    const auto files = m_ports.panels.open({.types = {FileTypes::text(), FileTypes::everyFile()}});
    if (files.empty())
        return;
    try {
        const std::string text = readText(files.front());
        edit({}, [&](DMGProject& project) { project.licenseText = text; });
    } catch (const std::exception& error) {
        presentError(std::string("Could not import the text:\n") + error.what());
    }
}

} // namespace velmora
