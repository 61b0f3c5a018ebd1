#include "worlds/build_world.h"

#include "model/uuid.h"
#include "platform/file_tree.h"

#include <QColor>
#include <QImage>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace velmora::testing
{

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder()
    : m_path(fs::temp_directory_path() / ("velmora-pipeline-test-" + Uuid::random().toString()))
{
    fs::create_directories(m_path);
}

TemporaryFolder::~TemporaryFolder()
{
    removeTree(m_path);
}

BuildWorld::BuildWorld()
    : tools(std::make_shared<FakeTools>(temporary, volumes, [this] { return uuid(++m_uuids); })),
      arrows({std::nullopt, m_root.path() / "support", m_root.path() / "arrows"}, cache)
{
    for (const fs::path& folder : {temporary, home, volumes, output.parent_path()})
        fs::create_directories(folder);
    write(source / "My App.app/Contents/Info.plist", "<plist/>");
    QImage arrow(40, 20, QImage::Format_ARGB32);
    arrow.fill(Qt::red);
    arrow.save(QString::fromStdString((source / "arrow.png").string()));
}

DMGProject BuildWorld::typicalProject() const
{
    DMGProject project;
    project.items = {{.sourcePath = (source / "My App.app").string(), .displayName = "My App.app", .x = 150, .y = 180},
                     DMGItem::applicationsLink({450, 180})};
    project.overlayImages = {
        {.sourcePath = (source / "arrow.png").string(), .x = 250, .y = 150, .width = 100, .height = 50}};
    return project;
}

BuildEnvironment BuildWorld::environment()
{
    BuildEnvironment result;
    result.shell = tools;
    result.uuid = [this] { return uuid(++m_uuids); };
    result.temporaryFolder = temporary;
    result.homeFolder = home;
    result.mountPath = [this](const std::string& path) {
        return volumes / fs::path(path).lexically_relative("/Volumes");
    };
    result.diskSpace = [this](const fs::path& path) { return freeSpace ? freeSpace(path) : diskSpace(path); };
    result.sleep = [this](std::chrono::milliseconds duration) { naps.push_back(duration); };
    result.stop = stop.token();
    result.arrows = &arrows;
    result.cache = &cache;
    return result;
}

std::string BuildWorld::build(const DMGProject& project)
{
    DMGBuilder builder([this](const std::string& line) { log.push_back(line); }, environment(),
                       [this](BuildStep step, double fraction) { steps.emplace_back(step, fraction); });
    std::string error;
    try {
        builder.build(project, output);
    } catch (const std::exception& failure) {
        error = failure.what();
    }
    warnings = builder.warnings();
    return error;
}

std::vector<std::string> BuildWorld::scratchFiles() const
{
    return listFolder(temporary);
}

bool BuildWorld::logged(std::string_view line) const
{
    return std::find(log.begin(), log.end(), line) != log.end();
}

std::string BuildWorld::uuid(int number)
{
    const std::string digits = std::to_string(number);
    return "00000000-0000-4000-8000-" + std::string(12 - digits.size(), '0') + digits;
}

void BuildWorld::write(const fs::path& path, std::string_view content)
{
    fs::create_directories(path.parent_path());
    writeFile(path, content);
}

std::string BuildWorld::read(const fs::path& path)
{
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

} // namespace velmora::testing
