// Mnemonics, file names, command line: the small functions behind the window.

#include "app/mnemonics.h"
#include "app/ports/dialog_file_panels.h"
#include "app/program_options.h"

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

} // namespace
} // namespace velmora
