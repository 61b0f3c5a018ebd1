#pragma once

#include "pipeline/shell.h"

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace velmora::testing
{

/// One tool run as the build asked for it.
struct ToolCall {
    std::string name{}; ///< "hdiutil create", "sips", …
    std::vector<std::string> arguments{};
    std::optional<std::string> input{};
    bool logged = false;
};

/// Plays the system's tools: records every run, makes the files they would make, and fails where it is told to.
class FakeTools : public Shell
{
public:
    FakeTools(const std::filesystem::path& temporaryFolder, std::filesystem::path volumes,
              std::function<std::string()> uuid);

    ShellResult run(const std::string& executable, const std::vector<std::string>& arguments,
                    const std::optional<std::string>& input, const LogCallback& log,
                    const StopToken& stop) const override;

    /// Answers by tool name, the first one first; a tool without an answer succeeds.
    std::map<std::string, std::vector<ShellResult>> answers{};
    /// Called before a tool runs, with its name.
    std::function<void(const std::string&)> before{};

    mutable std::vector<ToolCall> calls{};
    mutable std::set<std::string> attached{};           ///< devices
    mutable std::map<std::string, std::string> stage{}; ///< at creation: path to content, "->target" or "/"
    mutable std::string script{};                       ///< the last script that ran
    mutable std::vector<std::string> iconset{};         ///< names of the icon set's files

    [[nodiscard]] std::vector<std::string> names() const;
    [[nodiscard]] const ToolCall* find(const std::string& name) const;

private:
    void act(const ToolCall& call) const;
    std::filesystem::path m_volumes{};
};

/// What the attach of an image called "My App" prints.
inline const std::string attachOutput = "/dev/disk4          \tGUID_partition_scheme          \t\n"
                                        "/dev/disk4s1        \tApple_HFS                      \t/Volumes/My App\n";

} // namespace velmora::testing
