#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::diskimage::finder
{

/// The smallest parts of a script.
struct ScriptToken {
    enum class Kind { word, number, string, symbol, endOfLine };
    Kind kind = Kind::word;
    std::string text{};   ///< of a string: its value, escapes resolved
    std::size_t line = 0; ///< from 1
};

/// A statement's tokens, without the line's end.
using ScriptLine = std::vector<ScriptToken>;

/// The script's lines that hold something. Throws LayoutScriptError for a character that begins no token, an escape
/// that does not exist, and a string without an end. A string may run over several lines.
std::vector<ScriptLine> scriptLines(std::string_view script);

} // namespace velmora::diskimage::finder
