#pragma once

#include "diskimage/base/checksum.h"
#include "diskimage/base/error.h"
#include "diskimage/base/property_list.h"
#include "diskimage/sparse_disk.h"
#include "diskimage/udif/format.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

namespace velmora::diskimage::udif
{

inline constexpr std::size_t mebibyte = std::size_t{1} << 20;

inline Bytes randomBytes(std::size_t size, unsigned seed = 1)
{
    std::mt19937 engine(seed);
    Bytes bytes(size);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<std::uint8_t>(engine() >> 24); });
    return bytes;
}

inline Bytes compressibleBytes(std::size_t size)
{
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(i / 7 % 251);
    return bytes;
}

/// A GPT disk of `sectors` sectors whose partition holds a chunk of random data, zeros, compressible data and, at an
/// odd place, a little more.
inline std::unique_ptr<Storage> sampleDisk(std::uint64_t sectors = 6 * 2048 + 8)
{
    auto disk = memoryStorage(Bytes(sectors * sectorSize));
    writeGpt(*disk, PartitionType::hfs, Guid{1, 2, 3}, Guid{4, 5, 6});
    const std::uint64_t start = partitionPlace(sectors).start * sectorSize;
    disk->write(start, randomBytes(mebibyte));
    disk->write(start + 2 * mebibyte, compressibleBytes(2 * mebibyte));
    disk->write(start + 5 * mebibyte + 12345, compressibleBytes(777));
    return disk;
}

inline Bytes contentOf(const Source& source)
{
    return source.read(0, static_cast<std::size_t>(source.size()));
}

inline Bytes converted(const Source& disk, const ConvertOptions& options)
{
    const auto out = memoryStorage();
    convert(disk, *out, options);
    return contentOf(*out);
}

/// An image file put together by hand, so that anything in it can be wrong.
struct TestImage {
    Bytes dataFork{};
    std::vector<Bytes> tables{};
    Trailer trailer{};

    [[nodiscard]] Bytes file(const std::function<void(Plist::Dict&)>& edit = {}) const
    {
        Plist::Array entries;
        for (const Bytes& table : tables) {
            Plist::Dict entry;
            entry.emplace("Name", "extent " + std::to_string(entries.size()));
            entry.emplace("Data", table);
            entries.emplace_back(std::move(entry));
        }
        Plist::Dict arrays;
        arrays.emplace("blkx", std::move(entries));
        Plist::Dict list;
        list.emplace("resource-fork", std::move(arrays));
        if (edit)
            edit(list);
        const std::string plist = writeXmlPlist(list);
        Trailer end = trailer;
        end.dataForkLength = dataFork.size();
        end.plistOffset = dataFork.size();
        end.plistLength = plist.size();
        Bytes bytes = dataFork;
        append(bytes, plist);
        append(bytes, writeTrailer(end));
        return bytes;
    }
};

/// The sentence with which opening fails, or nothing.
inline std::string openingError(const Bytes& file)
{
    try {
        const auto source = memoryStorage(file);
        const Image image(*source);
    } catch (const DiskImageError& error) {
        return error.what();
    }
    return {};
}

} // namespace velmora::diskimage::udif
