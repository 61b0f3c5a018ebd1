#include "pipeline/attach.h"
#include "pipeline/image_size.h"
#include "pipeline/text.h"

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

TEST(AttachOutput, isReadLineByLine)
{
    const std::string none = "(none)";
    const struct {
        const char* name;
        std::string output;
        std::string device;
        std::string mountPoint;
    } cases[] = {
        {"one line", "/dev/disk4s1\tApple_HFS\t/Volumes/My App", "/dev/disk4s1", "/Volumes/My App"},
        {"padded columns of a whole disk",
         "/dev/disk4          \tGUID_partition_scheme          \t\n"
         "/dev/disk4s1        \tApple_HFS                      \t/Volumes/My App\n",
         "/dev/disk4s1", "/Volumes/My App"},
        {"the last volume decides", "/dev/disk4s1\tApple_HFS\t/Volumes/One\n/dev/disk4s2\tApple_HFS\t/Volumes/Two  \n",
         "/dev/disk4s2", "/Volumes/Two"},
        {"the first device until then", "/dev/disk5 \tx\n/dev/disk6\ty\n", "/dev/disk5 ", none},
        {"a device without columns", "/dev/disk5\n", "/dev/disk5", none},
        {"a volume without its device keeps the earlier one", "/dev/disk4\tx\nother\t/Volumes/A\n", "/dev/disk4",
         "/Volumes/A"},
        {"the last piece that is a mount point", "/dev/disk4\t/Volumes/A\t/Volumes/B\tno\n", "/dev/disk4",
         "/Volumes/B"},
        {"a path in the middle of a piece is none", "/dev/disk4\tat /Volumes/A\n", "/dev/disk4", none},
        {"a device after the volume is ignored", "/dev/disk4s1\t/Volumes/A\n/dev/disk9\tx\n", "/dev/disk4s1",
         "/Volumes/A"},
        {"chatter and empty lines", "\n\nverifying…\n", none, none},
        {"nothing", "", none, none},
        {"tabs around a volume", "\t\t/Volumes/A\t\t\n", none, "/Volumes/A"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const AttachOutput output = parseAttachOutput(c.output);
        EXPECT_EQ(output.device.value_or(none), c.device);
        EXPECT_EQ(output.mountPoint.value_or(none), c.mountPoint);
    }
}

TEST(WithoutControls, leavesNothingThatCommandsATerminal)
{
    const struct {
        const char* name;
        std::string text;
        std::string shown;
    } cases[] = {
        {"an ordinary text", "Ünï 漢 🍎 ~", "Ünï 漢 🍎 ~"},
        {"escape, delete, NUL, line end", std::string("a\x1b[2J\x7f\0b\r\n", 10), "a?[2J??b?\n"},
        {"the second block, from end to end", "\u0080\u009B1m\u009F\u00A0", "??1m?\u00A0"},
        {"a sequence that is cut off", "a\xC2", "a\xC2"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(withoutControls(c.text, '?', "\n"), c.shown);
    }
}

TEST(ImageSize, followsFromTheDiskUsage)
{
    const struct {
        const char* name;
        std::string output;
        std::int64_t kilobytes;
        std::int64_t megabytes;
    } cases[] = {
        {"typical", "40000\t/tmp/stage\n", 40000, 79},
        {"a million", "1000000\t/tmp/stage\n", 1'000'000, 1392},
        {"empty stage", "0\t/tmp/stage\n", 0, 32},
        {"just below the next megabyte", "5851\tx", 5851, 32},
        {"33 is the first above the floor", "5852\tx", 5852, 33},
        {"blanks around", " \t 1024 \tx", 0, 32},
        {"blanks around the number", " 40000 \tx", 40000, 79},
        {"no tab", "40000", 40000, 79},
        {"signed", "+40000\tx", 40000, 79},
        {"negative", "-40000\tx", -40000, 32},
        {"no number", "lots\tx", 0, 32},
        {"number with a tail", "40000k\tx", 0, 32},
        {"too large a number", "99999999999999999999\tx", 0, 32},
        {"nothing", "", 0, 32},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(parseKilobytes(c.output), c.kilobytes);
        EXPECT_EQ(imageSizeMB(c.kilobytes), c.megabytes);
    }
}

} // namespace
} // namespace velmora
