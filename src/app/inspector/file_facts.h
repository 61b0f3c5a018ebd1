#pragma once

#include "model/item.h"

#include <QDateTime>
#include <QString>

namespace velmora
{

/// What the file system says about an item's source now.
struct FileFacts {
    bool exists = false;
    bool folder = false;
    qint64 size = 0;     ///< bytes; of a folder without what is in it
    QDateTime created{}; ///< invalid where the file system does not keep it
    QDateTime modified{};
};

FileFacts factsOf(const DMGItem& item);
/// What an item is, in a word or two: "Application", "RTF document", "Link"; "Unknown" for a file that is not there.
QString kindOf(const DMGItem& item, const FileFacts& facts);
QString kindOf(const DMGItem& item);
/// A day and time for a person, "—" for none.
QString dateText(const QDateTime& time);

} // namespace velmora
