#pragma once

#include "platform/claimed_path.h"

#include <filesystem>
#include <string_view>

namespace velmora
{

/// A new folder of the user's own (mode 0700) that is removed with everything in it at the end of this object's life.
class ScratchFolder
{
public:
    /// Makes the folder `prefix` + `uuid` + `suffix` in `parent`, the parent too when missing, and removes what killed
    /// builds have left there under such names. Throws FileError, also when the name is taken.
    ScratchFolder(const std::filesystem::path& parent, std::string_view prefix, std::string_view uuid,
                  std::string_view suffix = {});
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_folder.path; }

private:
    ClaimedPath m_folder{};
};

} // namespace velmora
