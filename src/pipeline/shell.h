#pragma once

#include "platform/stop_token.h"
#include "platform/tools.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velmora
{

/// Takes one line (or block) of the build log; called on the build's thread. May be empty.
using LogCallback = std::function<void(const std::string&)>;

/// How a tool run went.
struct ShellResult {
    std::int32_t exitCode = -1; ///< -1 when the tool could not be started
    std::string stdOut{};       ///< UTF-8; empty when the bytes are not valid UTF-8
    std::string stdErr{};       ///< the same, or why the tool could not be started
    [[nodiscard]] bool ok() const { return exitCode == 0; }
};

/// Runs system tools by absolute path and reports to a log. Holds only what differs between the program and its tests.
class Shell
{
public:
    struct Settings {
        ToolFinder findTool = systemToolPath;
        std::function<std::filesystem::path()> temporaryFolder{}; ///< where script files live for a moment
        std::function<std::string()> uuid{};                      ///< upper-case canonical form
    };
    explicit Shell(Settings settings);
    virtual ~Shell() = default;

    /// Runs a tool and waits for it. Logs "$ name arguments", then its trimmed output and error output. The input never
    /// shows in the log. Never throws.
    virtual ShellResult run(const std::string& executable, const std::vector<std::string>& arguments,
                            const std::optional<std::string>& input, const LogCallback& log,
                            const StopToken& stop) const;
    /// Runs a script text through /usr/bin/osascript by way of a temporary file, which is removed afterwards.
    ShellResult runAppleScript(const std::string& script, const LogCallback& log, const StopToken& stop) const;

private:
    Settings m_settings;
};

} // namespace velmora
