#pragma once

#include "diskimage/base/error.h"
#include "diskimage/finder/window_layout.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::diskimage::finder
{

/// Something on the disk that a statement names, and that has to be there when the statement's turn comes.
struct ScriptObject {
    enum class Kind { item, picture };
    Kind kind = Kind::item;
    /// Of an item the POSIX name in the root folder; of a picture the POSIX path below the root
    /// ("/.background/picture.tiff"). What the Finder shows as "/" in a name is ":" here.
    std::string name{};
    std::size_t line = 0; ///< of the statement, from 1
    bool operator==(const ScriptObject&) const = default;
};

/// One statement that sets something.
struct LayoutStatement {
    std::optional<ScriptObject> object{};       ///< what it names
    std::function<void(WindowLayout&)> apply{}; ///< puts its value into a layout
};

/// A layout script taken apart.
struct LayoutScript {
    std::string diskName{};                    ///< the last component of the mount point
    std::vector<LayoutStatement> statements{}; ///< in the script's order
    WindowLayout layout{};                     ///< the last value of each setting, if every named object is there
};

/// What is wrong with a script; the sentence begins with "line N: ".
class LayoutScriptError : public DiskImageError
{
public:
    LayoutScriptError(std::size_t line, const std::string& what);
    [[nodiscard]] std::size_t line() const { return m_line; }

private:
    std::size_t m_line;
};

/// Reads a script of the Finder statements that lay out one disk's window: that grammar and no other, words in lower
/// case as given, white space between them as one likes. Throws LayoutScriptError; nothing is guessed.
LayoutScript parseLayoutScript(std::string_view script);

/// How far a script came, and what it set until then.
struct LayoutRun {
    WindowLayout layout{};
    std::optional<ScriptObject> missing{}; ///< the object whose absence ended the script
};

/// Carries out the statements in order. The first one naming an object for which `exists` is false ends the script, as
/// it does in the Finder; what was set before stays set.
LayoutRun runLayoutScript(const LayoutScript& script, const std::function<bool(const ScriptObject&)>& exists);

} // namespace velmora::diskimage::finder
