#include "pipeline/text.h"

#include <QString>
#include <QStringDecoder>

namespace velmora
{

std::string trimmed(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).trimmed().toStdString();
}

std::string_view trimmedBlanks(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> pieces;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        if (end > begin)
            pieces.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return pieces;
}

bool isUtf8(std::string_view bytes)
{
    // Stateless, so that a sequence cut off at the end counts as an error too.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringConverter::Flag::Stateless);
    const QString decoded = decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    return !decoder.hasError();
}

std::string withoutControls(std::string_view text, char replacement, std::string_view kept)
{
    const auto byteAt = [text](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (byteAt(i) == 0xC2 && byteAt(i + 1) >= 0x80 && byteAt(i + 1) < 0xA0) { // U+0080 to U+009F
            result += replacement;
            ++i;
        } else {
            const bool isControl = byteAt(i) < 0x20 || byteAt(i) == 0x7F;
            result += isControl && kept.find(text[i]) == std::string_view::npos ? replacement : text[i];
        }
    }
    return result;
}

std::string inQuotes(std::string_view text)
{
    return std::string("“").append(text).append("”");
}

std::string_view lastComponent(std::string_view path)
{
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

} // namespace velmora
