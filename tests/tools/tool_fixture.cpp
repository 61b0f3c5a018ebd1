#include "tools/tool_fixture.h"

#include "platform/file_tree.h"

#include <QByteArray>
#include <QTemporaryDir>

#include <fstream>

namespace fs = std::filesystem;

namespace velmora::test
{

namespace
{

fs::path newFolder()
{
    QTemporaryDir folder(QString::fromStdString((fs::temp_directory_path() / "velmora-tools-XXXXXX").string()));
    folder.setAutoRemove(false);
    return folder.path().toStdString();
}

} // namespace

ToolTest::ToolTest() : m_folder(newFolder())
{
    for (const char* const variable : {"XDG_RUNTIME_DIR", "TMPDIR", "HOME"}) {
        const fs::path folder = path(variable);
        fs::create_directory(folder);
        fs::permissions(folder, fs::perms::owner_all);
        qputenv(variable, folder.c_str());
    }
    qunsetenv("SOURCE_DATE_EPOCH");
    qunsetenv("DISPLAY");
}

ToolTest::~ToolTest()
{
    qunsetenv("TMPDIR");
    removeTree(m_folder);
}

ChildResult ToolTest::run(const std::string& tool, const std::vector<std::string>& arguments, StopToken stop)
{
    return runChild({.program = std::string(VELMORA_TEST_TOOLS_DIR "/") + tool,
                     .arguments = arguments,
                     .input = "",
                     .stop = std::move(stop)});
}

std::string ToolTest::succeed(const std::string& tool, const std::vector<std::string>& arguments)
{
    const ChildResult result = run(tool, arguments);
    EXPECT_EQ(result.exitCode, 0) << tool << ": " << result.launchError << result.error << result.output;
    return result.output;
}

std::string ToolTest::fail(const std::string& tool, const std::vector<std::string>& arguments)
{
    const ChildResult result = run(tool, arguments);
    EXPECT_EQ(result.exitCode, 1) << tool << ": " << result.launchError << result.error;
    EXPECT_EQ(result.output, "");
    EXPECT_NE(result.error, "");
    return result.error;
}

fs::path ToolTest::write(const std::string& name, std::string_view content) const
{
    const fs::path file = path(name);
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file;
}

fs::path ToolTest::makeStage() const
{
    const fs::path program = write("stage/My App.app/Contents/MacOS/My App", std::string(300'000, 'x'));
    fs::permissions(program, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec);
    write("stage/My App.app/Contents/Résumé.txt", "caf\u00e9");
    write("stage/.background/background.tiff", "II*");
    fs::create_symlink("/Applications", path("stage/Applications"));
    return path("stage");
}

fs::path ToolTest::createImage(const std::string& name, const fs::path& folder, const std::string& volumeName,
                               const std::string& size) const
{
    const fs::path image = path(name);
    fs::create_directories(image.parent_path());
    succeed("hdiutil", {"create", "-srcfolder", folder, "-volname", volumeName, "-fs", "HFS+", "-fsargs",
                        "-c c=64,a=16,e=16", "-format", "UDRW", "-size", size, image});
    return image;
}

AttachedVolume attachedVolume(const std::string& output)
{
    const auto mountPoint = output.rfind('\t') + 1;
    const auto line = output.rfind('\n', output.size() - 2) + 1;
    std::string device = output.substr(line, output.find('\t', line) - line);
    device.erase(device.find_last_not_of(' ') + 1);
    return {device, output.substr(mountPoint, output.size() - 1 - mountPoint)};
}

std::string readAll(const fs::path& file)
{
    return readFile(file, std::uint64_t{1} << 32);
}

std::vector<std::string> namesIn(const fs::path& folder)
{
    return listFolder(folder);
}

std::string systemProgram(const std::string& name)
{
    for (const char* const folder : {"/usr/bin/", "/bin/", "/usr/sbin/"}) {
        if (fs::exists(folder + name))
            return folder + name;
    }
    return {};
}

} // namespace velmora::test
