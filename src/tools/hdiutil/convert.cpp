#include "diskimage/base/error.h"
#include "diskimage/udif/image.h"
#include "tools/hdiutil/verbs.h"
#include "tools/support/arguments.h"
#include "tools/support/local_file.h"
#include "tools/support/output_file.h"

#include <iostream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace velmora::tools::hdiutil
{

using namespace diskimage;

namespace
{

udif::Format formatFor(const std::string& code)
{
    static constexpr std::pair<const char*, udif::Format> formats[] = {
        {"UDRW", udif::Format::udrw}, {"UDRO", udif::Format::udro}, {"UDZO", udif::Format::udzo}};
    for (const auto& [name, format] : formats) {
        if (code == name)
            return format;
    }
    throw std::runtime_error("the format \"" + code + "\" is not available on this system; use UDZO, UDRO or UDRW");
}

/// The level from the key "zlib-level=N".
int zlibLevel(const std::string& key)
{
    static constexpr std::string_view name = "zlib-level=";
    if (!key.starts_with(name))
        throw UsageError("unknown image key \"" + key + "\"");
    return static_cast<int>(parseNumber(std::string_view(key).substr(name.size()), 1, 9, "zlib-level"));
}

} // namespace

int convert(std::span<const std::string> arguments, const StopToken& stop)
{
    static constexpr OptionSpec specs[] = {{"-format", 1}, {"-o", 1},          {"-imagekey", 1},
                                           {"-ov", 0},     {"-encryption", 1}, {"-stdinpass", 0}};
    const Arguments given(arguments, specs, 1, 1);
    const std::string code = given.require("-format");
    const fs::path output = outputPath(given.require("-o"));
    udif::ConvertOptions options;
    if (const auto key = given.value("-imagekey"))
        options.zlibLevel = zlibLevel(*key);
    if (given.has("-encryption") || given.has("-stdinpass"))
        throw std::runtime_error("encrypted images are not available on this system");
    options.format = formatFor(code);
    options.stopped = [&stop] { return stop.stopRequested(); };

    const fs::path input = fs::absolute(given.operands().front());
    std::error_code error;
    if (fs::equivalent(input, output, error))
        throw std::runtime_error("\"" + output.string() + "\" is the image to be converted");
    refuseAttached(input);
    refuseAttached(output);
    const auto file = openLocalFile(input, OpenMode::readOnly);
    const udif::Image image(*file);

    OutputFile target(output, given.has("-ov") ? Existing::replace : Existing::refuse);
    const auto storage = openLocalFile(target.temporaryPath(), OpenMode::readWrite);
    udif::convert(image.disk(), *storage, options);
    throwIfStopped(stop);
    target.commit();
    std::cout << "created: " << output.string() << "\n";
    return 0;
}

int internetEnable(std::span<const std::string> arguments, const StopToken&)
{
    static constexpr OptionSpec specs[] = {{"-yes"}, {"-no"}};
    const Arguments given(arguments, specs, 1, 1);
    if (given.has("-yes") == given.has("-no"))
        throw UsageError("give either -yes or -no");
    const auto file = openLocalFile(given.operands().front(), OpenMode::readWrite);
    udif::setInternetEnabled(*file, given.has("-yes"));
    std::cout << (given.has("-yes") ? "enabled" : "disabled") << ": " << given.operands().front() << "\n";
    return 0;
}

} // namespace velmora::tools::hdiutil
