#include "app/inspector/small_picture.h"

#include "app/text.h"
#include "render/picture.h"

#include <QFileInfo>

#include <algorithm>

namespace velmora
{
namespace
{

SmallPicture reduced(const PicturePtr& picture)
{
    if (!picture || picture->pixels.isNull())
        return {};
    const QImage& all = picture->pixels;
    const bool large = std::max(all.width(), all.height()) > SmallPictureReader::side;
    const QSize room(SmallPictureReader::side, SmallPictureReader::side);
    return {large ? all.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation) : all, all.size(),
            picture->pointSize};
}

} // namespace

const SmallPicture& SmallPictureReader::read(const std::string& path)
{
    const QFileInfo file(qtPath(path));
    const QDateTime modified = path.empty() ? QDateTime() : file.lastModified();
    const qint64 bytes = path.empty() ? -1 : file.size();
    if (m_known && path == m_path && modified == m_modified && bytes == m_bytes)
        return m_picture;
    m_known = true;
    m_path = path;
    m_modified = modified;
    m_bytes = bytes;
    m_picture = path.empty() ? SmallPicture{} : reduced(readPicture(qtPath(path)));
    return m_picture;
}

} // namespace velmora
