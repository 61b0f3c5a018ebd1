#include "render/file_stamp.h"

#include <QFileInfo>

namespace velmora
{

FileStamp stampOf(const std::string& path)
{
    const QFileInfo info(QString::fromStdString(path));
    if (path.empty() || !info.exists())
        return {};
    return {true, info.isDir(), info.size(), info.lastModified()};
}

} // namespace velmora
