// macOS: "open -R" selects a file in the Finder.

#include "app/ports/file_manager.h"
#include "app/text.h"

#include <QProcess>

namespace velmora
{

void showInFileManager(const std::filesystem::path& file)
{
    QProcess::startDetached(QStringLiteral("/usr/bin/open"), {QStringLiteral("-R"), qtPath(file)});
}

} // namespace velmora
