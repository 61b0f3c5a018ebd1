#pragma once

#include "diskimage/hfs/entry.h"
#include "diskimage/hfs/writer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Trees that tests put on volumes, and the comparison of what comes back.
namespace velmora::diskimage::hfs::test
{

/// `size` bytes that differ from place to place and from seed to seed.
Bytes pattern(std::size_t size, std::uint32_t seed);
/// A function that opens a copy of `bytes`.
std::function<std::unique_ptr<Source>()> opens(Bytes bytes);

Entry folder(std::string name, std::vector<Entry> children = {});
Entry file(std::string name, std::size_t size = 0, std::uint32_t seed = 1);
Entry link(std::string name, std::string target);

/// Names in several scripts, links, permissions, Finder information, resource forks, attributes of all sizes.
Entry variedTree();
/// `count` files in one folder, named at the length given.
Entry crowdedTree(std::size_t count, std::size_t nameLength = 12);

/// A volume of just the needed size, or of `size` bytes, in memory.
std::unique_ptr<Storage> makeVolume(Entry& root, const VolumeOptions& options = {}, std::uint64_t size = 0);

/// The place in the volume of the catalog's record of a name that occurs once, behind its key.
std::uint64_t catalogRecord(const Source& volume, std::string_view name);

/// Expects `read` to be what a volume gives back for `written`: everything but the order of children, contents
/// included.
void expectSameTree(const Entry& read, const Entry& written, const std::string& path = "");

} // namespace velmora::diskimage::hfs::test
