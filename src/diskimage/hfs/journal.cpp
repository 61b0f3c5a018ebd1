#include "diskimage/hfs/journal.h"

#include "diskimage/hfs/format.h"

namespace velmora::diskimage::hfs
{

bool hasPendingJournal(const Source& volume, const VolumeHeader& header)
{
    constexpr std::uint32_t isInVolume = 1;
    constexpr std::uint32_t needsInitialising = 4;
    constexpr std::uint32_t journalMagic = 0x4A4E4C78;
    constexpr std::size_t blockBytesUsed = 52;
    constexpr std::size_t journalBytesUsed = 24;
    if ((header.attributes & volumeJournaled) == 0 || header.journalInfoBlock == 0) {
        return false;
    }
    if (header.journalInfoBlock >= header.totalBlocks) {
        return true;
    }
    const auto info = volume.read(std::uint64_t{header.journalInfoBlock} * header.blockSize, blockBytesUsed);
    const auto flags = getBE32(info.data());
    if ((flags & needsInitialising) != 0) {
        return false;
    }
    const auto offset = getBE64(info.data() + 36);
    if ((flags & isInVolume) == 0 || offset > volume.size() || volume.size() - offset < journalBytesUsed) {
        return true;
    }
    // The journal is in the byte order of the machine that wrote it. Its start and end need only be compared.
    const auto journal = volume.read(offset, journalBytesUsed);
    const bool isJournal = getBE32(journal.data()) == journalMagic || getLE32(journal.data()) == journalMagic;
    return !isJournal || getBE64(journal.data() + 8) != getBE64(journal.data() + 16);
}

} // namespace velmora::diskimage::hfs
