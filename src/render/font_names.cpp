#include "render/font_names.h"

#include <QRawFont>
#include <QtEndian>

#include <algorithm>
#include <cstddef>

namespace velmora
{
namespace
{

constexpr std::size_t headerSize = 6;  // version, count, offset of the texts
constexpr std::size_t recordSize = 12; // platform, encoding, language, name id, length, offset
constexpr unsigned postScriptNameID = 6;

/// A PostScript name is printable ASCII without blanks and the brackets of that language (at most 63 characters).
bool isPostScriptName(const std::string& name)
{
    const auto fits = [](char c) {
        return c > ' ' && c <= '~' && std::string("[](){}<>/%").find(c) == std::string::npos;
    };
    return !name.empty() && name.size() <= 63 && std::all_of(name.begin(), name.end(), fits);
}

} // namespace

std::optional<std::string> postScriptNameFromTable(const std::string& table)
{
    if (table.size() < headerSize)
        return std::nullopt;
    const auto number = [&table](std::size_t at) { return qFromBigEndian<quint16>(table.data() + at); };
    const std::size_t count = number(2);
    const std::size_t texts = number(4);
    for (std::size_t i = 0; i < count && headerSize + (i + 1) * recordSize <= table.size(); ++i) {
        const std::size_t record = headerSize + i * recordSize;
        const std::size_t begin = texts + number(record + 10);
        const std::size_t length = number(record + 8);
        if (number(record + 6) != postScriptNameID || begin + length > table.size())
            continue;
        std::string name = table.substr(begin, length);
        // All platforms but the Macintosh one hold UTF-16, of which the name uses the lower halves.
        if (number(record) != 1) {
            std::string halves;
            for (std::size_t k = 1; k < name.size(); k += 2)
                halves += name[k - 1] == 0 ? name[k] : '\0';
            name = halves;
        }
        if (isPostScriptName(name))
            return name;
    }
    return std::nullopt;
}

std::optional<std::string> postScriptName(const QFont& font)
{
    return postScriptNameFromTable(QRawFont::fromFont(font).fontTable("name").toStdString());
}

} // namespace velmora
