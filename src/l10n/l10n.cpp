#include "l10n/l10n.h"

#include "l10n/language_manager.h"

namespace velmora::L10n
{

std::string t(std::string_view key)
{
    return LanguageManager::shared().string(key);
}

} // namespace velmora::L10n
