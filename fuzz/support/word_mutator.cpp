// How inputs made of big-endian words at even places are changed: mostly word by word, since bytes that are inserted or
// removed would only shift everything behind them out of its place.

#include "diskimage/base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <random>

using namespace velmora::diskimage;

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace
{

using Random = std::minstd_rand;

std::uint32_t wordAt(const std::uint8_t* p, std::size_t width)
{
    return width == 2 ? getBE16(p) : getBE32(p);
}

/// What to put in place of a word: something near, an extreme, a power of two, or a word from elsewhere.
std::uint32_t otherWord(ByteView input, std::uint32_t word, std::size_t width, Random& random)
{
    switch (random() % 7) {
    case 0:
        return word + 1;
    case 1:
        return word - 1;
    case 2:
        return 0;
    case 3:
        return 0xFFFFFFFF;
    case 4:
        return std::uint32_t{1} << random() % 32;
    case 5:
        return word ^ std::uint32_t{1} << random() % (8 * width);
    default:
        return wordAt(input.data() + random() % (input.size() - width + 1) / 2 * 2, width);
    }
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed)
{
    Random random(seed);
    if (size < 4 || random() % 4 == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    for (auto left = 1 + random() % 3; left > 0; --left) {
        const std::size_t width = random() % 2 == 0 ? 2 : 4;
        std::uint8_t* const place = data + random() % (size - width + 1) / 2 * 2;
        const std::uint32_t word = otherWord({data, size}, wordAt(place, width), width, random);
        if (width == 2)
            putBE16(place, static_cast<std::uint16_t>(word));
        else
            putBE32(place, word);
    }
    return size;
}
