#include "platform/file_tree.h"
#include "tools/osascript/apply_layout.h"
#include "tools/support/arguments.h"
#include "tools/support/tool_main.h"

#include <algorithm>
#include <iostream>

namespace
{

using namespace velmora;
using namespace velmora::tools;
using namespace velmora::diskimage::finder;

constexpr const char* usage = "usage: osascript SCRIPT-FILE\n"
                              "Runs the Finder statements that lay out the window of an attached disk image.\n";
constexpr std::uint64_t scriptLimit = 64 * 1024 * 1024;

int reportSyntaxError(const LayoutScriptError& error)
{
    std::string_view text = error.what();
    text.remove_prefix(std::min(text.size(), ("line " + std::to_string(error.line()) + ": ").size()));
    std::cerr << error.line() << ": syntax error: " << text << '\n';
    return 1;
}

std::optional<Session> findDisk(const std::string& name)
{
    return SessionStore().find("/Volumes/" + name);
}

/// The object as the script wrote it.
std::string scriptName(const ScriptObject& object)
{
    if (object.kind == ScriptObject::Kind::item)
        return "item \"" + object.name + "\"";
    std::string path = object.name.starts_with('/') ? object.name.substr(1) : object.name;
    std::replace(path.begin(), path.end(), '/', ':');
    return "file \"" + path + "\"";
}

int reportMissing(const std::string& what)
{
    std::cerr << "execution error: Finder got an error: Can’t get " << what << ". (-1728)\n";
    return 1;
}

int runScript(const LayoutScript& script)
{
    const std::string disk = "disk \"" + script.diskName + "\"";
    const auto session = findDisk(script.diskName);
    if (!session)
        return reportMissing(disk);
    const auto missing = applyLayout(script, *session);
    return missing ? reportMissing(scriptName(*missing) + " of " + disk) : 0;
}

int run(const std::vector<std::string>& arguments, const StopToken&)
{
    const Arguments given(arguments, {}, 1, 1);
    const std::string text = readFile(given.operands().front(), scriptLimit);
    try {
        return runScript(parseLayoutScript(text));
    } catch (const LayoutScriptError& error) {
        return reportSyntaxError(error);
    }
}

} // namespace

int main(int argc, char** argv)
{
    return runTool(argc, argv, "osascript", usage, run);
}
