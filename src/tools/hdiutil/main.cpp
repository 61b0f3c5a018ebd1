#include "tools/hdiutil/verbs.h"
#include "tools/support/arguments.h"
#include "tools/support/tool_main.h"

#include <stdexcept>

namespace
{

using namespace velmora;
using namespace velmora::tools;

constexpr const char* usage = "usage: hdiutil VERB …\n"
                              "  create -srcfolder FOLDER -volname NAME -fs HFS+ [-fsargs \"-c c=64,a=16,e=16\"] "
                              "-format UDRW -size N{b|k|m|g|t}\n"
                              "         [-ov] IMAGE\n"
                              "  attach [-readwrite | -readonly] [-noverify] [-noautoopen] [-nobrowse] IMAGE\n"
                              "  detach [-force] DEVICE | MOUNT-POINT\n"
                              "  convert IMAGE -format UDZO|UDRO|UDRW -o IMAGE [-imagekey zlib-level=1…9] [-ov]\n"
                              "  internet-enable -yes|-no IMAGE\n"
                              "  imageinfo IMAGE\n"
                              "  verify IMAGE\n"
                              "  info\n";

struct Verb {
    std::string_view name;
    int (*run)(std::span<const std::string>, const StopToken&);
};
constexpr Verb verbs[] = {
    {"create", hdiutil::create},       {"attach", hdiutil::attach}, {"detach", hdiutil::detach},
    {"convert", hdiutil::convert},     {"info", hdiutil::info},     {"internet-enable", hdiutil::internetEnable},
    {"imageinfo", hdiutil::imageinfo}, {"verify", hdiutil::verify},
};

int run(const std::vector<std::string>& arguments, const StopToken& stop)
{
    if (arguments.empty())
        throw UsageError("no verb given");
    for (const Verb& verb : verbs) {
        if (verb.name != arguments.front())
            continue;
        try {
            return verb.run(std::span(arguments).subspan(1), stop);
        } catch (const UsageError&) {
            throw;
        } catch (const std::exception& error) {
            throw std::runtime_error(arguments.front() + " failed - " + error.what());
        }
    }
    throw UsageError("unknown verb \"" + arguments.front() + "\"");
}

} // namespace

int main(int argc, char** argv)
{
    return runTool(argc, argv, "hdiutil", usage, run);
}
