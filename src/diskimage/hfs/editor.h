#pragma once

#include "diskimage/hfs/entry.h"

#include <memory>
#include <string_view>

namespace velmora::diskimage::hfs
{

/// Adds to an existing volume. Nothing that is already there is moved or renumbered, so references by id stay right.
class VolumeEditor
{
public:
    /// Reads the volume that fills `volume`. Throws DiskImageError when it is damaged, was not cleanly unmounted or has
    /// a journal that is not empty. Keeps a reference.
    explicit VolumeEditor(Storage& volume);
    ~VolumeEditor();
    VolumeEditor(const VolumeEditor&) = delete;
    VolumeEditor& operator=(const VolumeEditor&) = delete;

    /// The volume's name.
    [[nodiscard]] std::string name() const;
    /// The volume's content as it will be after commit(); valid until the next change. What its entries open reads from
    /// the storage.
    [[nodiscard]] const Entry& root() const;

    /// Puts `entry` (with all children) into the folder at `folderPath` ("/" is the root). A file or link that replaces
    /// one of the same name keeps that one's id and name; a folder is merged with an existing one, which keeps its
    /// dates and permissions. Throws DiskImageError when the volume has no room (saying how much is missing), a folder
    /// meets a file, or a hard link would be replaced: nothing has changed then. When reading the entry's bytes fails,
    /// the change is only half made, and commit() will refuse.
    void put(std::string_view folderPath, const Entry& entry);
    /// Removes the entry at `path` with all children. An entry that does not exist is no error. Throws DiskImageError
    /// when there is a hard link among them.
    void remove(std::string_view path);
    /// Clears, then sets Finder flags of the entry at `path`. Throws DiskImageError when it does not exist.
    void changeFinderFlags(std::string_view path, std::uint16_t set, std::uint16_t clear);

    /// Writes the changed trees, bitmap and headers; `now` (Unix seconds) becomes the modification date. Until then
    /// only blocks that were free have been written. Throws DiskImageError when there is no room for the trees; the
    /// volume is what it was then.
    void commit(std::int64_t now);

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace velmora::diskimage::hfs
