// Alias records, version 2: a fixed part of 150 bytes, then tagged values (tag, length, value, a zero byte when the
// length is odd) up to the tag -1. Everything is big-endian and unaligned. Names in 8-bit and UTF-16 fields have the
// form in which the volume stores them, with "/" for the ":" of POSIX; the two path tags have POSIX names.

#include "diskimage/finder/alias.h"

#include "diskimage/base/error.h"
#include "diskimage/base/text.h"
#include "diskimage/hfs/entry.h"
#include "diskimage/hfs/format.h"
#include "diskimage/hfs/names.h"

#include <algorithm>
#include <limits>

namespace velmora::diskimage::finder
{
namespace
{

constexpr std::size_t fixedSize = 150;
constexpr std::uint32_t unknownId = 0xFFFFFFFF;

/// Places in the fixed part.
enum Offset : std::size_t {
    offsetLength = 4,
    offsetVersion = 6,
    offsetKind = 8,
    offsetVolumeName = 10,
    offsetVolumeCreated = 38,
    offsetSignature = 42,
    offsetDiskType = 44,
    offsetFolderId = 46,
    offsetFileName = 50,
    offsetFileId = 114,
    offsetFileCreated = 118,
    offsetLevelsFrom = 130,
    offsetLevelsTo = 132,
    offsetVolumeAttributes = 134,
};
constexpr std::size_t volumeNameField = 28; ///< length byte included
constexpr std::size_t fileNameField = 64;

enum Tag : std::uint16_t {
    tagFolderName = 0,
    tagFolderIds = 1,
    tagPath = 2,
    tagFileName = 14,
    tagVolumeName = 15,
    tagVolumeCreated = 16,
    tagFileCreated = 17,
    tagPosixPath = 18,
    tagMountPoint = 19,
    tagEnd = 0xFFFF,
};

/// A name in the forms that the record holds.
struct Name {
    std::u16string stored; ///< UTF-16 as on the volume
    std::string posix;     ///< the same units as UTF-8, in POSIX form
    std::string eightBit;  ///< the same as UTF-8, in the volume's form
};

Name formsOf(const std::string& name)
{
    Name result;
    result.stored = hfs::storedName(name);
    result.posix = hfs::posixName(result.stored);
    result.eightBit = result.posix;
    std::replace(result.eightBit.begin(), result.eightBit.end(), ':', '/');
    return result;
}

/// As much of UTF-8 text as fits, cut between characters.
std::string_view cutTo(std::string_view text, std::size_t limit)
{
    if (text.size() <= limit)
        return text;
    while (limit > 0 && (static_cast<unsigned char>(text[limit]) & 0xC0) == 0x80)
        --limit;
    return text.substr(0, limit);
}

void putPascalString(Bytes& record, std::size_t offset, std::size_t field, std::string_view text)
{
    const std::string_view part = cutTo(text, field - 1);
    record[offset] = static_cast<std::uint8_t>(part.size());
    std::copy(part.begin(), part.end(), record.begin() + static_cast<std::ptrdiff_t>(offset) + 1);
}

void appendTag(Bytes& record, Tag tag, ByteView value)
{
    if (value.size() > std::numeric_limits<std::uint16_t>::max())
        throw DiskImageError("The alias cannot be written: the path of its file is too long.");
    appendBE16(record, tag);
    appendBE16(record, static_cast<std::uint16_t>(value.size()));
    append(record, value);
    if (value.size() % 2 != 0)
        record.push_back(0);
}

void appendDateTag(Bytes& record, Tag tag, std::uint32_t date)
{
    std::uint8_t value[8] = {};
    putBE32(value + 2, date);
    appendTag(record, tag, value);
}

void appendUnicodeTag(Bytes& record, Tag tag, const std::u16string& text)
{
    Bytes value;
    appendBE16(value, static_cast<std::uint16_t>(text.size()));
    for (const char16_t unit : text)
        appendBE16(value, static_cast<std::uint16_t>(unit));
    appendTag(record, tag, value);
}

/// Ids that name another object could lead to the wrong file; ids that name none are merely useless.
bool idsAreKnown(const AliasTarget& target)
{
    if (target.fileId == 0 && target.folderIds.empty())
        return false;
    if (target.fileId == 0 || target.folderIds.size() + 1 != target.path.size())
        throw DiskImageError("The alias of \"" + target.path.back() +
                             "\" needs the id of the file and of every folder above it, or none.");
    return true;
}

std::uint32_t enclosingFolderId(const AliasTarget& target, bool idsKnown)
{
    if (!idsKnown)
        return unknownId;
    return target.folderIds.empty() ? hfs::rootFolderId : target.folderIds.back();
}

/// The volume, its folders and the file joined by ":". A zero byte stands before the name of a file in a folder.
std::string eightBitPath(const Name& volume, const std::vector<Name>& path)
{
    std::string text = volume.eightBit + ":";
    for (std::size_t i = 0; i + 1 < path.size(); ++i)
        text += path[i].eightBit + ":";
    if (path.size() > 1)
        text += '\0';
    return text + path.back().eightBit;
}

std::string posixPath(const std::vector<Name>& path)
{
    std::string text;
    for (const Name& name : path)
        text += "/" + name.posix;
    return text;
}

} // namespace

Bytes writeAlias(const AliasTarget& target)
{
    if (target.path.empty())
        throw DiskImageError("An alias needs a file to point to.");
    const bool idsKnown = idsAreKnown(target);
    const Name volume = formsOf(target.volumeName);
    std::vector<Name> path;
    for (const std::string& name : target.path)
        path.push_back(formsOf(name));
    const Name& file = path.back();
    const std::uint32_t volumeCreated = hfs::dateFromUnix(target.volumeCreated);
    const std::uint32_t fileCreated = hfs::dateFromUnix(target.fileCreated);

    Bytes record(fixedSize);
    putBE16(record.data() + offsetVersion, 2);
    putPascalString(record, offsetVolumeName, volumeNameField, volume.eightBit);
    putBE32(record.data() + offsetVolumeCreated, volumeCreated);
    putBE16(record.data() + offsetSignature, 0x482B); // "H+"
    putBE16(record.data() + offsetDiskType, 5);       // ejectable
    putBE32(record.data() + offsetFolderId, enclosingFolderId(target, idsKnown));
    putPascalString(record, offsetFileName, fileNameField, file.eightBit);
    putBE32(record.data() + offsetFileId, idsKnown ? target.fileId : unknownId);
    putBE32(record.data() + offsetFileCreated, fileCreated);
    putBE16(record.data() + offsetLevelsFrom, 0xFFFF);
    putBE16(record.data() + offsetLevelsTo, 0xFFFF);
    putBE32(record.data() + offsetVolumeAttributes, 0x0D02); // as the Finder writes it

    appendTag(record, tagFolderName, viewOf(path.size() > 1 ? path[path.size() - 2].eightBit : volume.eightBit));
    appendDateTag(record, tagVolumeCreated, volumeCreated);
    appendDateTag(record, tagFileCreated, fileCreated);
    if (idsKnown) {
        Bytes ids;
        for (auto id = target.folderIds.rbegin(); id != target.folderIds.rend(); ++id)
            appendBE32(ids, *id);
        appendTag(record, tagFolderIds, ids);
    }
    appendTag(record, tagPath, viewOf(eightBitPath(volume, path)));
    appendUnicodeTag(record, tagFileName, file.stored);
    appendUnicodeTag(record, tagVolumeName, volume.stored);
    appendTag(record, tagPosixPath, viewOf(posixPath(path)));
    appendTag(record, tagMountPoint, viewOf("/Volumes/" + volume.posix));
    appendBE16(record, tagEnd);
    appendBE16(record, 0);
    if (record.size() > std::numeric_limits<std::uint16_t>::max())
        throw DiskImageError("The alias cannot be written: the path of its file is too long.");
    putBE16(record.data() + offsetLength, static_cast<std::uint16_t>(record.size()));
    return record;
}

namespace
{

[[noreturn]] void fail(const std::string& why)
{
    throw DiskImageError("The alias record is damaged: " + why + ".");
}

std::string pascalStringAt(ByteView record, std::size_t offset, std::size_t field)
{
    const std::size_t length = record[offset];
    if (length >= field)
        fail("a name is longer than its field");
    std::string text = textOf(record.subspan(offset + 1, length));
    std::replace(text.begin(), text.end(), '/', ':');
    return text;
}

/// A name from a tag with a count of units and UTF-16.
std::string unicodeName(ByteView value)
{
    if (value.size() < 2 || value.size() - 2 < std::size_t{getBE16(value.data())} * 2)
        fail("a name is cut off");
    std::u16string text;
    for (std::size_t i = 0; i < getBE16(value.data()); ++i)
        text.push_back(static_cast<char16_t>(getBE16(value.data() + 2 + i * 2)));
    return hfs::posixName(text);
}

std::vector<std::string> pathComponents(std::string_view path)
{
    std::vector<std::string> components;
    for (std::size_t start = 0; start < path.size();) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        if (end > start)
            components.emplace_back(path.substr(start, end - start));
        start = end + 1;
    }
    return components;
}

void readTag(AliasTarget& target, unsigned tag, ByteView value)
{
    switch (tag) {
    case tagFolderIds:
        target.folderIds.clear();
        for (std::size_t i = value.size() / 4; i > 0; --i)
            target.folderIds.push_back(getBE32(value.data() + (i - 1) * 4));
        break;
    case tagVolumeName:
        target.volumeName = unicodeName(value);
        break;
    case tagPosixPath:
        target.path = pathComponents(textOf(value));
        break;
    default:
        break;
    }
}

} // namespace

AliasTarget readAlias(ByteView record)
{
    if (record.size() < fixedSize)
        fail("it is too short");
    const std::size_t length = getBE16(record.data() + offsetLength);
    if (length < fixedSize || length > record.size())
        fail("its length does not fit");
    if (getBE16(record.data() + offsetVersion) != 2)
        fail("it has version " + std::to_string(getBE16(record.data() + offsetVersion)) + ", not 2");
    AliasTarget target;
    target.volumeName = pascalStringAt(record, offsetVolumeName, volumeNameField);
    target.volumeCreated = hfs::unixFromDate(getBE32(record.data() + offsetVolumeCreated));
    const std::uint32_t fileId = getBE32(record.data() + offsetFileId);
    target.fileId = fileId == unknownId ? 0 : fileId;
    target.fileCreated = hfs::unixFromDate(getBE32(record.data() + offsetFileCreated));
    for (std::size_t offset = fixedSize;;) {
        if (length - offset < 4)
            fail("its tags have no end");
        const unsigned tag = getBE16(record.data() + offset);
        const std::size_t size = getBE16(record.data() + offset + 2);
        offset += 4;
        if (tag == tagEnd)
            break;
        if (size + size % 2 > length - offset)
            fail("a tag reaches beyond the end");
        readTag(target, tag, record.subspan(offset, size));
        offset += size + size % 2;
    }
    if (target.path.empty())
        target.path.push_back(pascalStringAt(record, offsetFileName, fileNameField));
    return target;
}

} // namespace velmora::diskimage::finder
