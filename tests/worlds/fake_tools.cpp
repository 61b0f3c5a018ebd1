#include "worlds/fake_tools.h"

#include "platform/file_tree.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace velmora::testing
{
namespace
{

namespace fs = std::filesystem;

std::string contentOf(const fs::path& path)
{
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

std::map<std::string, std::string> listing(const fs::path& folder)
{
    std::map<std::string, std::string> result;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        const std::string name = entry.path().lexically_relative(folder).string();
        if (entry.is_symlink())
            result[name] = "->" + fs::read_symlink(entry.path()).string();
        else
            result[name] = entry.is_directory() ? "/" : contentOf(entry.path());
    }
    return result;
}

std::string toolName(const std::string& executable, const std::vector<std::string>& arguments)
{
    const std::string name = fs::path(executable).filename().string();
    return (name == "hdiutil" || name == "xcrun") && !arguments.empty() ? name + " " + arguments.front() : name;
}

std::string after(const ToolCall& call, const std::string& option)
{
    const auto found = std::find(call.arguments.begin(), call.arguments.end(), option);
    return found == call.arguments.end() ? std::string() : *(found + 1);
}

} // namespace

FakeTools::FakeTools(const fs::path& temporaryFolder, fs::path volumes, std::function<std::string()> uuid)
    : Shell({.findTool = [](const std::string& path) { return path; },
             .temporaryFolder = [temporaryFolder] { return temporaryFolder; },
             .uuid = std::move(uuid)}),
      m_volumes(std::move(volumes))
{
    answers["du"] = {{0, "40000\t/stage\n", ""}};
    answers["hdiutil attach"] = {{0, attachOutput, ""}};
}

ShellResult FakeTools::run(const std::string& executable, const std::vector<std::string>& arguments,
                           const std::optional<std::string>& input, const LogCallback& log, const StopToken& stop) const
{
    const ToolCall call{toolName(executable, arguments), arguments, input, log != nullptr};
    calls.push_back(call);
    if (log) {
        std::string line = "$ " + fs::path(executable).filename().string();
        for (const std::string& argument : arguments)
            line += " " + argument;
        log(line);
    }
    if (before)
        before(call.name);
    if (stop.stopRequested())
        return {15, "", "terminated"};
    ShellResult result{0, "", ""};
    const auto answer = answers.find(call.name);
    if (answer != answers.end() && !answer->second.empty()) {
        const auto earlier =
            std::count_if(calls.begin(), calls.end(), [&](const auto& c) { return c.name == call.name; });
        result = answer->second[std::min(static_cast<std::size_t>(earlier), answer->second.size()) - 1];
    }
    if (result.ok())
        act(call);
    for (const std::string& text : {result.stdOut, result.stdErr}) {
        if (log && !text.empty())
            log(text);
    }
    return result;
}

void FakeTools::act(const ToolCall& call) const
{
    if (call.name == "hdiutil create") {
        stage = listing(after(call, "-srcfolder"));
        writeFile(call.arguments.back(), "image");
    } else if (call.name == "hdiutil attach") {
        fs::create_directories(m_volumes / "My App");
        attached.insert("/dev/disk4s1");
    } else if (call.name == "hdiutil detach") {
        attached.erase(call.arguments[1]);
    } else if (call.name == "hdiutil convert") {
        if (fs::exists(after(call, "-o")))
            throw std::logic_error("the output exists");
        writeFile(after(call, "-o"), "final");
    } else if (call.name == "tiffutil") {
        writeFile(after(call, "-out"), contentOf(call.arguments[1]) + contentOf(call.arguments[2]));
    } else if (call.name == "osascript") {
        script = contentOf(call.arguments[0]);
    } else if (call.name == "iconutil") {
        iconset = listFolder(call.arguments[2]);
    }
}

std::vector<std::string> FakeTools::names() const
{
    std::vector<std::string> result;
    for (const ToolCall& call : calls)
        result.push_back(call.name);
    return result;
}

const ToolCall* FakeTools::find(const std::string& name) const
{
    const auto found =
        std::find_if(calls.begin(), calls.end(), [&](const ToolCall& call) { return call.name == name; });
    return found == calls.end() ? nullptr : &*found;
}

} // namespace velmora::testing
