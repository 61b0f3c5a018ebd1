#pragma once

#include "model/project.h"
#include "pipeline/dmg_builder.h"
#include "platform/stop_token.h"
#include "render/built_in_arrows.h"
#include "render/overlay_images.h"
#include "worlds/fake_tools.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora::testing
{

/// A folder that goes away with everything in it.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path{};
};

/// Everything around a build, in a folder of its own, with tools that only pretend.
class BuildWorld
{
public:
    BuildWorld();

    /// Volume "My App" with an application, the Applications link, a gradient and one overlay picture.
    [[nodiscard]] DMGProject typicalProject() const;
    [[nodiscard]] BuildEnvironment environment();
    /// Builds into `output` and returns the error's text, empty on success.
    std::string build(const DMGProject& project);
    /// Names left in the temporary folder.
    [[nodiscard]] std::vector<std::string> scratchFiles() const;
    [[nodiscard]] bool logged(std::string_view line) const;

    static std::string uuid(int number); ///< the number-th UUID that a build draws
    static void write(const std::filesystem::path& path, std::string_view content);
    static std::string read(const std::filesystem::path& path);

private:
    TemporaryFolder m_root{};
    int m_uuids = 0;

public:
    const std::filesystem::path temporary = m_root.path() / "tmp";
    const std::filesystem::path home = m_root.path() / "home";
    const std::filesystem::path source = m_root.path() / "source";
    const std::filesystem::path volumes = m_root.path() / "mounts";
    const std::filesystem::path output = m_root.path() / "out" / "My App.dmg";
    const std::filesystem::path favorites =
        home / "Library/Application Support/com.apple.sharedfilelist" / "com.apple.LSSharedFileList.FavoriteItems.sfl2";
    std::shared_ptr<FakeTools> tools{};
    OverlayImageCache cache{};
    BuiltInArrowLibrary arrows;
    StopSource stop{};
    std::function<DiskSpace(const std::filesystem::path&)> freeSpace{}; ///< the real one when empty
    std::vector<std::string> log{};
    std::vector<std::string> warnings{};
    std::vector<std::pair<BuildStep, double>> steps{};
    std::vector<std::chrono::milliseconds> naps{};
};

} // namespace velmora::testing
