#include "model/json_writer.h"

#include "model/utf8.h"

#include <array>
#include <charconv>
#include <cmath>

namespace velmora
{
namespace
{

bool needsEscape(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
}

void appendEscape(std::string& text, char c)
{
    constexpr std::string_view characters = "\"\\\b\f\n\r\t";
    constexpr std::string_view escapes = "\"\\bfnrt";
    constexpr std::string_view hex = "0123456789abcdef";
    const std::size_t which = characters.find(c);
    if (which != std::string_view::npos) {
        text += '\\';
        text += escapes[which];
    } else {
        text += "\\u00";
        text += hex[static_cast<unsigned char>(c) >> 4];
        text += hex[static_cast<unsigned char>(c) & 0x0F];
    }
}

} // namespace

void JsonWriter::key(std::string_view name)
{
    beforeValue();
    m_text += '"';
    m_text += name;
    m_text += "\": ";
    m_afterKey = true;
}

bool JsonWriter::string(std::string_view text)
{
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = utf8SequenceLength(text, at);
        if (length == 0)
            return false;
        at += length;
    }
    beforeValue();
    m_text += '"';
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::size_t start = at;
        while (at < text.size() && !needsEscape(text[at]))
            ++at;
        m_text.append(text, start, at - start);
        if (at < text.size())
            appendEscape(m_text, text[at]);
    }
    m_text += '"';
    return true;
}

void JsonWriter::number(double value)
{
    beforeValue();
    if (value == 0)
        value = 0; // negative zero equals zero and must not look different
    // Plain digits as far as a person reads them easily; to_chars alone would write 100000 as 1e+05.
    const double magnitude = std::abs(value);
    const bool plain = magnitude == 0 || (magnitude >= 1e-6 && magnitude < 1e21);
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   plain ? std::chars_format::fixed : std::chars_format::scientific);
    m_text.append(buffer.data(), end.ptr);
}

void JsonWriter::number(std::int64_t value)
{
    beforeValue();
    m_text += std::to_string(value);
}

void JsonWriter::boolean(bool value)
{
    beforeValue();
    m_text += value ? "true" : "false";
}

std::string JsonWriter::take()
{
    m_text += '\n';
    return std::move(m_text);
}

void JsonWriter::begin(char bracket)
{
    beforeValue();
    m_text += bracket;
    ++m_depth;
    m_isFirst = true;
}

void JsonWriter::end(char bracket)
{
    --m_depth;
    if (!m_isFirst)
        startLine();
    m_text += bracket;
    m_isFirst = false;
}

void JsonWriter::beforeValue()
{
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (m_depth == 0)
        return;
    if (!m_isFirst)
        m_text += ',';
    m_isFirst = false;
    startLine();
}

void JsonWriter::startLine()
{
    m_text += '\n';
    m_text.append(m_depth * 2, ' ');
}

} // namespace velmora
