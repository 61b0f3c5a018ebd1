#pragma once

#include "platform/child_process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::test
{

/// Runs the built tools in a world of their own: a temporary folder, with the user's folders inside it.
class ToolTest : public testing::Test
{
protected:
    ToolTest();
    ~ToolTest() override;

    /// Runs a tool and waits for it.
    static ChildResult run(const std::string& tool, const std::vector<std::string>& arguments, StopToken stop = {});
    /// The same, expecting success, and showing what the tool said otherwise. Returns its standard output.
    static std::string succeed(const std::string& tool, const std::vector<std::string>& arguments);
    /// The same, expecting exit status 1 and nothing on standard output. Returns its standard error.
    static std::string fail(const std::string& tool, const std::vector<std::string>& arguments);

    /// The path of something in the temporary folder.
    [[nodiscard]] std::filesystem::path path(const std::string& name) const { return m_folder / name; }
    /// Writes a file, its folders included, and returns its path.
    std::filesystem::path write(const std::string& name, std::string_view content) const;
    /// A folder with an application-like tree: executable, link, non-ASCII name, background picture.
    [[nodiscard]] std::filesystem::path makeStage() const;
    /// Creates an image of a folder, 32 MiB unless told otherwise.
    [[nodiscard]] std::filesystem::path createImage(const std::string& name, const std::filesystem::path& folder,
                                                    const std::string& volumeName,
                                                    const std::string& size = "32m") const;

private:
    std::filesystem::path m_folder;
};

/// What the attach verb printed: device and mount point of its last line.
struct AttachedVolume {
    std::string device{};
    std::string mountPoint{};
};
AttachedVolume attachedVolume(const std::string& output);

std::string readAll(const std::filesystem::path& file);
/// The names in a folder, sorted.
std::vector<std::string> namesIn(const std::filesystem::path& folder);
/// Where a program of the system is, or empty.
std::string systemProgram(const std::string& name);

} // namespace velmora::test
