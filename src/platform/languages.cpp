#include "platform/languages.h"

#include <QLocale>
#include <QString>
#include <QStringList>

namespace velmora
{

std::vector<std::string> systemPreferredLanguages()
{
    std::vector<std::string> codes;
    for (const QString& code : QLocale::system().uiLanguages()) {
        // The locale of an environment that states none is no language.
        if (code != QLatin1String("C") && code != QLatin1String("POSIX"))
            codes.push_back(code.toStdString());
    }
    return codes;
}

} // namespace velmora
