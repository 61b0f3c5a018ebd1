// A CRC is a polynomial over two elements, modulo a fixed one; a zero byte more multiplies it by x^8. In the reflected
// form the highest bit is the coefficient of x^0.

#include "diskimage/base/crc_algebra.h"

namespace velmora::diskimage
{
namespace
{

constexpr std::uint32_t modulus = 0xEDB88320;
constexpr std::uint32_t one = 0x80000000;

std::uint32_t product(std::uint32_t a, std::uint32_t b)
{
    std::uint32_t result = 0;
    for (; a != 0; a <<= 1) {
        if ((a & one) != 0)
            result ^= b;
        b = (b & 1) != 0 ? b >> 1 ^ modulus : b >> 1;
    }
    return result;
}

/// x^(8 * bytes)
std::uint32_t power(std::uint64_t bytes)
{
    std::uint32_t result = one;
    for (std::uint32_t square = one >> 8; bytes != 0; bytes >>= 1) {
        if ((bytes & 1) != 0)
            result = product(result, square);
        square = product(square, square);
    }
    return result;
}

} // namespace

std::uint32_t crc32Combined(std::uint32_t first, std::uint32_t second, std::uint64_t secondLength)
{
    // The inversions at the beginning and the end cancel out.
    return product(power(secondLength), first) ^ second;
}

std::uint32_t crc32OfZeros(std::uint64_t length)
{
    return ~product(power(length), ~std::uint32_t{0});
}

} // namespace velmora::diskimage
