#include "platform/file_tree.h"
#include "platform/mounts.h"
#include "tools/support/arguments.h"
#include "tools/support/png_file.h"
#include "tools/support/tool_main.h"

#include <filesystem>
#include <iostream>
#include <stdexcept>

namespace
{

using namespace velmora;
using namespace velmora::tools;

constexpr const char* usage = "usage: sips -s dpiWidth N -s dpiHeight N PICTURE…\n"
                              "Stamps the resolution of PNG files, in dots per inch; the pixels stay as they are.\n";
constexpr std::uint64_t fileLimit = std::uint64_t{1} << 30;

struct WantedResolution {
    std::optional<std::uint32_t> x{}; ///< dots per metre
    std::optional<std::uint32_t> y{};
};

WantedResolution parseProperties(const Arguments& given)
{
    WantedResolution wanted;
    for (const auto& property : given.all("-s")) {
        auto* const side = property[0] == "dpiWidth" ? &wanted.x : property[0] == "dpiHeight" ? &wanted.y : nullptr;
        if (!side)
            throw UsageError("the property \"" + property[0] + "\" cannot be set; only dpiWidth and dpiHeight can");
        *side = dotsPerMetre(static_cast<double>(parseNumber(property[1], 1, 100'000, property[0])));
    }
    if (!wanted.x && !wanted.y)
        throw UsageError("nothing to set");
    return wanted;
}

void stamp(const std::string& path, const WantedResolution& wanted)
{
    // The file behind a link is changed, not the link replaced.
    const std::filesystem::path real = std::filesystem::canonical(Mounts::localPath(path));
    const std::string file = readFile(real, fileLimit);
    const auto bytes = diskimage::viewOf(file);
    if (!isPng(bytes))
        throw std::runtime_error("the resolution of PNG files only can be set");
    const PngResolution old =
        readPngHeader(bytes).resolution.value_or(PngResolution{dotsPerMetre(72), dotsPerMetre(72)});
    const auto stamped = withResolution(bytes, {wanted.x.value_or(old.x), wanted.y.value_or(old.y)});
    writeFileAtomically(real, diskimage::textOf(stamped));
}

int run(const std::vector<std::string>& arguments, const StopToken&)
{
    static constexpr OptionSpec specs[] = {{"-s", 2, true}};
    const Arguments given(arguments, specs, 1, 1000);
    const WantedResolution wanted = parseProperties(given);
    for (const std::string& path : given.operands()) {
        try {
            stamp(path, wanted);
        } catch (const std::exception& error) {
            throw std::runtime_error("\"" + path + "\": " + error.what());
        }
        std::cout << path << '\n';
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    return runTool(argc, argv, "sips", usage, run);
}
