#include "l10n/app_language.h"

namespace velmora
{

std::string AppLanguage::menuLabel() const
{
    return code == "system" ? nativeName : nativeName + " — " + englishName;
}

} // namespace velmora
