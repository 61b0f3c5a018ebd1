#include "app/build/build_outcome_text.h"

#include "pipeline/build_error.h"
#include "pipeline/validation.h"

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

/// What the builder itself says about a project that it refuses.
std::string refusal(const DMGProject& project)
{
    try {
        validate(project, "/tmp/out.dmg", "/tmp");
    } catch (const BuildError& error) {
        return error.message;
    }
    return "nothing is wrong";
}

TEST(BuildFailure, leadsToItsCause)
{
    DMGProject project;
    EXPECT_EQ(explainFailure(refusal(project), project).remedy, BuildRemedy::addFiles);

    const DMGItem item{.sourcePath = "/nowhere/Larkspur.app", .displayName = "Larkspur.app"};
    project.items = {item};
    EXPECT_EQ(explainFailure(refusal(project), project),
              (BuildFailure{"Missing source file:", "/nowhere/Larkspur.app", BuildRemedy::showItem, item.id}));
    EXPECT_EQ(explainFailure(refusal(project), {}).remedy, BuildRemedy::none) << "the item has been removed meanwhile";

    project.items[0].sourcePath = "/";
    project.volumeName = "  ";
    EXPECT_EQ(explainFailure(refusal(project), project).remedy, BuildRemedy::volumeTab);

    const BuildFailure password =
        explainFailure("Encryption is enabled but no password was set (Volume tab).", project);
    EXPECT_EQ(password.reason, "Encryption is enabled but no password was set.");
    EXPECT_EQ(password.remedy, BuildRemedy::volumeTab);

    EXPECT_EQ(explainFailure("hdiutil create failed:\nhdiutil: no space left\n\n", project),
              (BuildFailure{"hdiutil create failed:", "hdiutil: no space left", BuildRemedy::none, {}}));
    EXPECT_EQ(explainFailure("", project), BuildFailure{});
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
