// Systems without a call that selects a file.

#include "app/ports/file_manager.h"
#include "app/text.h"

#include <QDesktopServices>
#include <QUrl>

namespace velmora
{

void showInFileManager(const std::filesystem::path& file)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(qtPath(file.parent_path())));
}

} // namespace velmora
