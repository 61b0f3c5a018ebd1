#include "l10n/embedded_language_packs.h"

namespace velmora::EmbeddedLanguagePacks
{

const Packs& packs()
{
    static const Packs all{{"en", english()}};
    return all;
}

} // namespace velmora::EmbeddedLanguagePacks
