#include "app/inspector/folder_count.h"

#include <filesystem>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

FolderContent contentOf(const fs::path& folder, const StopToken& stop)
{
    FolderContent content;
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, error);
    for (; !error && entry != fs::recursive_directory_iterator() && !stop.stopRequested(); entry.increment(error)) {
        std::error_code unreadable;
        const fs::file_status status = entry->symlink_status(unreadable);
        if (unreadable || fs::is_directory(status))
            continue;
        ++content.files;
        if (fs::is_regular_file(status)) {
            const std::uintmax_t size = entry->file_size(unreadable);
            content.bytes += unreadable ? 0 : size;
        }
    }
    return content;
}

} // namespace

FolderCount::FolderCount(QObject* parent) : QObject(parent)
{
    m_worker.setMaxThreadCount(1);
}

FolderCount::~FolderCount()
{
    clear();
    m_worker.waitForDone();
}

void FolderCount::count(const std::string& folder)
{
    if (folder == m_folder && !m_expired)
        return;
    const auto before = folder == m_folder ? m_content : std::nullopt;
    clear();
    m_content = before;
    m_folder = folder;
    m_stop.emplace();
    m_worker.start([this, folder, stop = m_stop->token()] {
        const FolderContent content = contentOf(folder, stop);
        if (stop.stopRequested())
            return;
        QMetaObject::invokeMethod(this, [this, content, stop] {
            if (stop.stopRequested()) // another folder was asked for meanwhile
                return;
            m_content = content;
            emit counted();
        });
    });
}

void FolderCount::clear()
{
    if (m_stop)
        m_stop->requestStop();
    m_stop.reset();
    m_folder.clear();
    m_content.reset();
    m_expired = false;
}

} // namespace velmora
