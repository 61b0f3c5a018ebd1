#pragma once

#include "platform/ports/file_panels.h"

namespace velmora
{

/// Files through Qt's file dialogs: the desktop's own where it has one.
class DialogFilePanels : public FilePanels
{
public:
    std::vector<std::filesystem::path> open(const OpenPanelRequest& request) override;
    std::optional<std::filesystem::path> save(const SavePanelRequest& request) override;

private:
    std::filesystem::path m_folder{}; ///< where a file was chosen last
};

/// `file` with the extension, unless its name ends in it already (in whatever case).
std::filesystem::path withExtension(const std::filesystem::path& file, const std::string& extension);

} // namespace velmora
