// Property lists of all forms: what the writers can write, they write so that it is read again as it was.

#include "diskimage/base/property_list.h"
#include "support/target.h"

using namespace velmora;
using namespace velmora::diskimage;

namespace
{

/// The XML form tells all values apart; comparing them would find NaN different from itself.
std::optional<std::string> xmlOf(const Plist& plist)
{
    return fuzz::attempt([&] { return writeXmlPlist(plist); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto plist = fuzz::attempt([&] { return readPlist({data, size}); });
    if (!plist)
        return 0;
    const auto xml = xmlOf(*plist);
    if (xml)
        fuzz::expect(xmlOf(readPlist(viewOf(*xml))) == xml, "an XML property list holds what was put into it");
    const auto* dict = plist->as<Plist::Dict>();
    const auto binary = fuzz::attempt([&] { return dict ? writeBinaryPlist(*dict) : Bytes(); });
    if (dict && binary) {
        const Plist again = readPlist(*binary);
        fuzz::expect(xmlOf(again) == xml, "a binary property list holds what was put into it");
        fuzz::expect(writeBinaryPlist(*again.as<Plist::Dict>()) == *binary, "the same list gives the same bytes");
    }
    return 0;
}
