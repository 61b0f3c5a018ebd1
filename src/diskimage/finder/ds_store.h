#pragma once

#include "diskimage/base/bytes.h"
#include "diskimage/finder/alias.h"
#include "diskimage/finder/window_layout.h"

#include <optional>
#include <string>
#include <vector>

namespace velmora::diskimage::finder
{

/// One record of a .DS_Store file.
struct DsRecord {
    std::u16string name{}; ///< as the volume stores it (decomposed)
    std::string code{};    ///< four characters: "Iloc", "icvp", …
    std::string type{};    ///< four characters: "blob", "long", "bool", "type", "shor", "ustr", "comp", "dutc"
    Bytes data{};          ///< the value as stored, without the length word of "blob" and "ustr"
    bool operator==(const DsRecord&) const = default;
};

/// The file that holds these records, sorted as the Finder searches them. Throws DiskImageError for two records of one
/// name and code, and for one that does not fit a node.
Bytes writeDsStore(std::vector<DsRecord> records);

/// All records in their stored order. Hostile input ends in DiskImageError.
std::vector<DsRecord> readDsStore(ByteView file);

/// The records of a volume's root window; `background` belongs to layout.backgroundPath.
std::vector<DsRecord> layoutRecords(const WindowLayout& layout, const std::optional<AliasTarget>& background);

/// What the records say: the inverse of layoutRecords.
struct ReadLayout {
    WindowLayout layout{};
    std::optional<AliasTarget> background{};
};
ReadLayout readLayout(const std::vector<DsRecord>& records);

} // namespace velmora::diskimage::finder
