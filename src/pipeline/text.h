#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Small text operations of the build log and of tool output. All texts are UTF-8.
namespace velmora
{

/// Without white space and line ends at both ends, those of Unicode included.
std::string trimmed(std::string_view text);

/// Without spaces and tabs at both ends.
std::string_view trimmedBlanks(std::string_view text);

/// The pieces between separators, empty pieces left out.
std::vector<std::string_view> split(std::string_view text, char separator);

/// Whether the bytes are valid UTF-8.
bool isUtf8(std::string_view bytes);

/// The text with `replacement` for each control character that is not `kept`, those of Unicode's second block included:
/// a name from a stranger must neither begin a line of its own nor command a terminal.
std::string withoutControls(std::string_view text, char replacement, std::string_view kept = {});

/// “text”.
std::string inQuotes(std::string_view text);

/// What follows the last "/", or the whole text.
std::string_view lastComponent(std::string_view path);

} // namespace velmora
