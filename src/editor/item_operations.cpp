#include "editor/app_state.h"

#include "model/project_defaults.h"
#include "platform/ports/file_panels.h"

#include <algorithm>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

/// Folders may come with a separator at the end, which is no part of their name.
fs::path withoutTrailingSeparator(const fs::path& path)
{
    return path.has_filename() || !path.has_relative_path() ? path : path.parent_path();
}

} // namespace

void AppState::addFiles(const std::vector<fs::path>& files)
{
    const UndoStep step(*this);
    if (!files.empty()) {
        change([&](DMGProject& project) {
            auto slot = static_cast<int>(std::count_if(project.items.begin(), project.items.end(), isReal));
            for (const fs::path& file : files) {
                const fs::path source = withoutTrailingSeparator(file);
                const Point place = DMGProjectDefaults::appSlot(slot++, project);
                project.items.push_back({.sourcePath = source.string(),
                                         .displayName = source.filename().string(),
                                         .x = place.x,
                                         .y = place.y});
            }
        });
    }
    markDirty();
}

void AppState::addFilesViaPanel()
{
    const auto files = m_ports.panels.open({.multiple = true, .folders = true});
    if (!files.empty())
        addFiles(files);
}

void AppState::addApplicationsLink()
{
    edit({}, [](DMGProject& project) { project.items.push_back(DMGProjectDefaults::applicationsItem(project)); });
}

void AppState::remove(Uuid id)
{
    const UndoStep step(*this);
    change([&](DMGProject& project) { std::erase_if(project.items, [&](const auto& item) { return item.id == id; }); });
    if (m_selections.item == id)
        setSelection({});
    markDirty();
}

void AppState::removeSelected()
{
    if (m_selections.item)
        remove(*m_selections.item);
}

void AppState::moveItem(const Uuid& id, std::size_t row)
{
    const auto& items = m_project.items;
    const DMGItem* item = findElement(items, id);
    if (!item)
        return;
    const auto from = static_cast<std::size_t>(item - items.data());
    const std::size_t before = std::min(row, items.size());
    if (before == from || before == from + 1)
        return;
    edit({}, [&](DMGProject& project) {
        const auto at = [&](std::size_t index) { return project.items.begin() + static_cast<std::ptrdiff_t>(index); };
        if (before > from)
            std::rotate(at(from), at(from + 1), at(before));
        else
            std::rotate(at(before), at(from), at(from + 1));
    });
}

void AppState::centerItemOnCanvas(bool horizontal, bool vertical, const Uuid& id)
{
    const Size content = m_project.contentSize();
    editElement<DMGItem>(id, [&](DMGItem& item) {
        if (horizontal)
            item.x = content.width * 0.5;
        if (vertical)
            item.y = content.height * 0.5;
    });
}

void AppState::replaceItemViaPanel(const Uuid& id)
{
    const auto files = m_ports.panels.open({.folders = true});
    if (files.empty())
        return;
    const fs::path source = withoutTrailingSeparator(files.front());
    editElement<DMGItem>(id, [&](DMGItem& item) {
        if (item.displayName == withoutTrailingSeparator(item.sourcePath).filename().string())
            item.displayName = source.filename().string();
        item.sourcePath = source.string();
    });
}

} // namespace velmora
