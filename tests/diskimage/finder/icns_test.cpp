#include "diskimage/base/error.h"
#include "diskimage/finder/icns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace velmora::diskimage::finder
{
namespace
{

const Bytes png = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 1, 2};

IconPixels picture(std::uint32_t side, bool noisy)
{
    std::mt19937 engine(side);
    IconPixels pixels{side, side, Bytes(std::size_t{side} * side * 4)};
    for (std::size_t i = 0; i < pixels.rgba.size(); ++i)
        pixels.rgba[i] = static_cast<std::uint8_t>(noisy ? engine() >> 24 : i % 4 * 50 + i / 64 % 5);
    return pixels;
}

TEST(Icns, isWrittenByteForByte)
{
    const Bytes file = writeIcns({{"ic07", {1, 2, 3}}, {"info", {}}});
    EXPECT_EQ(file, (Bytes{'i', 'c', 'n', 's', 0, 0,   0,   27,  'i', 'c', '0', '7', 0, 0,
                           0,   11,  1,   2,   3, 'i', 'n', 'f', 'o', 0,   0,   0,   8}));
    EXPECT_EQ(readIcns(file), (std::vector<IcnsElement>{{"ic07", {1, 2, 3}}, {"info", {}}}));
    Bytes longer = file;
    longer.push_back(7); // what follows the family does not belong to it
    EXPECT_EQ(readIcns(longer).size(), 2u);
    EXPECT_THROW(writeIcns({{"ic7", {}}}), DiskImageError);
}

TEST(Icns, endsInAnErrorForHostileFiles)
{
    const Bytes good = writeIcns({{"ic07", png}, {"ic08", png}});
    for (std::size_t length = 0; length < good.size(); ++length)
        EXPECT_THROW(readIcns(ByteView(good).first(length)), DiskImageError) << length;
    for (const std::size_t offset : {4u, 12u, 30u}) {
        for (const std::uint32_t value : {0u, 1u, 7u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
            Bytes bad = good;
            putBE32(bad.data() + offset, value);
            EXPECT_THROW(readIcns(bad), DiskImageError) << offset << " " << value;
        }
    }
}

TEST(ArgbIcon, isCodedChannelByChannel)
{
    // Two by two: opaque, red 9 9 9 9, green 1 2 2 3, blue 5 6 6 6.
    const IconPixels pixels{2, 2, {9, 1, 5, 255, 9, 2, 6, 255, 9, 2, 6, 255, 9, 3, 6, 255}};
    const Bytes coded = encodeArgb(pixels);
    EXPECT_EQ(coded, (Bytes{'A', 'R', 'G', 'B', 129, 255, 129, 9, 3, 1, 2, 2, 3, 0, 5, 128, 6, 0}));
    EXPECT_EQ(decodeArgb(coded, 2).rgba, pixels.rgba);
}

TEST(ArgbIcon, comesBackAsItWas)
{
    for (const std::uint32_t side : {1u, 12u, 16u, 32u, 64u}) { // runs end below, at and above 130
        for (const bool noisy : {false, true}) {
            const IconPixels pixels = picture(side, noisy);
            const Bytes coded = encodeArgb(pixels);
            EXPECT_EQ(decodeArgb(coded, side).rgba, pixels.rgba);
            EXPECT_THROW(decodeArgb(ByteView(coded).first(coded.size() - 2), side), DiskImageError);
            EXPECT_THROW(decodeArgb(coded, side * 2), DiskImageError);
        }
    }
    EXPECT_THROW(encodeArgb({2, 1, Bytes(8)}), DiskImageError);
    EXPECT_THROW(decodeArgb(Bytes{'A', 'R', 'G', 'B'}, 0), DiskImageError);
    EXPECT_THROW(decodeArgb(Bytes{'A', 'R', 'G', 'B'}, 1u << 31), DiskImageError);
    EXPECT_THROW(decodeArgb(png, 16), DiskImageError);
}

TEST(ClassicIcon, isReadRawOrCoded)
{
    const Bytes raw = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    const Bytes coded = {3, 1, 4, 7, 10, 3, 2, 5, 8, 11, 3, 3, 6, 9, 12};
    const Bytes rgba = {1, 2, 3, 20, 4, 5, 6, 30, 7, 8, 9, 40, 10, 11, 12, 50};
    const Bytes mask = {20, 30, 40, 50};
    EXPECT_EQ(decodeRgb24(raw, mask, 2).rgba, rgba);
    EXPECT_EQ(decodeRgb24(coded, mask, 2).rgba, rgba);
    EXPECT_EQ(decodeRgb24(coded, {}, 2).rgba[3], 255);
    EXPECT_THROW(decodeRgb24(ByteView(coded).first(14), mask, 2), DiskImageError);
    EXPECT_THROW(decodeRgb24(coded, ByteView(mask).first(3), 2), DiskImageError);
}

TEST(ClassicIcon, of128PixelsBeginsWithZeros)
{
    Bytes coded(4);
    for (int i = 0; i < 3 * 128; ++i) // a row of 128 equal bytes at a time
        append(coded, Bytes{253, static_cast<std::uint8_t>(i / 128 + 1)});
    const IconPixels pixels = decodeRgb24(coded, {}, 128);
    EXPECT_EQ(Bytes(pixels.rgba.begin(), pixels.rgba.begin() + 4), (Bytes{1, 2, 3, 255}));
    EXPECT_EQ(Bytes(pixels.rgba.end() - 4, pixels.rgba.end()), (Bytes{1, 2, 3, 255}));
}

TEST(LargestIcon, isTheLargestThatCanBeShown)
{
    const Bytes jpeg2000 = {0, 0, 0, 12, 'j', 'P', ' ', ' '};
    const Bytes argb = {'A', 'R', 'G', 'B', 0};
    const struct {
        const char* name;
        std::vector<IcnsElement> elements;
        const char* type;
    } cases[] = {
        {"by size, not by order", {{"ic07", png}, {"ic10", png}, {"ic09", png}}, "ic10"},
        {"JPEG 2000 is passed over", {{"ic10", jpeg2000}, {"ic08", png}}, "ic08"},
        {"classic", {{"is32", {1}}, {"it32", {1}}, {"t8mk", {1}}, {"ic12", png}}, "it32"},
        {"small", {{"ic04", argb}, {"ic05", argb}}, "ic05"},
        {"none", {{"icp4", {1, 2, 3}}, {"s8mk", {1}}, {"info", png}}, nullptr},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        const IcnsElement* found = largestIcon(row.elements);
        ASSERT_EQ(found == nullptr, row.type == nullptr);
        if (found) {
            EXPECT_EQ(found->type, row.type);
        }
    }
}

} // namespace
} // namespace velmora::diskimage::finder
