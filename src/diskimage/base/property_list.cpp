#include "diskimage/base/property_list.h"

#include "diskimage/base/property_list_forms.h"

#include <algorithm>

namespace velmora::diskimage
{

const Plist* Plist::find(std::string_view key) const
{
    const Dict* dict = as<Dict>();
    if (!dict)
        return nullptr;
    const auto entry = dict->find(std::string(key));
    return entry == dict->end() ? nullptr : &entry->second;
}

Plist readPlist(ByteView bytes)
{
    const ByteView magic = viewOf("bplist0");
    if (bytes.size() >= magic.size() && std::equal(magic.begin(), magic.end(), bytes.begin()))
        return readBinaryPlist(bytes);
    return readXmlPlist(bytes);
}

} // namespace velmora::diskimage
