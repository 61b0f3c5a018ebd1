#include "app/text.h"

#include "l10n/l10n.h"

#include <QFile>

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

} // namespace velmora
