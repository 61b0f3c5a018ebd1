#include "app/inspector/small_picture.h"

#include "app/text.h"
#include "render/picture.h"

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
    const FileStamp stamp = stampOf(path);
    if (path == m_path && stamp == m_stamp)
        return m_picture;
    m_path = path;
    m_stamp = stamp;
    m_picture = path.empty() ? SmallPicture{} : reduced(readPicture(qtPath(path)));
    return m_picture;
}

} // namespace velmora
