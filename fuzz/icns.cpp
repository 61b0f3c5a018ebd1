// Icon families: elements survive being written; pixels of all codings are decoded at the sizes that programs use.

#include "diskimage/finder/icns.h"
#include "support/target.h"

#include <algorithm>

using namespace velmora;
using namespace velmora::diskimage;
using namespace velmora::diskimage::finder;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto elements = fuzz::attempt([&] { return readIcns({data, size}); });
    if (!elements)
        return 0;
    fuzz::expect(readIcns(writeIcns(*elements)) == *elements, "an icon family holds the elements put into it");
    const IcnsElement* const largest = largestIcon(*elements);
    const bool isOneOfThem = std::any_of(elements->begin(), elements->end(),
                                         [largest](const IcnsElement& element) { return &element == largest; });
    fuzz::expect(largest == nullptr || isOneOfThem, "the largest icon is one of the elements");
    ByteView mask;
    for (const IcnsElement& element : *elements) {
        for (const std::uint32_t side : {16u, 32u, 48u, 128u}) {
            if (const auto pixels = fuzz::attempt([&] { return decodeArgb(element.data, side); })) {
                const Bytes coded = encodeArgb(*pixels);
                fuzz::expect(decodeArgb(coded, side).rgba == pixels->rgba, "coded pixels are what they were");
            }
            fuzz::attempt([&] { return decodeRgb24(element.data, mask, side); });
        }
        mask = element.data;
    }
    return 0;
}
