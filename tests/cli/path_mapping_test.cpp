#include "cli/path_mapping.h"

#include <gtest/gtest.h>

namespace velmora::cli
{
namespace
{

TEST(PathMapping, reRootsWholePathComponents)
{
    const PathMaps maps{{"/Users/ann", "/srv/ann"}, {"/Users/ann/work/", "/build"}, {"/exact", "/other"}};
    const struct {
        const char* name;
        const char* path;
        const char* mapped;
    } cases[] = {
        {"below the folder", "/Users/ann/pictures/a.png", "/srv/ann/pictures/a.png"},
        {"the longest folder counts, whatever the order", "/Users/ann/work/My App.app", "/build/My App.app"},
        {"the folder itself", "/exact", "/other"},
        {"a name that only begins alike", "/Users/anna/a.png", "/Users/anna/a.png"},
        {"elsewhere", "/opt/a.png", "/opt/a.png"},
        {"empty", "", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(mappedPath(c.path, maps), c.mapped);
    }
    EXPECT_EQ(mappedPath("/a/b", {{"/", "/root"}}), "/root/a/b");
    EXPECT_EQ(mappedPath("/a/b", {{"/a", "/"}}), "/b");
}

TEST(PathMapping, takesRelativePathsFromTheDocumentAndLeavesLinkTargetsAlone)
{
    DMGProject project;
    project.backgroundImagePath = "art/../Background.png";
    project.items = {{.sourcePath = "My App.app", .displayName = "My App.app"},
                     {.displayName = "Applications", .symlinkTarget = "/Applications"}};
    project.overlayImages = {{.sourcePath = "/Applications/arrow.png"}};
    mapProjectPaths(project, "/projects/app", {{"/Applications", "/mapped"}});
    EXPECT_EQ(project.backgroundImagePath, "/projects/app/Background.png");
    EXPECT_EQ(project.volumeIconPath, "");
    EXPECT_EQ(project.items[0].sourcePath, "/projects/app/My App.app");
    EXPECT_EQ(project.items[1].sourcePath, "");
    EXPECT_EQ(project.items[1].symlinkTarget, "/Applications");
    EXPECT_EQ(project.overlayImages[0].sourcePath, "/mapped/arrow.png");
}

} // namespace
} // namespace velmora::cli
