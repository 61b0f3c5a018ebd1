#include "tools/support/session_record.h"

#include "diskimage/base/error.h"
#include "diskimage/base/property_list.h"

namespace velmora::tools
{

using diskimage::Bytes;
using diskimage::Plist;

namespace
{

constexpr std::int64_t recordVersion = 1;
constexpr std::int64_t highestDevice = 99'999;

/// Paths and names are any bytes to the system; as data they survive.
Plist data(const std::string& text)
{
    return Bytes(text.begin(), text.end());
}

std::optional<std::string> text(const Plist& record, std::string_view key)
{
    const Plist* const entry = record.find(key);
    const Bytes* const bytes = entry ? entry->as<Bytes>() : nullptr;
    if (!bytes)
        return std::nullopt;
    return std::string(bytes->begin(), bytes->end());
}

std::optional<std::int64_t> number(const Plist& record, std::string_view key, std::int64_t maximum)
{
    const Plist* const entry = record.find(key);
    const std::int64_t* const value = entry ? entry->as<std::int64_t>() : nullptr;
    if (!value || *value < 0 || *value > maximum)
        return std::nullopt;
    return *value;
}

} // namespace

std::string writeSessionRecord(const Session& session)
{
    return diskimage::writeXmlPlist(Plist(Plist::Dict{
        {"version", recordVersion},
        {"image", data(session.image.string())},
        {"device", std::int64_t{session.device}},
        {"slice", std::int64_t{session.slice}},
        {"partition-scheme", data(session.partitionScheme)},
        {"mount-name", data(session.mountName)},
        {"volume-name", data(session.volumeName)},
        {"read-only", session.access == Access::readOnly},
        {"flags-to-set", std::int64_t{session.flagsToSet}},
        {"flags-to-clear", std::int64_t{session.flagsToClear}},
        {"owner", data(session.owner)},
    }));
}

std::optional<Session> readSessionRecord(std::string_view recordText)
{
    Plist record;
    try {
        record = diskimage::readPlist(diskimage::viewOf(recordText));
    } catch (const diskimage::DiskImageError&) {
        return std::nullopt;
    }
    const auto version = number(record, "version", recordVersion);
    const auto image = text(record, "image");
    const auto device = number(record, "device", highestDevice);
    const auto slice = number(record, "slice", highestDevice);
    const auto scheme = text(record, "partition-scheme");
    const auto mountName = text(record, "mount-name");
    const auto volumeName = text(record, "volume-name");
    const Plist* const readOnly = record.find("read-only");
    const auto flagsToSet = number(record, "flags-to-set", 0xFFFF);
    const auto flagsToClear = number(record, "flags-to-clear", 0xFFFF);
    const auto owner = text(record, "owner");
    if (version != recordVersion || !image || image->empty() || !device || !slice || !scheme || !mountName ||
        !volumeName || !readOnly || !readOnly->as<bool>() || !flagsToSet || !flagsToClear || !owner)
        return std::nullopt;
    // A mount name of another shape would lead out of the folder of mounts.
    if (!isMountName(*mountName))
        return std::nullopt;
    return Session{
        .image = *image,
        .device = static_cast<unsigned>(*device),
        .slice = static_cast<unsigned>(*slice),
        .partitionScheme = *scheme,
        .mountName = *mountName,
        .volumeName = *volumeName,
        .access = *readOnly->as<bool>() ? Access::readOnly : Access::readWrite,
        .flagsToSet = static_cast<std::uint16_t>(*flagsToSet),
        .flagsToClear = static_cast<std::uint16_t>(*flagsToClear),
        .owner = *owner,
    };
}

} // namespace velmora::tools
