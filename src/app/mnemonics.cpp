#include "app/mnemonics.h"

#include "app/operating_system.h"
#include "app/text.h"

#include <QAction>
#include <QKeySequence>
#include <QLabel>
#include <QMenuBar>
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

QStringList withMnemonics(const QStringList& texts, const QString& takenLetters)
{
    QSet<QChar> taken(takenLetters.begin(), takenLetters.end());
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

void giveMnemonics(const QWidget& panel)
{
    const auto* menus = panel.window()->findChild<QMenuBar*>();
    if (isMac() || !menus)
        return;
    QString taken;
    for (const QAction* menu : menus->actions())
        taken += QKeySequence::mnemonic(menu->text()).toString().right(1).toLower();
    QList<QLabel*> labels = panel.findChildren<QLabel*>();
    labels.removeIf([](const QLabel* label) { return !label->buddy(); });
    QStringList texts;
    for (const QLabel* label : labels)
        texts << label->text().remove(QLatin1Char('&'));
    const QStringList marked = withMnemonics(texts, taken);
    for (qsizetype i = 0; i < labels.size(); ++i)
        labels[i]->setText(marked[i]);
}

} // namespace velmora
