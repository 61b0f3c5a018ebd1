#pragma once

#include <functional>
#include <string>

#include <sys/types.h>

namespace velmora
{

/// A part of a file in bytes; `end` is behind the last one.
struct DataRange {
    off_t start;
    off_t end;
};

/// The first range of data in a part of a file; empty at its end when there is only a hole, and the whole part where
/// the system does not tell. Throws FileError with `path` when the file has become too short for the part: what it lost
/// would look like a hole.
DataRange nextData(int fd, DataRange within, const std::string& path);

/// Lets the system copy a range between two files and returns how many bytes it did from its start; 0 where it cannot,
/// which is never an error: reading and writing then shows the true one.
off_t copyInsideSystem(int from, DataRange range, int to, off_t writeAt);

/// Two open files, the second one empty, and their names for messages.
struct DataCopy {
    int from = -1;
    int to = -1;
    off_t size = 0; ///< how much of the first to copy, in bytes
    const std::string& source;
    const std::string& target;
};

/// Copies the bytes. Holes stay holes where the file system tells them, and blocks are shared where it can.
/// `betweenPieces` may throw to end the copy. Throws FileError.
void copyData(const DataCopy& copy, const std::function<void()>& betweenPieces);

} // namespace velmora
