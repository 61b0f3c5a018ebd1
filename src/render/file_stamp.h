#pragma once

#include <QDateTime>

#include <string>

namespace velmora
{

/// What tells whether a file is still the one that was read.
struct FileStamp {
    bool exists = false;
    bool folder = false;
    qint64 size = 0;
    QDateTime modified{};
    bool operator==(const FileStamp&) const = default;
};

/// What the file is now; a path that leads nowhere gives a stamp of its own.
FileStamp stampOf(const std::string& path);

} // namespace velmora
