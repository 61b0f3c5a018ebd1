// A whole window layout whose bytes were worked out by hand and compared with files of the Finder.

#include "diskimage/base/property_list.h"
#include "diskimage/finder/ds_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <openssl/sha.h>

namespace velmora::diskimage::finder
{
namespace
{

std::string sha256(ByteView bytes)
{
    std::uint8_t digest[SHA256_DIGEST_LENGTH];
    SHA256(bytes.data(), bytes.size(), digest);
    std::string text;
    for (const std::uint8_t byte : digest) {
        constexpr char digits[] = "0123456789abcdef";
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

/// The bytes of a dump.
Bytes fromHex(std::string_view text)
{
    Bytes bytes;
    int high = -1;
    for (const char c : text) {
        const auto digit = std::string_view("0123456789abcdef").find(c);
        if (digit == std::string_view::npos)
            continue;
        if (high < 0) {
            high = static_cast<int>(digit);
        } else {
            bytes.push_back(static_cast<std::uint8_t>(high << 4 | static_cast<int>(digit)));
            high = -1;
        }
    }
    return bytes;
}

Bytes part(const Bytes& file, std::size_t offset, std::size_t length)
{
    const auto begin = file.begin() + static_cast<std::ptrdiff_t>(offset);
    return {begin, begin + static_cast<std::ptrdiff_t>(length)};
}

constexpr std::int64_t created = 1719792000; // 2024-07-01 00:00 UTC

AliasTarget background()
{
    return {.volumeName = "My App",
            .volumeCreated = created,
            .path = {".background", "background.tiff"},
            .folderIds = {17},
            .fileId = 18,
            .fileCreated = created};
}

WindowLayout layout()
{
    return {.left = 200,
            .top = 120,
            .right = 840,
            .bottom = 540,
            .iconSize = 96,
            .textSize = 12,
            .showIconPreview = true,
            .backgroundPath = "/.background/background.tiff",
            .positions = {{"My App.app", 170, 206}, {"Applications", 470, 206}}};
}

const DsRecord& recordOf(const std::vector<DsRecord>& records, std::u16string_view name, std::string_view code)
{
    for (const DsRecord& record : records) {
        if (record.name == name && record.code == code)
            return record;
    }
    throw std::out_of_range("no such record");
}

TEST(WorkedExample, hasTheExpectedSumsAndSizes)
{
    const auto records = layoutRecords(layout(), background());
    const Bytes alias = writeAlias(background());
    const Bytes& window = recordOf(records, u".", "bwsp").data;
    const Bytes& icons = recordOf(records, u".", "icvp").data;
    const Bytes file = writeDsStore(records);
    const struct {
        const char* name;
        const Bytes& bytes;
        std::size_t size;
        const char* sum;
    } pieces[] = {
        {"alias", alias, 348, "c10dbf5e32ed2bf36e399b975d76a28d688497f91ebc59d777486f6a403a71f1"},
        {"bwsp", window, 237, "0fabcb03c39bf62b458fccc5e3459a5a98a6b95e75117ac3b3ff8035d7f57958"},
        {"icvp", icons, 769, "1202ce208d1b101ac9b5458720ff09e1ada28a1eca5be95bda6c5cad5243fa1b"},
        {"file", file, 10244, "4d124d6c6b8f8494e5c60b224bae9f1b036ff0cf3307b0b31d20a43f93f803ee"},
    };
    for (const auto& piece : pieces) {
        SCOPED_TRACE(piece.name);
        EXPECT_EQ(piece.bytes.size(), piece.size);
        EXPECT_EQ(sha256(piece.bytes), piece.sum);
    }
}

TEST(WorkedExample, hasTheExpectedBytesInItsContainer)
{
    const Bytes file = writeDsStore(layoutRecords(layout(), background()));
    EXPECT_EQ(part(file, 0, 0x60), fromHex(R"(
        00 00 00 01 42 75 64 31 00 00 20 00 00 00 08 00 00 00 20 00 00 00 10 0c 00 00 00 00 00 00 00 00
        00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
        00 00 00 00 00 00 00 02 00 00 00 00 00 00 00 07 00 00 00 01 00 00 10 00 00 00 00 00 00 00 00 00)"));
    EXPECT_EQ(part(file, 0x1004, 8), fromHex("00 00 00 00 00 00 00 07"));
    EXPECT_EQ(part(file, 0x1004 + 1212 - 52, 52), fromHex(R"(
        00 00 00 0a 00 4d 00 79 00 20 00 41 00 70 00 70 00 2e 00 61 00 70 00 70 49 6c 6f 63 62 6c 6f 62
        00 00 00 10 00 00 00 aa 00 00 00 ce ff ff ff ff ff ff 00 00)"));
    EXPECT_EQ(part(file, 0x2004, 20), fromHex("00 00 00 03  00 00 00 00  00 00 20 0b  00 00 00 45  00 00 10 0c"));
    EXPECT_EQ(part(file, 0x2004 + 8 + 1024, 13), fromHex("00 00 00 01  04 44 53 44 42  00 00 00 01"));
}

TEST(WorkedExample, hasTheExpectedWindowSettings)
{
    EXPECT_EQ(recordOf(layoutRecords(layout(), background()), u".", "bwsp").data, fromHex(R"(
        62 70 6c 69 73 74 30 30 d9 01 02 03 04 05 06 07 08 09 0a 0a 0a 0a 0a 0a 0a 0b 0c 5f 10 14 43 6f
        6e 74 61 69 6e 65 72 53 68 6f 77 53 69 64 65 62 61 72 5f 10 15 50 72 65 76 69 65 77 50 61 6e 65
        56 69 73 69 62 69 6c 69 74 79 5b 53 68 6f 77 50 61 74 68 62 61 72 5b 53 68 6f 77 53 69 64 65 62
        61 72 5d 53 68 6f 77 53 74 61 74 75 73 42 61 72 5b 53 68 6f 77 54 61 62 56 69 65 77 5b 53 68 6f
        77 54 6f 6f 6c 62 61 72 5c 53 69 64 65 62 61 72 57 69 64 74 68 5c 57 69 6e 64 6f 77 42 6f 75 6e
        64 73 08 10 00 5f 10 18 7b 7b 32 30 30 2c 20 33 36 30 7d 2c 20 7b 36 34 30 2c 20 34 32 30 7d 7d
        08 1b 32 4a 56 62 70 7c 88 95 a2 a3 a5 00 00 00 00 00 00 01 01 00 00 00 00 00 00 00 0d 00 00 00
        00 00 00 00 00 00 00 00 00 00 00 00 c0)"));
}

TEST(WorkedExample, hasTheExpectedAlias)
{
    EXPECT_EQ(writeAlias(background()), fromHex(R"(
        00 00 00 00 01 5c 00 02 00 00 06 4d 79 20 41 70 70 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
        00 00 00 00 00 00 e2 a7 a2 00 48 2b 00 05 00 00 00 11 0f 62 61 63 6b 67 72 6f 75 6e 64 2e 74 69
        66 66 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
        00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 12 e2 a7 a2 00 00 00 00 00 00 00
        00 00 ff ff ff ff 00 00 0d 02 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0b 2e 62 61 63 6b 67
        72 6f 75 6e 64 00 00 10 00 08 00 00 e2 a7 a2 00 00 00 00 11 00 08 00 00 e2 a7 a2 00 00 00 00 01
        00 04 00 00 00 11 00 02 00 23 4d 79 20 41 70 70 3a 2e 62 61 63 6b 67 72 6f 75 6e 64 3a 00 62 61
        63 6b 67 72 6f 75 6e 64 2e 74 69 66 66 00 00 0e 00 20 00 0f 00 62 00 61 00 63 00 6b 00 67 00 72
        00 6f 00 75 00 6e 00 64 00 2e 00 74 00 69 00 66 00 66 00 0f 00 0e 00 06 00 4d 00 79 00 20 00 41
        00 70 00 70 00 12 00 1c 2f 2e 62 61 63 6b 67 72 6f 75 6e 64 2f 62 61 63 6b 67 72 6f 75 6e 64 2e
        74 69 66 66 00 13 00 0f 2f 56 6f 6c 75 6d 65 73 2f 4d 79 20 41 70 70 00 ff ff 00 00)"));
}

TEST(WorkedExample, isReadBackAsItWasMeant)
{
    const ReadLayout read = readLayout(readDsStore(writeDsStore(layoutRecords(layout(), background()))));
    WindowLayout sorted = layout();
    std::swap(sorted.positions[0], sorted.positions[1]); // as the file orders them
    EXPECT_EQ(read.layout, sorted);
    EXPECT_EQ(read.background, background());
}

} // namespace
} // namespace velmora::diskimage::finder
