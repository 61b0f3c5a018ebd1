#include "pipeline/image_commands.h"

namespace velmora
{

namespace fs = std::filesystem;

std::vector<std::string> createArguments(const DMGProject& project, const fs::path& stage, std::int64_t sizeMB,
                                         const fs::path& image)
{
    return {"create",
            "-srcfolder",
            stage.string(),
            "-volname",
            project.volumeName,
            "-fs",
            std::string(hdiutilName(project.filesystem)),
            "-fsargs",
            "-c c=64,a=16,e=16",
            "-format",
            "UDRW",
            "-size",
            std::to_string(sizeMB) + "m",
            image.string()};
}

std::vector<std::string> convertArguments(const DMGProject& project, const fs::path& image, const fs::path& output)
{
    std::vector<std::string> arguments = {"convert", image.string(), "-format", std::string(rawValue(project.format)),
                                          "-o",      output.string()};
    if (project.format == DMGFormat::compressed)
        arguments.insert(arguments.end(), {"-imagekey", "zlib-level=9"});
    if (const auto encryption = hdiutilValue(project.encryption))
        arguments.insert(arguments.end(), {"-encryption", std::string(*encryption), "-stdinpass"});
    return arguments;
}

std::vector<std::string> internetEnableArguments(const fs::path& output)
{
    return {"internet-enable", "-yes", output.string()};
}

} // namespace velmora
