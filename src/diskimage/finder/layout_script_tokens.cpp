#include "diskimage/finder/layout_script_tokens.h"

#include "diskimage/finder/layout_script.h"

namespace velmora::diskimage::finder
{
namespace
{

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool continuesWord(char c)
{
    return isLetter(c) || isDigit(c);
}

class Scanner
{
public:
    explicit Scanner(std::string_view script) : m_script(script) {}

    std::vector<ScriptLine> lines()
    {
        std::vector<ScriptLine> result(1);
        while (m_offset < m_script.size()) {
            ScriptToken token = next();
            if (token.kind != ScriptToken::Kind::endOfLine)
                result.back().push_back(std::move(token));
            else if (!result.back().empty())
                result.emplace_back();
        }
        if (result.back().empty())
            result.pop_back();
        return result;
    }

private:
    using Kind = ScriptToken::Kind;

    /// The token at the current place, where the script has not ended. White space ends as an empty line does: the
    /// token after it follows.
    ScriptToken next()
    {
        while (m_offset < m_script.size() && (m_script[m_offset] == ' ' || m_script[m_offset] == '\t'))
            ++m_offset;
        if (m_offset == m_script.size())
            return {Kind::endOfLine, {}, m_line};
        const char c = m_script[m_offset];
        if (isLineEnd(c))
            return lineEnd();
        if (c == '"')
            return string();
        if (isLetter(c))
            return {Kind::word, takeWhile(continuesWord), m_line};
        if (isDigit(c) || c == '-')
            return number();
        if (c == '{' || c == '}' || c == ',') {
            ++m_offset;
            return {Kind::symbol, std::string(1, c), m_line};
        }
        throw LayoutScriptError(m_line, "unexpected \"" + characterAt(m_offset) + "\"");
    }

    static bool isLineEnd(char c) { return c == '\n' || c == '\r'; }

    /// Moves past a line's end, two characters long or one, and counts it.
    void passLineEnd()
    {
        m_offset += m_script.substr(m_offset, 2) == "\r\n" ? 2u : 1u;
        ++m_line;
    }

    ScriptToken lineEnd()
    {
        const ScriptToken token{Kind::endOfLine, {}, m_line};
        passLineEnd();
        return token;
    }

    std::string takeWhile(bool (*belongs)(char))
    {
        const std::size_t start = m_offset;
        while (m_offset < m_script.size() && belongs(m_script[m_offset]))
            ++m_offset;
        return std::string(m_script.substr(start, m_offset - start));
    }

    ScriptToken number()
    {
        std::string text;
        if (m_script[m_offset] == '-') {
            text = "-";
            ++m_offset;
        }
        text += takeWhile(continuesWord);
        if (text.find_first_not_of("0123456789", text[0] == '-' ? 1 : 0) != text.npos || text == "-")
            throw LayoutScriptError(m_line, "\"" + text + "\" is not a whole number");
        return {Kind::number, text, m_line};
    }

    ScriptToken string()
    {
        ScriptToken token{Kind::string, {}, m_line};
        ++m_offset;
        for (;;) {
            if (m_offset == m_script.size())
                throw LayoutScriptError(token.line, "the text that begins here has no end");
            const char c = m_script[m_offset];
            if (c == '"') {
                ++m_offset;
                return token;
            }
            if (c == '\\') {
                token.text += escaped();
            } else if (isLineEnd(c)) {
                token.text += c;
                passLineEnd();
            } else {
                token.text += c;
                ++m_offset;
            }
        }
    }

    char escaped()
    {
        constexpr std::string_view written = "\"\\nrt";
        constexpr std::string_view meant = "\"\\\n\r\t";
        const std::size_t index = m_offset + 1 < m_script.size() ? written.find(m_script[m_offset + 1]) : written.npos;
        if (index == written.npos)
            throw LayoutScriptError(m_line, "\"\\\" is followed by a character that makes no escape");
        m_offset += 2;
        return meant[index];
    }

    /// The whole UTF-8 character, so that a message does not hold half of one.
    [[nodiscard]] std::string characterAt(std::size_t offset) const
    {
        std::size_t end = offset + 1;
        while (end < m_script.size() && (static_cast<unsigned char>(m_script[end]) & 0xC0) == 0x80)
            ++end;
        return std::string(m_script.substr(offset, end - offset));
    }

    std::string_view m_script;
    std::size_t m_offset = 0;
    std::size_t m_line = 1;
};

} // namespace

std::vector<ScriptLine> scriptLines(std::string_view script)
{
    return Scanner(script).lines();
}

} // namespace velmora::diskimage::finder
