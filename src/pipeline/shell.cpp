#include "pipeline/shell.h"

#include "pipeline/text.h"
#include "platform/child_process.h"
#include "platform/claimed_path.h"
#include "platform/file_tree.h"

#include <exception>
#include <utility>

namespace velmora
{
namespace
{

std::string commandLine(const std::string& executable, const std::vector<std::string>& arguments)
{
    std::string line = "$ " + std::string(lastComponent(executable)) + " ";
    for (std::size_t i = 0; i < arguments.size(); ++i)
        line += (i == 0 ? "" : " ") + arguments[i];
    return line;
}

void logOutput(const std::string& text, const LogCallback& log)
{
    if (log && !text.empty())
        log(trimmed(text));
}

/// A file that goes away with this object.
struct TemporaryFile {
    ClaimedPath file{};
    ~TemporaryFile()
    {
        try {
            if (!file.path.empty())
                removeTree(file.path);
        } catch (const std::exception&) {
            // A forgotten script does no harm, and the tool's result is what counts.
        }
    }
};

} // namespace

Shell::Shell(Settings settings) : m_settings(std::move(settings)) {}

ShellResult Shell::run(const std::string& executable, const std::vector<std::string>& arguments,
                       const std::optional<std::string>& input, const LogCallback& log, const StopToken& stop) const
{
    if (log)
        log(commandLine(executable, arguments));
    ChildResult child =
        runChild({.program = m_settings.findTool(executable), .arguments = arguments, .input = input, .stop = stop});
    if (!child.started)
        return {-1, {}, "Failed to launch " + executable + ": " + child.launchError};
    ShellResult result{child.exitCode, std::move(child.output), std::move(child.error)};
    for (std::string* text : {&result.stdOut, &result.stdErr}) {
        if (!isUtf8(*text))
            text->clear();
        logOutput(*text, log);
    }
    return result;
}

ShellResult Shell::runAppleScript(const std::string& script, const LogCallback& log, const StopToken& stop) const
{
    TemporaryFile temporary;
    try {
        temporary.file = claimFile(m_settings.temporaryFolder(),
                                   {.prefix = "velmora-", .uuid = m_settings.uuid(), .suffix = ".applescript"});
        writeFile(temporary.file.path, script);
    } catch (const std::exception& error) {
        return {-1, {}, std::string("Could not write AppleScript: ") + error.what()};
    }
    return run("/usr/bin/osascript", {temporary.file.path.string()}, std::nullopt, log, stop);
}

} // namespace velmora
