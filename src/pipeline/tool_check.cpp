#include "pipeline/tool_check.h"

#include "diskimage/base/error.h"
#include "pipeline/image_commands.h"
#include "pipeline/image_size.h"
#include "pipeline/scratch_folder.h"
#include "pipeline/stage_folder.h"
#include "pipeline/text.h"
#include "platform/file_tree.h"

#include <system_error>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

/// Runs a tool silently.
ShellResult runTool(const BuildEnvironment& environment, const std::string& tool,
                    const std::vector<std::string>& arguments, const std::optional<std::string>& input = {})
{
    ShellResult result = environment.shell->run(tool, arguments, input, {}, environment.stop);
    if (environment.stop.stopRequested())
        throw BuildError("Check stopped.");
    return result;
}

/// A build in small: an empty image made as the project wants its own.
class Rehearsal
{
public:
    Rehearsal(const DMGProject& project, const BuildEnvironment& environment)
        : m_environment(environment), m_scratch(environment.temporaryFolder, "velmora-check-", environment.uuid())
    {
        m_project.volumeName = "Velmora";
        m_project.filesystem = project.filesystem;
        m_project.format = project.format;
        fs::create_directory(m_stage);
    }

    /// Local file systems take shorter names than volumes do.
    void stageNames(const std::vector<DMGItem>& items)
    {
        const fs::path folder = m_scratch.path() / "names";
        fs::create_directory(folder);
        StageFolder names(folder);
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (items[i].hidden)
                continue;
            try {
                writeFile(names.place(items[i].displayName), {});
            } catch (const diskimage::DiskImageError&) {
                // A name for no volume at all was named by the project's own check.
            } catch (const FileError& error) {
                m_problems.push_back(errorIn(elementField("items", i, "displayName"), error.what()));
            }
        }
    }

    void create()
    {
        ShellResult result = createImage();
        if (result.ok())
            return;
        refuse("filesystem", std::string(displayName(m_project.filesystem)), result);
        // What comes after it can be tried with another one.
        m_project.filesystem = FilesystemKind::hfs;
        m_hasImage = createImage().ok();
    }

    void convert(ImageEncryption encryption)
    {
        if (!m_hasImage)
            return;
        const ShellResult plain = convertImage(m_plainImage, {});
        if (!plain.ok())
            refuse("format", std::string(displayName(m_project.format)), plain);
        if (encryption == ImageEncryption::none)
            return;
        if (!plain.ok())
            m_project.format = DMGFormat::readOnly;
        m_project.encryption = encryption;
        const ShellResult encrypted = convertImage(m_scratch.path() / "encrypted.dmg", "a password for nothing");
        if (!encrypted.ok())
            refuse("encryption", std::string(rawValue(encryption)), encrypted);
    }

    void enableInternet()
    {
        if (!fs::exists(m_plainImage))
            return;
        const ShellResult result = runTool(m_environment, imageTool, internetEnableArguments(m_plainImage));
        if (!result.ok())
            refuse("internetEnabled", "An internet-enabled image", result);
    }

    void sign(SigningMode mode)
    {
        if (m_hasImage)
            signImage();
        if (!notarizes(mode))
            return;
        const ShellResult notary = runTool(m_environment, "/usr/bin/xcrun", {"notarytool", "--version"});
        if (!notary.ok())
            refuse("signingMode", "Notarization", notary);
    }

    [[nodiscard]] Problems take() { return std::move(m_problems); }

private:
    static constexpr const char* imageTool = "/usr/bin/hdiutil";

    ShellResult createImage()
    {
        return runTool(m_environment, imageTool, createArguments(m_project, m_stage, imageSizeMB(0), m_image));
    }

    ShellResult convertImage(const fs::path& output, const std::optional<std::string>& password)
    {
        return runTool(m_environment, imageTool, convertArguments(m_project, m_image, output), password);
    }

    /// Without an identity: that works wherever signing does, and asks nobody for a key.
    void signImage()
    {
        const fs::path& image = fs::exists(m_plainImage) ? m_plainImage : m_image;
        const ShellResult result =
            runTool(m_environment, "/usr/bin/codesign", {"--sign", "-", "--force", image.string()});
        if (!result.ok())
            refuse("signingMode", "Code signing", result);
    }

    void refuse(const std::string& field, const std::string& what, const ShellResult& result)
    {
        const std::string reason = trimmed(result.stdErr);
        m_problems.push_back(
            errorIn(field, what + " is not possible here: " +
                               (reason.empty() ? "exit status " + std::to_string(result.exitCode) : reason)));
    }

    const BuildEnvironment& m_environment;
    ScratchFolder m_scratch;
    fs::path m_stage = m_scratch.path() / "stage";
    fs::path m_image = m_scratch.path() / "temp.dmg";
    fs::path m_plainImage = m_scratch.path() / "plain.dmg";
    bool m_hasImage = true;
    DMGProject m_project{};
    Problems m_problems{};
};

/// Kilobytes of a file or folder; 0 for what cannot be measured, which another check will have named.
std::int64_t measured(const std::string& path, const BuildEnvironment& environment)
{
    std::error_code error;
    if (fs::is_directory(path, error))
        return parseKilobytes(runTool(environment, "/usr/bin/du", {"-sk", path}).stdOut);
    const auto bytes = fs::file_size(path, error);
    return error ? 0 : static_cast<std::int64_t>(bytes / 1024);
}

void checkSize(const DMGProject& project, const BuildEnvironment& environment, Problems& problems)
{
    if (project.imageSizeAutomatic)
        return;
    std::int64_t kilobytes = 0;
    for (const DMGItem& item : project.items) {
        if (isReal(item))
            kilobytes += measured(item.sourcePath, environment);
    }
    const std::int64_t needed = imageSizeMB(kilobytes);
    if (project.manualSizeMB < needed)
        problems.push_back(warningIn("manualSizeMB", std::to_string(project.manualSizeMB) +
                                                         " MB is less than the content needs; the image would have " +
                                                         std::to_string(needed) + " MB or a little more."));
}

} // namespace

Problems checkTools(const DMGProject& project, const BuildEnvironment& environment)
{
    Rehearsal rehearsal(project, environment);
    rehearsal.stageNames(project.items);
    rehearsal.create();
    rehearsal.convert(project.encryption);
    if (project.internetEnabled)
        rehearsal.enableInternet();
    if (signs(project.signingMode))
        rehearsal.sign(project.signingMode);
    Problems problems = rehearsal.take();
    checkSize(project, environment, problems);
    return problems;
}

} // namespace velmora
