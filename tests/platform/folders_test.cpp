#include "platform/folders.h"
#include "platform/settings.h"
#include "platform/tools.h"

#include "platform/environment_variable.h"
#include "platform/temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

TEST(Folders, followTheEnvironment)
{
    TemporaryFolder folder;
    const EnvironmentVariable temporary("TMPDIR", (folder / "made/on demand").string());
    const EnvironmentVariable home("HOME", (folder / "home").string());
    EXPECT_EQ(Folders::temporary(), folder / "made/on demand");
    EXPECT_TRUE(fs::is_directory(folder / "made/on demand"));
    EXPECT_EQ(Folders::home(), folder / "home");
    {
        const EnvironmentVariable data("XDG_DATA_HOME", "");
        EXPECT_EQ(Folders::applicationSupport(), folder / "home/.local/share");
    }
    const EnvironmentVariable data("XDG_DATA_HOME", (folder / "data").string());
    EXPECT_EQ(Folders::applicationSupport(), folder / "data");
    const EnvironmentVariable noHome("HOME", "");
    EXPECT_TRUE(Folders::home().is_absolute());
}

TEST(SystemToolPath, findsStandInsBesideTheProgram)
{
    const fs::path program = fs::read_symlink("/proc/self/exe");
    const fs::path tools = program.parent_path().parent_path() / "libexec/velmora";
    EXPECT_EQ(systemToolPath("/usr/bin/hdiutil"), tools / "hdiutil");
    EXPECT_EQ(systemToolPath("/usr/bin/du"), tools / "du");
    for (const char* const path : {"/bin/sync", "/usr/bin/env", "hdiutil", "/usr/local/bin/hdiutil", ""})
        EXPECT_EQ(systemToolPath(path), path);
}

TEST(SettingsStore, keepsTypedValuesForTheNextStart)
{
    TemporaryFolder folder;
    const fs::path file = folder / "settings.ini";
    const std::int64_t large = (std::int64_t{1} << 62) + 1;
    {
        const auto store = openSettingsFile(file);
        EXPECT_EQ(store->stringValue("appTheme"), std::nullopt);
        store->setString("appTheme", "@Größe, mit \"Komma\"; \n");
        store->setBool("openMaximized", false);
        store->setInt("count", large);
        EXPECT_TRUE(fs::exists(file)) << "written at once";
    }
    fs::copy_file(file, folder / "other.ini"); // a path that no cache knows
    const auto store = openSettingsFile(folder / "other.ini");
    EXPECT_EQ(store->stringValue("appTheme"), "@Größe, mit \"Komma\"; \n");
    EXPECT_EQ(store->boolValue("openMaximized"), false);
    EXPECT_EQ(store->intValue("count"), large);
}

TEST(SettingsStore, takesNothingFromADamagedValue)
{
    TemporaryFolder folder;
    std::ofstream(folder / "damaged.ini") << "[General]\nflag=perhaps\nnumber=5.5x\ntext=a, b\n";
    const auto store = openSettingsFile(folder / "damaged.ini");
    EXPECT_EQ(store->boolValue("flag"), std::nullopt);
    EXPECT_EQ(store->intValue("number"), std::nullopt);
    EXPECT_EQ(store->stringValue("text"), std::nullopt);
}

} // namespace
} // namespace velmora
