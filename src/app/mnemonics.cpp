#include "app/mnemonics.h"

#include "app/text.h"

#include <QSet>

namespace velmora
{
namespace
{

/// The place of the letter to mark, or -1.
qsizetype placeFor(const QString& text, const QSet<QChar>& taken)
{
    qsizetype any = -1;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isLetterOrNumber() || taken.contains(text[i].toLower()))
            continue;
        if (i == 0 || text[i - 1].isSpace())
            return i;
        if (any < 0)
            any = i;
    }
    return any;
}

} // namespace

QStringList withMnemonics(const QStringList& texts)
{
    QSet<QChar> taken;
    QStringList marked;
    for (const QString& text : texts) {
        const qsizetype place = placeFor(text, taken);
        if (place < 0) {
            marked << withoutMnemonics(text);
            continue;
        }
        taken.insert(text[place].toLower());
        marked << withoutMnemonics(text.left(place)) + QLatin1Char('&') + withoutMnemonics(text.mid(place));
    }
    return marked;
}

} // namespace velmora
