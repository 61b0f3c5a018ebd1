#pragma once

#include "diskimage/base/storage.h"
#include "diskimage/hfs/names.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace velmora::diskimage::hfs
{

/// Catalog node ID: the number of a file or folder on its volume.
using CatalogId = std::uint32_t;
inline constexpr CatalogId rootFolderId = 2;

enum class EntryKind { folder, file, symlink };

/// Finder flag bits (TN1150, Finder info).
inline constexpr std::uint16_t finderFlagHasCustomIcon = 0x0400;
inline constexpr std::uint16_t finderFlagIsInvisible = 0x4000;

/// A file, folder or link: the in-memory form of a volume's content, both for writing and after reading.
struct Entry {
    std::string name{}; ///< POSIX name, UTF-8; of the root folder the volume's name
    EntryKind kind = EntryKind::file;
    CatalogId id = 0;                          ///< given by the writer; set after reading and after writing
    std::uint32_t mode = 0;                    ///< permission bits (07777); of a root folder 0 means 0755
    std::int64_t created = 0;                  ///< Unix seconds; clamped to what HFS+ can hold
    std::int64_t modified = 0;                 ///< Unix seconds; also written as access and attribute date
    std::array<std::uint8_t, 32> finderInfo{}; ///< Finder and extended Finder info as on disk
    std::string linkTarget{};                  ///< of a symlink, UTF-8
    /// Extended attributes by name; "com.apple.FinderInfo" and "com.apple.ResourceFork" are not among them.
    std::map<std::string, Bytes> attributes{};
    std::uint64_t dataSize = 0; ///< bytes of the data fork
    /// Opens the data fork for reading, when there are bytes in it; called once by the writer, when its turn comes, so
    /// that a large tree never has many files open.
    std::function<std::unique_ptr<Source>()> openData{};
    std::uint64_t resourceSize = 0;
    std::function<std::unique_ptr<Source>()> openResource{};
    std::vector<Entry> children{}; ///< of a folder, in any order

    [[nodiscard]] std::uint16_t finderFlags() const;
    void setFinderFlags(std::uint16_t flags);
};

/// The direct child with this name by the volume's rule (case is ignored, unless another order is given), or null.
const Entry* findChild(const Entry& folder, std::string_view posixName, NameOrder order = NameOrder::caseFolding);
Entry* findChild(Entry& folder, std::string_view posixName, NameOrder order = NameOrder::caseFolding);

} // namespace velmora::diskimage::hfs
