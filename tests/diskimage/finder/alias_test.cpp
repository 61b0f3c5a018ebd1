#include "diskimage/base/error.h"
#include "diskimage/finder/alias.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace velmora::diskimage::finder
{
namespace
{

AliasTarget target()
{
    return {"My App", 1719792000, {".background", "background.tiff"}, {17}, 18, 1719792001};
}

/// The values of a tag, or nothing when the record has no such tag.
std::string tagIn(const Bytes& record, unsigned wanted)
{
    for (std::size_t offset = 150; offset + 4 <= record.size();) {
        const unsigned tag = getBE16(record.data() + offset);
        const std::size_t length = getBE16(record.data() + offset + 2);
        if (tag == wanted)
            return textOf(ByteView(record).subspan(offset + 4, length));
        offset += 4 + length + length % 2;
    }
    return "none";
}

TEST(Alias, isReadAsItWasWritten)
{
    AliasTarget inRoot = target();
    inRoot.path = {"picture.png"};
    inRoot.folderIds = {};
    AliasTarget deep = target();
    deep.path = {"a", "b:c", "d", "picture.png"};
    deep.folderIds = {30, 31, 32};
    AliasTarget unknownIds = target();
    unknownIds.folderIds = {};
    unknownIds.fileId = 0;
    AliasTarget decomposed = target();
    decomposed.volumeName = "Zoe\u0301 \U0001D11E";
    decomposed.path[1] = "日本.tiff";
    for (const AliasTarget& each : {target(), inRoot, deep, unknownIds, decomposed}) {
        SCOPED_TRACE(each.volumeName + each.path.back());
        const Bytes record = writeAlias(each);
        EXPECT_EQ(getBE16(record.data() + 4), record.size());
        EXPECT_EQ(readAlias(record), each);
    }
}

TEST(Alias, namesFoldersAsTheVolumeDoes)
{
    AliasTarget deep = target();
    deep.volumeName = "A:B";
    deep.path = {"x:y", "z", "picture.png"};
    deep.folderIds = {30, 31};
    const Bytes record = writeAlias(deep);
    EXPECT_EQ(tagIn(record, 0), "z");
    EXPECT_EQ(tagIn(record, 1), std::string("\0\0\0\x1f\0\0\0\x1e", 8)); // from the file upwards
    EXPECT_EQ(tagIn(record, 2), std::string("A/B:x/y:z:\0picture.png", 22));
    EXPECT_EQ(tagIn(record, 15), std::string("\0\3\0A\0/\0B", 8));
    EXPECT_EQ(tagIn(record, 18), "/x:y/z/picture.png");
    EXPECT_EQ(tagIn(record, 19), "/Volumes/A:B");
    EXPECT_EQ(getBE32(record.data() + 46), 31u);
}

TEST(Alias, ofAFileInTheRootHasNoFolders)
{
    AliasTarget inRoot = target();
    inRoot.path = {"picture.png"};
    inRoot.folderIds = {};
    const Bytes record = writeAlias(inRoot);
    EXPECT_EQ(tagIn(record, 1), "");
    EXPECT_EQ(tagIn(record, 2), "My App:picture.png");
    EXPECT_EQ(getBE32(record.data() + 46), 2u);
}

TEST(Alias, leavesOutIdsThatAreUnknown)
{
    AliasTarget unknown = target();
    unknown.folderIds = {};
    unknown.fileId = 0;
    const Bytes record = writeAlias(unknown);
    EXPECT_EQ(getBE32(record.data() + 46), 0xFFFFFFFF);
    EXPECT_EQ(getBE32(record.data() + 114), 0xFFFFFFFF);
    EXPECT_EQ(tagIn(record, 1), "none");
}

TEST(Alias, cutsShortFieldsBetweenCharacters)
{
    AliasTarget wide = target();
    wide.volumeName = std::string(25, 'v') + "ßß"; // 27 bytes hold one of the two
    wide.path[1] = std::string(62, 'p') + "ß";     // 63 bytes hold none
    const Bytes record = writeAlias(wide);
    EXPECT_EQ(record[10], 27);
    EXPECT_EQ(record[50], 62);
    EXPECT_EQ(record[50 + 63], 0);
    EXPECT_EQ(readAlias(record), wide);
}

TEST(Alias, clampsDatesThatDoNotFit)
{
    AliasTarget old = target();
    old.volumeCreated = std::numeric_limits<std::int64_t>::min();
    old.fileCreated = std::numeric_limits<std::int64_t>::max();
    const Bytes record = writeAlias(old);
    EXPECT_EQ(getBE32(record.data() + 38), 0u);
    EXPECT_EQ(getBE32(record.data() + 118), 0xFFFFFFFF);
}

TEST(Alias, refusesWhatItCannotPointTo)
{
    AliasTarget noFile = target();
    noFile.path = {};
    AliasTarget someIds = target();
    someIds.folderIds = {};
    AliasTarget badName = target();
    badName.path[0] = "a/b";
    AliasTarget tooDeep = target();
    tooDeep.path.insert(tooDeep.path.begin(), 400, std::string(200, 'f'));
    tooDeep.folderIds.assign(401, 20);
    for (const AliasTarget& each : {noFile, someIds, badName, tooDeep})
        EXPECT_THROW(writeAlias(each), DiskImageError);
}

TEST(Alias, endsInAnErrorForHostileRecords)
{
    const Bytes good = writeAlias(target());
    for (std::size_t length = 0; length < good.size(); ++length) {
        Bytes cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_THROW(readAlias(cut), DiskImageError) << length;
        if (length > 6) { // and with a length that says so
            putBE16(cut.data() + 4, static_cast<std::uint16_t>(length));
            EXPECT_THROW(readAlias(cut), DiskImageError) << length;
        }
    }
    for (std::size_t offset = 4; offset + 2 <= good.size(); ++offset) {
        for (const unsigned value : {0u, 1u, 0x7FFFu, 0xFFFFu}) {
            Bytes bad = good;
            putBE16(bad.data() + offset, static_cast<std::uint16_t>(value));
            try {
                (void)readAlias(bad);
            } catch (const DiskImageError&) { // either is right, but nothing else
            }
        }
    }
}

} // namespace
} // namespace velmora::diskimage::finder
