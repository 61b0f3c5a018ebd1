#include "model/json_reader.h"

#include "model/document.h"
#include "model/utf8.h"

#include <algorithm>

namespace velmora
{
namespace
{

constexpr std::size_t maximumDepth = 64;
/// Far more digits than a number of ours has, and few enough to convert at once.
constexpr std::size_t maximumNumberLength = 1000;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Whether a character stands for itself in a text, and alone.
bool isPlain(char c)
{
    return c >= ' ' && c <= '~' && c != '"' && c != '\\';
}

void appendUtf8(std::string& text, unsigned point)
{
    const auto put = [&](unsigned byte) { text += static_cast<char>(byte); };
    if (point < 0x80) {
        put(point);
    } else if (point < 0x800) {
        put(0xC0 | point >> 6);
        put(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
        put(0xE0 | point >> 12);
        put(0x80 | (point >> 6 & 0x3F));
        put(0x80 | (point & 0x3F));
    } else {
        put(0xF0 | point >> 18);
        put(0x80 | (point >> 12 & 0x3F));
        put(0x80 | (point >> 6 & 0x3F));
        put(0x80 | (point & 0x3F));
    }
}

} // namespace

JsonReader::JsonReader(std::string_view text) : m_text(text)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (m_text.substr(0, byteOrderMark.size()) == byteOrderMark)
        m_text.remove_prefix(byteOrderMark.size());
}

JsonReader::Type JsonReader::peek()
{
    skipSpace();
    switch (current()) {
    case '{':
        return Type::object;
    case '[':
        return Type::array;
    case '"':
        return Type::string;
    case 't':
    case 'f':
        return Type::boolean;
    case 'n':
        return Type::null;
    default:
        if (current() != '-' && !isDigit(current()))
            fail("expected a value");
        return Type::number;
    }
}

void JsonReader::readObject(const std::function<void(const std::string& key)>& member)
{
    list('{', '}', [&] {
        skipSpace();
        if (current() != '"')
            fail("expected a key in quotation marks");
        const std::string key = readString();
        skipSpace();
        if (!take(':'))
            fail("expected a colon");
        member(key);
    });
}

void JsonReader::readArray(const std::function<void(std::size_t index)>& element)
{
    std::size_t index = 0;
    list('[', ']', [&] { element(index++); });
}

void JsonReader::list(char open, char close, const std::function<void()>& entry)
{
    skipSpace();
    if (!take(open))
        fail(std::string("expected '") + open + "'");
    if (++m_depth > maximumDepth)
        fail("nested more than " + std::to_string(maximumDepth) + " levels deep");
    skipSpace();
    if (!take(close)) {
        do {
            entry();
            skipSpace();
        } while (take(','));
        if (!take(close))
            fail(std::string("expected a comma or '") + close + "'");
    }
    --m_depth;
}

std::string JsonReader::readString()
{
    skipSpace();
    if (!take('"'))
        fail("expected a text in quotation marks");
    std::string result;
    while (true) {
        const std::size_t start = m_at;
        while (m_at < m_text.size() && isPlain(m_text[m_at]))
            ++m_at;
        result.append(m_text, start, m_at - start);
        if (take('"'))
            return result;
        if (m_at >= m_text.size())
            fail("the text has no closing quotation mark");
        if (take('\\')) {
            readEscape(result);
            continue;
        }
        if (static_cast<unsigned char>(current()) < 0x20)
            fail("a control character in a text");
        const std::size_t length = utf8SequenceLength(m_text, m_at);
        if (length == 0)
            fail("the text is not UTF-8");
        result.append(m_text, m_at, length);
        m_at += length;
    }
}

void JsonReader::readEscape(std::string& result)
{
    constexpr std::string_view escapes = "\"\\/bfnrt";
    constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
    if (take('u')) {
        const unsigned unit = readHexUnit();
        if (unit < 0xD800 || unit > 0xDFFF) {
            appendUtf8(result, unit);
            return;
        }
        const bool isPair = unit < 0xDC00 && take('\\') && take('u');
        const unsigned second = isPair ? readHexUnit() : 0;
        if (second < 0xDC00 || second > 0xDFFF)
            fail("half of a surrogate pair in a text");
        appendUtf8(result, 0x10000 + ((unit - 0xD800) << 10) + (second - 0xDC00));
        return;
    }
    const std::size_t which = m_at < m_text.size() ? escapes.find(current()) : std::string_view::npos;
    if (which == std::string_view::npos)
        fail("an unknown escape in a text");
    result += meanings[which];
    ++m_at;
}

unsigned JsonReader::readHexUnit()
{
    unsigned unit = 0;
    for (int i = 0; i < 4; ++i) {
        const char c = current();
        unsigned digit = 0;
        if (isDigit(c))
            digit = static_cast<unsigned>(c - '0');
        else if (c >= 'a' && c <= 'f')
            digit = static_cast<unsigned>(c - 'a') + 10;
        else if (c >= 'A' && c <= 'F')
            digit = static_cast<unsigned>(c - 'A') + 10;
        else
            fail("expected four hexadecimal digits");
        unit = unit << 4 | digit;
        ++m_at;
    }
    return unit;
}

std::string_view JsonReader::readNumber()
{
    skipSpace();
    const std::size_t start = m_at;
    take('-');
    if (!take('0'))
        takeDigits();
    if (take('.'))
        takeDigits();
    if (take('e') || take('E')) {
        if (!take('+'))
            take('-');
        takeDigits();
    }
    if (m_at - start > maximumNumberLength)
        fail("a number with more than " + std::to_string(maximumNumberLength) + " characters");
    return m_text.substr(start, m_at - start);
}

bool JsonReader::readBool()
{
    skipSpace();
    const bool value = current() == 't';
    takeWord(value ? "true" : "false");
    return value;
}

void JsonReader::readNull()
{
    skipSpace();
    takeWord("null");
}

void JsonReader::skip()
{
    switch (peek()) {
    case Type::object:
        readObject([this](const std::string&) { skip(); });
        break;
    case Type::array:
        readArray([this](std::size_t) { skip(); });
        break;
    case Type::string:
        readString();
        break;
    case Type::number:
        readNumber();
        break;
    case Type::boolean:
        readBool();
        break;
    case Type::null:
        readNull();
        break;
    }
}

void JsonReader::finish()
{
    skipSpace();
    if (m_at < m_text.size())
        fail("text after the end of the document");
}

void JsonReader::fail(const std::string& what) const
{
    const std::string_view before = m_text.substr(0, m_at);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const std::size_t lineStart = before.rfind('\n') + 1; // npos + 1 is 0
    // Characters, not bytes: those that begin one.
    const auto column = std::count_if(before.begin() + static_cast<std::ptrdiff_t>(lineStart), before.end(),
                                      [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }) +
                        1;
    throw DocumentError("line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + what);
}

void JsonReader::skipSpace()
{
    while (m_at < m_text.size() && (current() == ' ' || current() == '\n' || current() == '\r' || current() == '\t'))
        ++m_at;
}

bool JsonReader::take(char c)
{
    if (m_at >= m_text.size() || m_text[m_at] != c)
        return false;
    ++m_at;
    return true;
}

void JsonReader::takeWord(std::string_view word)
{
    if (m_text.substr(m_at, word.size()) != word)
        fail("expected a value");
    m_at += word.size();
}

void JsonReader::takeDigits()
{
    if (!isDigit(current()))
        fail("expected a digit");
    while (isDigit(current()))
        ++m_at;
}

} // namespace velmora
