#include "pipeline/image_size.h"

#include "pipeline/text.h"

#include <algorithm>
#include <charconv>

namespace velmora
{

std::int64_t parseKilobytes(std::string_view output)
{
    const auto pieces = split(output, '\t');
    if (pieces.empty())
        return 0;
    std::string_view digits = trimmedBlanks(pieces.front());
    if (digits.starts_with('+'))
        digits.remove_prefix(1);
    std::int64_t kilobytes = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), kilobytes);
    return error == std::errc{} && end == digits.data() + digits.size() ? kilobytes : 0;
}

std::int64_t imageSizeMB(std::int64_t kilobytes)
{
    const auto megabytes = static_cast<std::int64_t>(static_cast<double>(kilobytes) / 1024 * 1.4) + 25;
    return std::max<std::int64_t>(megabytes, 32);
}

ImageSize chooseImageSize(BuildRun& run, const DMGProject& project, const std::filesystem::path& stage)
{
    const ShellResult usage = run.tool("/usr/bin/du", {"-sk", stage.string()}, Echo::silent);
    run.warnUnlessOk(usage, "The size of the content could not be measured");
    const std::int64_t content = parseKilobytes(usage.stdOut);
    const std::int64_t needed = imageSizeMB(content);
    if (project.imageSizeAutomatic)
        return {content, needed};
    const std::int64_t size = std::max(needed, project.manualSizeMB);
    run.say("Manual image size requested: " + std::to_string(project.manualSizeMB) + " MB (using " +
            std::to_string(size) + " MB).");
    return {content, size};
}

} // namespace velmora
