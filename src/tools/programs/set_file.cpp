#include "diskimage/hfs/entry.h"
#include "tools/support/arguments.h"
#include "tools/support/session.h"
#include "tools/support/tool_main.h"

#include <stdexcept>

namespace
{

using namespace velmora;
using namespace velmora::tools;

constexpr const char* usage = "usage: SetFile -a LETTERS MOUNT-POINT\n"
                              "Sets (capital letter) or clears Finder attributes of a mounted volume's root folder:\n"
                              "  C  it has a custom icon\n"
                              "  V  it is invisible\n";

struct FlagChange {
    std::uint16_t set = 0;
    std::uint16_t clear = 0;
};

FlagChange parseLetters(const std::string& letters)
{
    FlagChange change;
    for (const char letter : letters) {
        switch (letter) {
        case 'C':
            change.set |= diskimage::hfs::finderFlagHasCustomIcon;
            break;
        case 'c':
            change.clear |= diskimage::hfs::finderFlagHasCustomIcon;
            break;
        case 'V':
            change.set |= diskimage::hfs::finderFlagIsInvisible;
            break;
        case 'v':
            change.clear |= diskimage::hfs::finderFlagIsInvisible;
            break;
        default:
            throw UsageError(std::string("the attribute \"") + letter + "\" cannot be changed");
        }
    }
    if ((change.set & change.clear) != 0)
        throw UsageError("an attribute is both set and cleared");
    return change;
}

int run(const std::vector<std::string>& arguments, const StopToken&)
{
    static constexpr OptionSpec specs[] = {{"-a", 1}};
    const Arguments given(arguments, specs, 1, 1);
    const FlagChange change = parseLetters(given.require("-a"));
    const std::string& path = given.operands().front();

    SessionStore store;
    auto session = store.find(path);
    if (!session || session->mountPoint() != path)
        throw std::runtime_error("\"" + path + "\" is not the mount point of an attached image; the attributes of " +
                                 "other files and folders cannot be changed on this system");
    if (session->access == Access::readOnly)
        throw std::runtime_error("\"" + path + "\" is mounted read-only");
    session->flagsToSet = static_cast<std::uint16_t>((session->flagsToSet & ~change.clear) | change.set);
    session->flagsToClear = static_cast<std::uint16_t>((session->flagsToClear & ~change.set) | change.clear);
    store.update(*session);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    return runTool(argc, argv, "SetFile", usage, run);
}
