// Mnemonics, file names, sizes, command line: the small functions behind the window.

#include "app/mnemonics.h"
#include "app/ports/dialog_file_panels.h"
#include "app/program_options.h"
#include "app/text.h"

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

TEST(Mnemonics, areUniqueInAMenu)
{
    EXPECT_EQ(withMnemonics({"Save", "Save As…", "Settings…", "Å & Söhne.velmora", "sS", "…"}),
              (QStringList{"&Save", "Save &As…", "S&ettings…", "&Å && Söhne.velmora", "sS", "…"}));
}

TEST(SavePanel, addsTheExtensionThatIsLacking)
{
    EXPECT_EQ(withExtension("/a/Notes 2.1", "dmg"), "/a/Notes 2.1.dmg");
    EXPECT_EQ(withExtension("/a/Notes.DMG", "dmg"), "/a/Notes.DMG");
    EXPECT_EQ(withExtension("/a.dmg/Notes", "dmg"), "/a.dmg/Notes.dmg");
    EXPECT_EQ(withExtension("/a/dmg", "dmg"), "/a/dmg.dmg");
}

TEST(ProgramOptions, takeDocumentsAndRefuseTheRest)
{
    EXPECT_EQ(parseProgramOptions({"/a.velmora", "--", "--b"}).documents,
              (std::vector<std::filesystem::path>{"/a.velmora", std::filesystem::absolute("--b")}));
    EXPECT_NE(parseProgramOptions({"--bogus"}).error.find("--bogus"), std::string::npos);
    EXPECT_NE(parseProgramOptions({""}).error, "");
    EXPECT_TRUE(answerWithoutWindow({"x", "--version"}));
    EXPECT_FALSE(answerWithoutWindow({"--", "--help"}));
}

TEST(SizeText, countsAsFileManagersDo)
{
    EXPECT_EQ(sizeText(999), "999 bytes");
    EXPECT_EQ(sizeText(1000), "1.0 KB");
    EXPECT_EQ(sizeText(41'800'000), "41.8 MB");
    EXPECT_EQ(sizeText(999'960'000), "1.0 GB");
    EXPECT_EQ(sizeText(UINTMAX_MAX), "18446744.1 TB");
}

} // namespace
} // namespace velmora
