#include "pipeline/clean_name.h"

#include <QString>
#include <QTextBoundaryFinder>

namespace velmora
{
namespace
{

/// Volumes take 255 bytes or UTF-16 units a name; decomposed, what a person sees as one letter may become several.
constexpr qsizetype longestName = 180; ///< UTF-8 bytes

/// The longest start that ends between two letters as a person sees them.
QString shortened(const QString& name)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, name);
    qsizetype end = 0;
    while (finder.toNextBoundary() != -1 && name.first(finder.position()).toUtf8().size() <= longestName)
        end = finder.position();
    return name.first(end);
}

} // namespace

std::string cleanName(std::string_view name)
{
    QString clean;
    // No more than can be kept, so that an absurdly long name costs nothing.
    for (const QChar c : QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())).left(2 * longestName)) {
        if (c == u'/' || c == u':')
            clean += u'-';
        else if (c.category() != QChar::Other_Control)
            clean += c;
    }
    while (clean.startsWith(u'.') || (!clean.isEmpty() && clean.front().isSpace()))
        clean.remove(0, 1);
    return shortened(clean).trimmed().toStdString();
}

} // namespace velmora
