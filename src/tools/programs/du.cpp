#include "diskimage/hfs/writer.h"
#include "platform/mounts.h"
#include "tools/support/arguments.h"
#include "tools/support/source_tree.h"
#include "tools/support/tool_main.h"

#include <iostream>

namespace
{

using namespace velmora;
using namespace velmora::tools;

constexpr const char* usage = "usage: du -sk FOLDER\n"
                              "Prints the kilobytes that an HFS+ volume with the folder's content needs.\n";

int run(const std::vector<std::string>& arguments, const StopToken&)
{
    static constexpr OptionSpec specs[] = {{"-sk"}};
    const Arguments given(arguments, specs, 1, 1);
    if (!given.has("-sk"))
        throw UsageError("option -sk is missing");
    const std::string& folder = given.operands().front();
    // What the local file system uses says little: holes, compression and names cost differently there.
    const auto root = scanFolder(Mounts::localPath(folder), "Untitled", {});
    const std::uint64_t bytes = diskimage::hfs::requiredBytes(root, {});
    std::cout << (bytes + 1023) / 1024 << '\t' << folder << '\n';
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    return runTool(argc, argv, "du", usage, run);
}
