#include "diskimage/base/error.h"
#include "diskimage/base/property_list_forms.h"
#include "diskimage/base/property_list_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <pugixml.hpp>
#include <sstream>

namespace velmora::diskimage
{
namespace
{

constexpr std::string_view base64Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view whiteSpace = " \t\r\n";

[[noreturn]] void fail(const std::string& why)
{
    throw DiskImageError("The XML property list is damaged: " + why + ".");
}

std::string tagOf(pugi::xml_node node)
{
    return "<" + std::string(node.name()) + ">";
}

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(whiteSpace);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(whiteSpace) - first + 1);
}

/// All character data of an element that may hold nothing else.
std::string textIn(pugi::xml_node element)
{
    std::string text;
    for (const pugi::xml_node child : element.children()) {
        if (child.type() != pugi::node_pcdata && child.type() != pugi::node_cdata)
            fail(tagOf(element) + " holds another element");
        text += child.value();
    }
    return text;
}

std::string validTextIn(pugi::xml_node element)
{
    std::string text = textIn(element);
    (void)plistUtf16FromUtf8(text); // the parser passes on whatever bytes it finds
    return text;
}

std::int64_t integerOf(const std::string& text)
{
    std::string_view digits = trimmed(text);
    const bool negative = !digits.empty() && digits[0] == '-';
    if (!digits.empty() && (digits[0] == '-' || digits[0] == '+'))
        digits.remove_prefix(1);
    const bool hexadecimal = digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X');
    if (hexadecimal)
        digits.remove_prefix(2);
    std::uint64_t magnitude = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, magnitude, hexadecimal ? 16 : 10);
    const std::uint64_t largest = std::uint64_t{std::numeric_limits<std::int64_t>::max()} + (negative ? 1 : 0);
    if (digits.empty() || error != std::errc() || stop != end || magnitude > largest)
        fail("\"" + text.substr(0, 40) + "\" is not an integer of 64 bits");
    return static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
}

/// A number in the notation of the C locale, whatever locale the program runs in.
bool readReal(const std::string& text, double& value)
{
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    stream >> value;
    return !stream.fail() && stream.peek() == std::istringstream::traits_type::eof();
}

double realOf(const std::string& text)
{
    const std::string number(trimmed(text));
    double value = 0;
    if (number == "nan")
        return std::numeric_limits<double>::quiet_NaN();
    if (number == "inf" || number == "+infinity" || number == "-inf" || number == "-infinity")
        return number[0] == '-' ? -std::numeric_limits<double>::infinity() : std::numeric_limits<double>::infinity();
    if (!readReal(number, value))
        fail("\"" + text.substr(0, 40) + "\" is not a number");
    return value;
}

Bytes base64Decoded(const std::string& text)
{
    static const auto values = [] {
        std::array<std::int8_t, 256> table{};
        table.fill(-1);
        for (std::size_t i = 0; i < base64Alphabet.size(); ++i)
            table[static_cast<unsigned char>(base64Alphabet[i])] = static_cast<std::int8_t>(i);
        return table;
    }();
    Bytes result;
    result.reserve(text.size() / 4 * 3);
    std::uint32_t group = 0;
    unsigned digits = 0;
    unsigned padding = 0;
    for (const char c : text) {
        if (whiteSpace.find(c) != std::string_view::npos)
            continue;
        const int value = values[static_cast<unsigned char>(c)];
        if (c == '=' ? digits < 2 : value < 0 || padding > 0)
            fail("the base64 text of <data> holds \"" + std::string(1, c) + "\" where it must not");
        padding += c == '=';
        group = group << 6 | (c == '=' ? 0u : static_cast<std::uint32_t>(value));
        if (++digits < 4)
            continue;
        if (padding > 0 && (group & (padding == 1 ? 0xFFu : 0xFFFFu)) != 0)
            fail("the base64 text of <data> has stray bits at its end");
        for (unsigned i = 0; i + padding < 3; ++i)
            result.push_back(static_cast<std::uint8_t>(group >> (16 - 8 * i)));
        group = 0;
        digits = 0;
    }
    if (digits != 0)
        fail("the base64 text of <data> is cut off");
    return result;
}

/// The elements in `parent`, which may hold nothing else but white space.
std::vector<pugi::xml_node> elementsIn(pugi::xml_node parent)
{
    std::vector<pugi::xml_node> elements;
    for (const pugi::xml_node child : parent.children()) {
        if (child.type() == pugi::node_element)
            elements.push_back(child);
        else if (!trimmed(child.value()).empty() || child.type() != pugi::node_pcdata)
            fail(tagOf(parent) + " holds text between its elements");
    }
    return elements;
}

Plist valueOf(pugi::xml_node node, int depth);

Plist dictOf(pugi::xml_node node, int depth)
{
    const std::vector<pugi::xml_node> elements = elementsIn(node);
    if (elements.size() % 2 != 0)
        fail("a <dict> has a <key> without a value");
    Plist::Dict result;
    for (std::size_t i = 0; i < elements.size(); i += 2) {
        if (std::string_view(elements[i].name()) != "key")
            fail("a <dict> holds " + tagOf(elements[i]) + " where a <key> is due");
        result[validTextIn(elements[i])] = valueOf(elements[i + 1], depth + 1);
    }
    return result;
}

Plist arrayOf(pugi::xml_node node, int depth)
{
    Plist::Array result;
    for (const pugi::xml_node element : elementsIn(node))
        result.push_back(valueOf(element, depth + 1));
    return result;
}

Plist valueOf(pugi::xml_node node, int depth)
{
    if (depth > maximumPlistDepth)
        fail("its collections are nested too deeply");
    const std::string_view kind = node.name();
    if (kind == "dict")
        return dictOf(node, depth);
    if (kind == "array")
        return arrayOf(node, depth);
    if (kind == "string" || kind == "date")
        return validTextIn(node);
    if (kind == "data")
        return base64Decoded(textIn(node));
    if (kind == "integer")
        return integerOf(textIn(node));
    if (kind == "real")
        return realOf(textIn(node));
    if (kind == "true" || kind == "false")
        return kind == "true";
    fail("it holds an element " + tagOf(node));
}

void appendEscaped(std::string& out, const std::string& text)
{
    (void)plistUtf16FromUtf8(text);
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '\r': // a bare one would be read back as a line feed
            out += "&#13;";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n')
                throw DiskImageError("A control character in a text cannot be written as an XML property list.");
            out += c;
        }
    }
}

void appendElement(std::string& out, std::string_view tag, const std::string& text)
{
    out.append("<").append(tag).append(">");
    appendEscaped(out, text);
    out.append("</").append(tag).append(">\n");
}

/// The shortest decimal form that reads back as the same number.
std::string realText(double value)
{
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value < 0 ? "-infinity" : "+infinity";
    for (int digits = 1;; ++digits) {
        std::ostringstream stream;
        stream.imbue(std::locale::classic());
        stream.precision(digits);
        stream << value;
        double again = 0;
        if (digits == std::numeric_limits<double>::max_digits10 || (readReal(stream.str(), again) && again == value))
            return stream.str();
    }
}

std::string base64Encoded(const Bytes& data)
{
    std::string text;
    text.reserve((data.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < data.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, data.size() - i);
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = group << 8 | (k < count ? data[i + k] : 0u);
        for (std::size_t k = 0; k < 4; ++k)
            text.push_back(k > count ? '=' : base64Alphabet[group >> (18 - 6 * k) & 0x3F]);
    }
    return text;
}

class XmlWriter
{
public:
    void value(const Plist& plist, std::size_t depth)
    {
        indent(depth);
        if (const auto* dict = plist.as<Plist::Dict>())
            collection("dict", depth, dict->empty(), [&] { entries(*dict, depth + 1); });
        else if (const auto* array = plist.as<Plist::Array>())
            collection("array", depth, array->empty(), [&] { elements(*array, depth + 1); });
        else if (const auto* bytes = plist.as<Bytes>())
            data(*bytes, depth);
        else if (const auto* text = plist.as<std::string>())
            appendElement(m_out, "string", *text);
        else if (const auto* integer = plist.as<std::int64_t>())
            appendElement(m_out, "integer", std::to_string(*integer));
        else if (const auto* real = plist.as<double>())
            appendElement(m_out, "real", realText(*real));
        else if (const auto* flag = plist.as<bool>())
            m_out += *flag ? "<true/>\n" : "<false/>\n";
        else
            throw DiskImageError("An empty value cannot be written as an XML property list.");
    }

    std::string take() { return std::move(m_out); }

private:
    void indent(std::size_t depth) { m_out.append(depth, '\t'); }

    template <typename Body>
    void collection(const std::string& tag, std::size_t depth, bool empty, const Body& body)
    {
        if (empty) {
            m_out += "<" + tag + "/>\n";
            return;
        }
        m_out += "<" + tag + ">\n";
        body();
        indent(depth);
        m_out += "</" + tag + ">\n";
    }

    void entries(const Plist::Dict& dict, std::size_t depth)
    {
        for (const auto& [key, entry] : dict) {
            indent(depth);
            appendElement(m_out, "key", key);
            value(entry, depth);
        }
    }

    void elements(const Plist::Array& array, std::size_t depth)
    {
        for (const Plist& element : array)
            value(element, depth);
    }

    void data(const Bytes& bytes, std::size_t depth)
    {
        // Lines end at column 76, a tab counting as 8, but never shrink away.
        const std::size_t width = (76 - 8 * std::min<std::size_t>(depth, 8)) / 4 * 4;
        m_out += "<data>\n";
        const std::string text = base64Encoded(bytes);
        for (std::size_t i = 0; i < text.size(); i += width) {
            indent(depth);
            m_out.append(text, i, width);
            m_out += '\n';
        }
        indent(depth);
        m_out += "</data>\n";
    }

    std::string m_out;
};

} // namespace

Plist readXmlPlist(ByteView bytes)
{
    // An element or attribute of a few bytes takes a hundred in memory. Lists of this size hold data, not elements.
    constexpr std::ptrdiff_t mostMarks = 2'000'000;
    const auto isMark = [](std::uint8_t c) { return c == '<' || c == '='; };
    if (std::count_if(bytes.begin(), bytes.end(), isMark) > mostMarks)
        fail("it holds far more elements than any list has");
    pugi::xml_document document;
    // Every character counts in a <string>, white space alone included. The document type is skipped and no entity is
    // defined by it, so nothing can be pulled in or unfold.
    const auto result = document.load_buffer(bytes.data(), bytes.size(), pugi::parse_default | pugi::parse_ws_pcdata);
    if (!result)
        fail(std::string(result.description()) + " (byte " + std::to_string(result.offset) + ")");
    const pugi::xml_node root = document.document_element();
    if (std::string_view(root.name()) != "plist")
        fail("it has no <plist> element");
    const std::vector<pugi::xml_node> values = elementsIn(root);
    if (values.size() != 1)
        fail("its <plist> element must hold one value");
    return valueOf(values[0], 0);
}

std::string writeXmlPlist(const Plist& plist)
{
    XmlWriter writer;
    writer.value(plist, 0);
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n" +
           writer.take() + "</plist>\n";
}

} // namespace velmora::diskimage
