#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

namespace velmora
{

class SettingsStore;

/// The documents opened or saved last, kept in the user's settings.
class RecentDocuments
{
public:
    static constexpr std::size_t maximumCount = 10;

    /// The store outlives this.
    explicit RecentDocuments(SettingsStore& settings) : m_settings(&settings) {}

    /// Absolute paths, the latest first; they need not exist any more.
    [[nodiscard]] std::vector<std::filesystem::path> files() const;
    /// Puts a document in front.
    void add(const std::filesystem::path& file);
    void clear();

private:
    void keep(const std::vector<std::filesystem::path>& files);

    SettingsStore* m_settings;
};

} // namespace velmora
