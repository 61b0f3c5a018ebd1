#include "pipeline/content_check.h"

#include "diskimage/base/error.h"
#include "pipeline/volume_order.h"
#include "platform/file_tree.h"

#include <QFileInfo>
#include <QString>

#include <map>
#include <system_error>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

/// Walks through one item's files. Deep trees take a list and not the stack.
class SourceWalk
{
public:
    SourceWalk(std::string field, const StopToken& stop) : m_field(std::move(field)), m_stop(stop) {}

    void walk(const fs::path& source, Problems& problems)
    {
        m_todo = {source};
        while (!m_todo.empty()) {
            if (m_stop.stopRequested())
                throw BuildError("Check stopped.");
            const fs::path path = std::move(m_todo.back());
            m_todo.pop_back();
            look(path, problems);
        }
    }

private:
    void look(const fs::path& path, Problems& problems)
    {
        std::error_code error;
        const fs::file_type type = fs::symlink_status(path, error).type();
        if (type == fs::file_type::symlink || type == fs::file_type::not_found)
            return;
        if (type != fs::file_type::directory && type != fs::file_type::regular)
            complain(problems, path, "is neither a file nor a folder nor a link");
        else if (!QFileInfo(QString::fromStdString(path.string())).isReadable())
            complain(problems, path, "may not be read");
        else if (type == fs::file_type::directory)
            lookInto(path, problems);
    }

    void lookInto(const fs::path& folder, Problems& problems)
    {
        std::map<std::u16string, std::string, VolumeOrder> names;
        try {
            for (const std::string& name : listFolder(folder)) {
                if (takeName(folder, name, names, problems))
                    m_todo.push_back(folder / name);
            }
        } catch (const FileError& error) {
            problems.push_back(errorIn(m_field, error.what()));
        }
    }

    /// Whether the volume can hold the name at all.
    bool takeName(const fs::path& folder, const std::string& name,
                  std::map<std::u16string, std::string, VolumeOrder>& names, Problems& problems) const
    {
        try {
            const auto [earlier, isNew] = names.emplace(diskimage::hfs::storedName(name), name);
            if (!isNew)
                complain(problems, folder / name, "and “" + earlier->second + "” beside it are one name on the volume");
            return true;
        } catch (const diskimage::DiskImageError& error) {
            complain(problems, folder / name, std::string("cannot be on a volume: ") + error.what());
            return false;
        }
    }

    void complain(Problems& problems, const fs::path& path, const std::string& what) const
    {
        problems.push_back(errorIn(m_field, "“" + path.string() + "” " + what + "."));
    }

    std::string m_field;
    const StopToken& m_stop;
    std::vector<fs::path> m_todo{};
};

} // namespace

Problems checkContent(const DMGProject& project, const StopToken& stop)
{
    Problems problems;
    for (std::size_t i = 0; i < project.items.size(); ++i) {
        if (isReal(project.items[i]))
            SourceWalk(elementField("items", i, "sourcePath"), stop).walk(project.items[i].sourcePath, problems);
    }
    return problems;
}

} // namespace velmora
