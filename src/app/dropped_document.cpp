#include "app/dropped_document.h"

#include "app/text.h"
#include "model/document.h"

#include <QMimeData>
#include <QUrl>

namespace velmora
{

std::optional<std::filesystem::path> droppedDocument(const QMimeData* data)
{
    if (!data)
        return std::nullopt;
    const QList<QUrl> urls = data->urls();
    if (urls.size() != 1 || !urls.front().isLocalFile())
        return std::nullopt;
    const QString file = urls.front().toLocalFile();
    const QString extension = QLatin1Char('.') + qtText(Document::fileExtension);
    return file.endsWith(extension, Qt::CaseInsensitive) ? std::optional(nativePath(file)) : std::nullopt;
}

} // namespace velmora
