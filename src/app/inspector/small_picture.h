#pragma once

#include "render/file_stamp.h"

#include <QImage>
#include <QSize>
#include <QSizeF>

#include <string>

namespace velmora
{

/// What a panel shows of a picture file: the picture, reduced, and how large it is.
struct SmallPicture {
    QImage image{}; ///< null when the file cannot be read
    QSize pixels{}; ///< of the whole picture
    QSizeF pointSize{};

    [[nodiscard]] bool isReadable() const { return !image.isNull(); }
};

/// Reads a picture file again when another is named or the file has changed since.
class SmallPictureReader
{
public:
    /// The longer side of the reduced picture, pixels.
    static constexpr int side = 640;

    /// Holds until the next call.
    const SmallPicture& read(const std::string& path);

private:
    std::string m_path{};
    FileStamp m_stamp{};
    SmallPicture m_picture{};
};

} // namespace velmora
