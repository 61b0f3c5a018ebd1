#include "l10n/l10n.h"

#include "l10n/language_manager.h"

namespace velmora::L10n
{
namespace
{

const LanguageManager* source = nullptr;

} // namespace

std::string t(std::string_view key)
{
    return (source ? *source : LanguageManager::shared()).string(key);
}

void setSource(const LanguageManager* manager)
{
    source = manager;
}

} // namespace velmora::L10n
