#pragma once

#include "model/document.h"
#include "platform/ports/file_panels.h"

#include <string>

/// What the editor's panels offer.
namespace velmora::FileTypes
{

inline FileType project()
{
    return {"Velmora Project", {std::string(Document::fileExtension)}};
}

inline FileType diskImage()
{
    return {"Disk Image", {"dmg"}};
}

inline FileType log()
{
    return {"Log", {"log", "txt"}};
}

inline FileType text()
{
    return {"Text", {"txt", "text", "md", "license"}};
}

inline FileType everyFile()
{
    return {"All Files", {}};
}

/// Everything that is read as a picture.
inline FileType pictures()
{
    return {"Pictures", {"png", "jpg", "jpeg", "tif", "tiff", "gif", "webp", "heic", "heif", "bmp", "icns"}};
}

} // namespace velmora::FileTypes
