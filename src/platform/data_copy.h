#pragma once

#include <functional>
#include <string>

#include <sys/types.h>

namespace velmora
{

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
