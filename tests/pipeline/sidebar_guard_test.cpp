#include "pipeline/sidebar_guard.h"

#include "platform/file_tree.h"
#include "worlds/build_world.h"

#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

namespace fs = std::filesystem;

class SidebarGuard : public ::testing::Test
{
protected:
    void preserve(const std::function<void()>& body)
    {
        FinderSidebarGuard::preserveDuring(
            {world.home, temporary, "UUID"}, [this](const std::string& line) { log.push_back(line); }, body);
    }
    [[nodiscard]] std::vector<std::string> besideFavorites() const { return listFolder(world.favorites.parent_path()); }

    BuildWorld world{};
    fs::path temporary = world.temporary;
    std::vector<std::string> log{};
};

TEST_F(SidebarGuard, doesNothingWithoutFavorites)
{
    int runs = 0;
    preserve([&] { ++runs; });
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(log.empty());
    EXPECT_FALSE(fs::exists(world.favorites));
}

TEST_F(SidebarGuard, putsTheFavoritesBackAlsoAfterAFailure)
{
    const struct {
        const char* name;
        std::function<void()> body;
        bool fails;
    } cases[] = {
        {"changed", [this] { BuildWorld::write(world.favorites, "spoilt"); }, false},
        {"removed", [this] { fs::remove(world.favorites); }, false},
        {"failed",
         [this] {
             BuildWorld::write(world.favorites, "spoilt");
             throw std::runtime_error("body");
         },
         true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        BuildWorld::write(world.favorites, "favourites");
        log.clear();
        std::string backupDuring;
        try {
            preserve([&] {
                backupDuring = BuildWorld::read(temporary / "velmora-finder-favorites-UUID.sfl2");
                c.body();
            });
            EXPECT_FALSE(c.fails);
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "body");
            EXPECT_TRUE(c.fails);
        }
        EXPECT_EQ(backupDuring, "favourites");
        EXPECT_EQ(BuildWorld::read(world.favorites), "favourites");
        EXPECT_EQ(besideFavorites().size(), 1u);
        EXPECT_TRUE(world.scratchFiles().empty());
        EXPECT_EQ(log, (std::vector<std::string>{"Preserving Finder sidebar favorites…",
                                                 "Restored Finder sidebar favorites."}));
    }
}

TEST_F(SidebarGuard, keepsTheCopyWhenItCannotBePutBack)
{
    BuildWorld::write(world.favorites, "favourites");
    preserve([this] {
        fs::remove_all(world.favorites.parent_path());
        BuildWorld::write(world.favorites.parent_path(), "a file where the folder was");
    });
    ASSERT_EQ(log.size(), 2u);
    EXPECT_TRUE(log[1].starts_with("⚠️ Could not restore Finder sidebar favorites: ")) << log[1];
    EXPECT_EQ(BuildWorld::read(temporary / "velmora-finder-favorites-UUID.sfl2"), "favourites");
}

TEST_F(SidebarGuard, runsTheBodyUnprotectedWhenNoCopyCanBeMade)
{
    BuildWorld::write(world.favorites, "favourites");
    temporary /= "missing";
    int runs = 0;
    preserve([&] { ++runs; });
    EXPECT_EQ(runs, 1);
    ASSERT_EQ(log.size(), 1u);
    EXPECT_TRUE(log[0].starts_with("⚠️ Could not back up Finder sidebar favorites: ")) << log[0];
    EXPECT_EQ(BuildWorld::read(world.favorites), "favourites");
}

} // namespace
} // namespace velmora::testing
