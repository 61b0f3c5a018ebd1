#include "cli/result_file.h"

#include "platform/file_tree.h"

#include <iostream>

namespace velmora::cli
{

void writeResult(const std::string& path, std::string_view bytes)
{
    if (path == standardOutput) {
        std::cout << bytes << std::flush;
        if (!std::cout)
            throw FileError("Could not write to standard output");
    } else if (isStream(path)) {
        writeToStream(path, bytes);
    } else {
        writeFileAtomically(path, bytes);
    }
}

} // namespace velmora::cli
