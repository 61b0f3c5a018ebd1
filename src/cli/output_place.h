#pragma once

#include "platform/claimed_path.h"

#include <filesystem>
#include <string>

namespace velmora::cli
{

/// A private folder beside the wanted output, in which the image is built under its final name: an older image stays
/// until a new one is complete. The folder goes away with the object; what a killed process left beside the output goes
/// when the next one is made.
class OutputPlace
{
public:
    /// Makes the folder. Throws FileError naming the folder, also when `output` is a folder itself.
    explicit OutputPlace(std::filesystem::path output);
    ~OutputPlace();
    OutputPlace(const OutputPlace&) = delete;
    OutputPlace& operator=(const OutputPlace&) = delete;

    /// Where the image is to be built.
    [[nodiscard]] std::filesystem::path buildPath() const { return m_folder.path / m_output.filename(); }
    /// A message of the build with the paths that its reader knows: the output's folder for the private one.
    [[nodiscard]] std::string inPublic(std::string message) const;
    /// Puts the built image into its place, replacing an older one in one move. Throws FileError.
    void commit();

private:
    std::filesystem::path m_output;
    ClaimedPath m_folder{};
};

} // namespace velmora::cli
