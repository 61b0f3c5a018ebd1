#include "platform/mounts.h"
#include "tools/pictures/hidpi_tiff.h"
#include "tools/support/arguments.h"
#include "tools/support/output_file.h"
#include "tools/support/tool_main.h"

#include <iostream>

namespace
{

using namespace velmora;
using namespace velmora::tools;

constexpr const char* usage = "usage: tiffutil -cathidpicheck PICTURE PICTURE@2x -out TIFF\n"
                              "Joins two PNG files, the second at twice the resolution, into one TIFF file.\n";
constexpr std::uint32_t largestSide = 16384;

int run(const std::vector<std::string>& arguments, const StopToken&)
{
    static constexpr OptionSpec specs[] = {{"-cathidpicheck"}, {"-out", 1}};
    const Arguments given(arguments, specs, 2, 2);
    if (!given.has("-cathidpicheck"))
        throw UsageError("option -cathidpicheck is missing");
    const std::string out = Mounts::localPath(given.require("-out"));
    const DecodedPng pictures[] = {readPng(Mounts::localPath(given.operands()[0]), largestSide),
                                   readPng(Mounts::localPath(given.operands()[1]), largestSide)};
    for (const std::string& warning : checkResolutions(pictures[0], pictures[1]))
        std::cerr << "tiffutil: warning: " << warning << '\n';
    OutputFile output(out, Existing::replace);
    writeTiff(output.temporaryPath(), pictures);
    output.commit();
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    return runTool(argc, argv, "tiffutil", usage, run);
}
