#pragma once

#include "pipeline/build_environment.h"
#include "render/built_in_arrows.h"
#include "render/overlay_images.h"

namespace velmora::cli
{

/// What a build takes from this machine: its tools, folders and pictures. Outlives the environments it gives.
class Surroundings
{
public:
    Surroundings();
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

    [[nodiscard]] BuildEnvironment environment(const StopToken& stop);
    /// The file of a built-in arrow.
    [[nodiscard]] std::optional<std::string> arrowFile(std::string_view id) const { return m_arrows.filePath(id); }

private:
    OverlayImageCache m_cache{};
    BuiltInArrowLibrary m_arrows;
};

} // namespace velmora::cli
