#include "app/inspector/file_facts.h"

#include "app/text.h"
#include "l10n/labels.h"

#include <QFileInfo>
#include <QLocale>

#include <algorithm>

namespace velmora
{
namespace
{

QString kindOfFile(const QString& extension)
{
    if (extension == QLatin1String("PKG"))
        return qtText(Labels::kindInstaller);
    if (extension == QLatin1String("DMG"))
        return qtText(Labels::kindDiskImage);
    constexpr qsizetype longest = 8;
    const bool plain = std::all_of(extension.begin(), extension.end(), [](QChar c) { return c.isLetterOrNumber(); });
    if (extension.isEmpty() || extension.size() > longest || !plain)
        return qtText(Labels::kindDocument);
    return qtText(Labels::kindDocumentOf).arg(extension);
}

} // namespace

FileFacts factsOf(const DMGItem& item)
{
    if (item.isSymlink() || item.sourcePath.empty())
        return {};
    const QFileInfo info(qtPath(item.sourcePath));
    if (!info.exists())
        return {};
    return {true, info.isDir(), info.size(), info.birthTime(), info.lastModified()};
}

QString kindOf(const DMGItem& item, const FileFacts& facts)
{
    if (item.isSymlink())
        return qtText(Labels::kindLink);
    if (!facts.exists)
        return qtText(Labels::kindUnknown);
    const QString extension = QFileInfo(qtPath(item.sourcePath)).suffix().toUpper();
    if (!facts.folder)
        return kindOfFile(extension);
    return qtText(extension == QLatin1String("APP") ? Labels::kindApplication : Labels::kindFolder);
}

QString kindOf(const DMGItem& item)
{
    return kindOf(item, factsOf(item));
}

QString dateText(const QDateTime& time)
{
    if (!time.isValid())
        return qtText(Labels::unknownValue);
    return QLocale(QLocale::English).toString(time, QStringLiteral("d MMM yyyy, HH:mm"));
}

} // namespace velmora
