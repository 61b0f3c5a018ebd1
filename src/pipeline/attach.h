#pragma once

#include "pipeline/build_run.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmora
{

/// An attached image: its device ("/dev/disk4s1") and its volume's mount point ("/Volumes/My App").
struct Mount {
    std::string device{};
    std::string mountPoint{};
};

/// What the attach output says; either may be missing.
struct AttachOutput {
    std::optional<std::string> device{};
    std::optional<std::string> mountPoint{};
};

/// Reads the tab-separated lines of an attach. The last line with a path below /Volumes/ decides; before one is found,
/// the first device counts.
AttachOutput parseAttachOutput(std::string_view output);

/// Attaches a writable image. Throws BuildError; nothing stays attached then.
Mount attachImage(BuildRun& run, const std::filesystem::path& image);

/// Detaches, in up to five attempts with pauses between them. Throws BuildError.
void detachImage(BuildRun& run, const Mount& mount);

/// One more detach after a failure, also when a stop is requested. The result is ignored.
void forceDetach(const BuildRun& run, const std::string& device, Echo echo);

} // namespace velmora
