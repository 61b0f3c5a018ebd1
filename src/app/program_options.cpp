#include "app/program_options.h"

#include "platform/version.h"

#include <algorithm>
#include <system_error>

namespace velmora
{
namespace
{

const char* const help = R"(Usage: velmora [DOCUMENT.velmora]

Opens the editor, with a document when one is given.

  -h, --help     show this text
  -v, --version  show the version

Images are built without a window by velmora-build.
)";

} // namespace

std::optional<std::string> answerWithoutWindow(const std::vector<std::string>& arguments)
{
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    const auto given = [&](const char* shortName, const char* longName) {
        return std::any_of(arguments.begin(), end, [&](const auto& a) { return a == shortName || a == longName; });
    };
    if (given("-h", "--help"))
        return help;
    if (given("-v", "--version"))
        return std::string("velmora ") + programVersion + "\n";
    return std::nullopt;
}

ProgramOptions parseProgramOptions(const std::vector<std::string>& arguments)
{
    ProgramOptions options;
    bool onlyFiles = false;
    for (const std::string& argument : arguments) {
        if (!onlyFiles && argument == "--") {
            onlyFiles = true;
        } else if (!onlyFiles && argument.size() > 1 && argument.front() == '-') {
            options.error = "velmora: unknown option " + argument + " (velmora --help lists them)\n";
            return options;
        } else if (argument.empty()) {
            options.error = "velmora: a document's name is empty\n";
            return options;
        } else {
            std::error_code ignored;
            options.documents.push_back(std::filesystem::absolute(argument, ignored));
        }
    }
    return options;
}

} // namespace velmora
