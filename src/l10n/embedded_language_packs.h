#pragma once

#include <map>
#include <string>
#include <string_view>

/// The string tables that are part of the program.
namespace velmora::EmbeddedLanguagePacks
{

/// Texts by key. A text is one line; "%@" stands for an argument that the caller puts in.
using StringTable = std::map<std::string, std::string, std::less<>>;
/// Tables by language code.
using Packs = std::map<std::string, StringTable, std::less<>>;

/// The English table, to which every look-up falls back.
StringTable english();

/// All tables, built on first use.
const Packs& packs();

} // namespace velmora::EmbeddedLanguagePacks
