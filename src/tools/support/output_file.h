#pragma once

#include "platform/claimed_path.h"

#include <filesystem>

namespace velmora::tools
{

enum class Existing { refuse, replace };

/// A file that appears under its name only when it is complete: it is written beside it under a name of its own. The
/// destructor removes what was not committed, and the next one for the same folder what a killed process left.
class OutputFile
{
public:
    /// Makes the empty temporary file, readable for all as the umask allows. Throws std::runtime_error, when something
    /// stands at `target` and is not to be replaced, and always when that is a folder.
    OutputFile(std::filesystem::path target, Existing existing);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Where to write.
    [[nodiscard]] const std::filesystem::path& temporaryPath() const { return m_temporary.path; }
    /// Moves the finished file to its place. Throws std::runtime_error.
    void commit();

private:
    std::filesystem::path m_target;
    ClaimedPath m_temporary{};
};

} // namespace velmora::tools
