// What programs of other people say about our images.

#include "diskimage/base/temporary_folder.h"
#include "diskimage/udif/test_images.h"

#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <filesystem>

namespace velmora::diskimage::udif
{
namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

using test::TemporaryFolder;

/// The path of a new file in the folder.
std::string fileIn(const TemporaryFolder& folder, const std::string& name, ByteView content = {})
{
    const std::filesystem::path path = folder.path() / name;
    openFile(path, OpenMode::create)->write(0, content);
    return path.string();
}

struct Outcome {
    int status = 0;
    std::string output{};
};

Outcome run(const std::string& command)
{
    Outcome outcome;
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe)
        throw std::runtime_error("popen failed");
    std::array<char, 4096> buffer{};
    while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe))
        outcome.output.append(buffer.data(), count);
    const int status = pclose(pipe);
    outcome.status = status % 256 == 0 ? status / 256 : -1;
    return outcome;
}

bool isInstalled(const std::string& program)
{
    return run("command -v " + program).status == 0;
}

Bytes bytesOf(const std::string& path)
{
    return contentOf(*openFile(path, OpenMode::readOnly));
}

/// Complaints of any kind; a wrong checksum does not change the exit status of 7-Zip.
const char* const complaint = "WARNING|ERROR|Warnings:|Errors:";

std::vector<std::pair<std::string, Format>> compressedFormats()
{
    return {{"UDRO", Format::udro}, {"UDZO", Format::udzo}};
}

TEST(SevenZip, findsNothingWrong)
{
    if (!isInstalled("7zz"))
        GTEST_SKIP() << "7zz is not installed";
    const TemporaryFolder folder;
    const auto disk = sampleDisk();
    for (const auto& [code, format] : compressedFormats()) {
        SCOPED_TRACE(code);
        const Bytes bytes = converted(*disk, {.format = format});
        const Outcome test = run("7zz t -tdmg " + fileIn(folder, code + ".dmg", bytes));
        EXPECT_EQ(test.status, 0);
        EXPECT_THAT(test.output, Not(ContainsRegex(complaint)));
    }
}

TEST(SevenZip, noticesEachChangedByte)
{
    if (!isInstalled("7zz"))
        GTEST_SKIP() << "7zz is not installed";
    const TemporaryFolder folder;
    const Bytes good = converted(*sampleDisk(), {.format = Format::udzo});
    const Trailer trailer = readTrailer(ByteView(good).last(trailerSize), good.size());
    const std::string plist = textOf(ByteView(good).subspan(trailer.plistOffset, trailer.plistLength));
    // The first table begins with a line of 44 characters; 64 bytes on, the type of its checksum, and at 72 the value.
    const std::size_t firstTable = trailer.plistOffset + plist.find("bWlzaAAA");
    const std::size_t checksum = firstTable + 72 / 3 * 4 + (72 / 3 * 4) / 44 * 5;
    const struct {
        const char* name;
        std::size_t offset;
        int status;
    } flips[] = {
        {"inside a stored chunk", mebibyte / 2, 2},
        {"checksum of an extent", checksum, 2},
        {"master checksum", good.size() - trailerSize + 363, 0},
        {"data checksum", good.size() - trailerSize + 91, 0},
    };
    for (const auto& flip : flips) {
        SCOPED_TRACE(flip.name);
        Bytes bad = good;
        bad[flip.offset] = bad[flip.offset] == 'A' ? 'B' : bad[flip.offset] ^ 3;
        const Outcome test = run("7zz t -tdmg " + fileIn(folder, "flipped.dmg", bad));
        EXPECT_EQ(test.status, flip.status);
        EXPECT_THAT(test.output, ContainsRegex(complaint));
    }
}

TEST(Dmg2img, restoresTheDisk)
{
    if (!isInstalled("dmg2img"))
        GTEST_SKIP() << "dmg2img is not installed";
    const TemporaryFolder folder;
    const auto disk = sampleDisk();
    for (const auto& [code, format] : compressedFormats()) {
        SCOPED_TRACE(code);
        const std::string image = fileIn(folder, code + ".dmg", converted(*disk, {.format = format}));
        const std::string raw = fileIn(folder, code + ".img");
        const Outcome conversion = run("dmg2img -i " + image + " -o " + raw);
        EXPECT_EQ(conversion.status, 0) << conversion.output;
        EXPECT_TRUE(bytesOf(raw) == contentOf(*disk));
    }
}

TEST(Python, readsThePropertyList)
{
    if (!isInstalled("python3"))
        GTEST_SKIP() << "python3 is not installed";
    const TemporaryFolder folder;
    const Bytes bytes = converted(*sampleDisk(), {});
    const Trailer trailer = readTrailer(ByteView(bytes).last(trailerSize), bytes.size());
    const std::string path =
        fileIn(folder, "image.plist", ByteView(bytes).subspan(trailer.plistOffset, trailer.plistLength));
    const Outcome outcome =
        run("python3 -c \"import plistlib; f = plistlib.load(open('" + path +
            "', 'rb'))['resource-fork']; print([(e['ID'], e['Data'][:4], len(e['Data']) % 40) for e in f['blkx']][-1], "
            "len(f['plst'][0]['Data']))\"");
    EXPECT_EQ(outcome.output, "('6', b'mish', 4) 1032\n");
}

} // namespace
} // namespace velmora::diskimage::udif
