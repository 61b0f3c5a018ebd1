#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velmora
{

/// Writes indented JSON, one key or element a line. The calls follow the order of the text; the writer adds what stands
/// between them.
class JsonWriter
{
public:
    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }
    /// The key of the next value, inside an object.
    void key(std::string_view name);
    /// False, and nothing written, when the text is not valid UTF-8.
    [[nodiscard]] bool string(std::string_view text);
    /// The shortest form that reads back to the same value; it must be finite.
    void number(double value);
    void number(std::int64_t value);
    void boolean(bool value);

    /// The whole text, ended by a line feed.
    std::string take();

private:
    void begin(char bracket);
    void end(char bracket);
    void beforeValue();
    void startLine();

    std::string m_text{};
    std::size_t m_depth = 0;
    bool m_isFirst = true; ///< nothing stands yet in the innermost object or array
    bool m_afterKey = false;
};

} // namespace velmora
