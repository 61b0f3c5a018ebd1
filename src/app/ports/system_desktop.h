#pragma once

#include "platform/ports/desktop.h"

namespace velmora
{

/// The desktop that the program runs on.
class SystemDesktop : public Desktop
{
public:
    void reveal(const std::filesystem::path& file) override;
    void openFolder(const std::filesystem::path& folder) override;
    /// Does nothing for an address that is not http or https.
    void openAddress(const std::string& address) override;
};

} // namespace velmora
