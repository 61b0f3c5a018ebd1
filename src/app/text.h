#pragma once

#include <QString>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace velmora
{

/// UTF-8 as Qt takes it.
QString qtText(std::string_view text);
/// A path as Qt takes it.
QString qtPath(const std::filesystem::path& path);
std::filesystem::path nativePath(const QString& path);
/// The text for a key of the string tables.
QString localized(std::string_view key);
/// The text for a key with `argument` in the place of its "%@".
QString localized(std::string_view key, const QString& argument);
/// For menus and buttons, where "&" marks a mnemonic: the text as it stands.
QString withoutMnemonics(QString text);
/// "41.8 MB": decimal, as file managers count.
std::string sizeText(std::uintmax_t bytes);

} // namespace velmora
