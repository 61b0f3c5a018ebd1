#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace velmora
{

/// Reads JSON (RFC 8259, strictly) value by value in the order of the text and keeps nothing of what it has read, so
/// that a hostile document costs no more memory than what its reader takes from it. The text must outlive the reader.
/// Whatever is not JSON throws a DocumentError that names line and column.
class JsonReader
{
public:
    enum class Type { object, array, string, number, boolean, null };

    /// A leading byte-order mark is passed over.
    explicit JsonReader(std::string_view text);

    /// The type of the next value.
    Type peek();

    // Each reads the next value, which must be of that type by peek().

    /// Calls `member` for each key; it must read or skip the value.
    void readObject(const std::function<void(const std::string& key)>& member);
    /// Calls `element` for each element, which it must read or skip.
    void readArray(const std::function<void(std::size_t index)>& element);
    /// Decoded to UTF-8.
    std::string readString();
    /// The number as it is written.
    std::string_view readNumber();
    bool readBool();
    void readNull();
    /// Passes over a value of any type.
    void skip();

    /// Requires that nothing but white space is left.
    void finish();

private:
    [[noreturn]] void fail(const std::string& what) const;
    void skipSpace();
    [[nodiscard]] char current() const { return m_at < m_text.size() ? m_text[m_at] : '\0'; }
    bool take(char c);
    void takeWord(std::string_view word);
    void takeDigits();
    void list(char open, char close, const std::function<void()>& entry);
    void readEscape(std::string& result);
    unsigned readHexUnit();

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_depth = 0;
};

} // namespace velmora
