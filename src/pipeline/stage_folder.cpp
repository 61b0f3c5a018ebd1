#include "pipeline/stage_folder.h"

#include "diskimage/base/error.h"
#include "platform/file_tree.h"

#include <utility>

namespace velmora
{

namespace fs = std::filesystem;
using diskimage::hfs::storedName;

StageFolder::StageFolder(fs::path path) : m_path(std::move(path))
{
    for (const std::string& name : listFolder(m_path)) {
        try {
            m_names.emplace(storedName(name), name);
        } catch (const diskimage::DiskImageError&) {
            // No name that is written here can equal it; the image tool will say what is wrong with it.
        }
    }
}

std::optional<std::string> StageFolder::find(const std::string& name) const
{
    const auto found = m_names.find(storedName(name));
    if (found == m_names.end())
        return {};
    return found->second;
}

fs::path StageFolder::place(const std::string& name)
{
    const std::u16string stored = storedName(name);
    if (const auto found = m_names.find(stored); found != m_names.end()) {
        removeTree(m_path / found->second);
        m_names.erase(found);
    }
    m_names.emplace(stored, name);
    return m_path / name;
}

void StageFolder::write(const std::string& name, std::string_view bytes)
{
    const fs::path path = place(name);
    writeFileAtomically(path, bytes);
    fs::permissions(path, stagedFileMode);
}

} // namespace velmora
