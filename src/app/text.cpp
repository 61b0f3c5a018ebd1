#include "app/text.h"

#include "l10n/l10n.h"

#include <QFile>

#include <array>
#include <cstdio>

namespace velmora
{

QString qtText(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString qtPath(const std::filesystem::path& path)
{
    return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

std::filesystem::path nativePath(const QString& path)
{
    return QFile::encodeName(path).toStdString();
}

QString localized(std::string_view key)
{
    return qtText(L10n::t(key));
}

QString localized(std::string_view key, const QString& argument)
{
    return localized(key).replace(QLatin1String("%@"), argument);
}

QString withoutMnemonics(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

std::string sizeText(std::uintmax_t bytes)
{
    constexpr std::array units{"KB", "MB", "GB", "TB"};
    if (bytes < 1000)
        return std::to_string(bytes) + " bytes";
    double value = static_cast<double>(bytes) / 1000;
    std::size_t unit = 0;
    while (value >= 999.95 && unit + 1 < units.size()) {
        value /= 1000;
        ++unit;
    }
    char text[48];
    std::snprintf(text, sizeof text, "%.1f %s", value, units[unit]);
    return text;
}

} // namespace velmora
