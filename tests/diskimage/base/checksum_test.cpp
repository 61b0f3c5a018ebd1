#include "diskimage/base/checksum.h"

#include <gtest/gtest.h>

namespace velmora::diskimage
{

TEST(Checksum, continuesOverPieces)
{
    EXPECT_EQ(crc32(0, viewOf("123456789")), 0xCBF43926U);
    EXPECT_EQ(crc32(crc32(crc32(0, viewOf("1234")), {}), viewOf("56789")), 0xCBF43926U);
    EXPECT_EQ(crc32(0, Bytes(3072)), 0x67E6C984U);
}

} // namespace velmora::diskimage
