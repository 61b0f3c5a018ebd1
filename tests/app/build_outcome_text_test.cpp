#include "app/build/build_outcome_text.h"

#include "pipeline/build_error.h"
#include "pipeline/credentials.h"
#include "pipeline/validation.h"

#include <gtest/gtest.h>

#include <limits>

namespace velmora
{
namespace
{

/// What the builder itself says about a project that it refuses, as the open project `later` explains it.
BuildFailure refusal(const DMGProject& project, const DMGProject& later)
{
    try {
        validate(project, "/tmp/out.dmg", "/tmp");
    } catch (const BuildError& error) {
        return explainFailure(error.message, problemField(project, error.field), later);
    }
    return {.reason = "nothing is wrong"};
}

TEST(BuildFailure, leadsToItsCause)
{
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    DMGProject sound;
    sound.items = {{.sourcePath = "/dev/null", .displayName = "Larkspur.app"},
                   {.displayName = "Applications", .symlinkTarget = "/Applications"}};
    sound.overlayImages = {{}, {}};
    sound.textOverlays = {{}, {}};
    const struct {
        const char* name;
        std::function<void(DMGProject&)> spoil;
        BuildFailure failure;
    } cases[] = {
        {"no items",
         [](DMGProject& p) { p.items.clear(); },
         {"Add at least one file or folder before building.",
          "An image needs something to hold: an application, a folder or a file.",
          BuildRemedy::addFiles,
          {}}},
        {"a file that is gone",
         [](DMGProject& p) { p.items[0].sourcePath = "/nowhere/Larkspur.app"; },
         {"Missing source file:", "/nowhere/Larkspur.app", BuildRemedy::showItem, sound.items[0].id}},
        {"a link far away",
         [](DMGProject& p) { p.items[1].x = 1e10; },
         {"items[1].x: the value is too large.", "", BuildRemedy::showItem, sound.items[1].id}},
        {"no name",
         [](DMGProject& p) { p.volumeName = "  "; },
         {"Volume name cannot be empty.", "Enter a name in the Volume tab.", BuildRemedy::volumeTab, {}}},
        {"another fault of the name",
         [](DMGProject& p) { p.volumeName = "a:b"; },
         {"volumeName: a volume name cannot hold “:”.", "", BuildRemedy::volumeTab, {}}},
        {"no size",
         [](DMGProject& p) { p.windowWidth = 1e10; },
         {"windowWidth: the value is too large.", "", BuildRemedy::layoutTab, {}}},
        {"no angle",
         [&](DMGProject& p) { p.gradientAngle = notANumber; },
         {"gradientAngle: the value is not a finite number.", "", BuildRemedy::layoutTab, {}}},
        {"no text size",
         [&](DMGProject& p) { p.textSize = notANumber; },
         {"textSize: the value is not a finite number.", "", BuildRemedy::textTab, {}}},
        {"an overlay nowhere",
         [&](DMGProject& p) { p.overlayImages[1].y = notANumber; },
         {"overlayImages[1].y: the value is not a finite number.", "", BuildRemedy::showOverlay,
          sound.overlayImages[1].id}},
        {"a caption without a color",
         [&](DMGProject& p) { p.textOverlays[0].color.r = notANumber; },
         {"textOverlays[0].color: the value is not a finite number.", "", BuildRemedy::showCaption,
          sound.textOverlays[0].id}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        DMGProject project = sound;
        c.spoil(project);
        const BuildFailure failure = refusal(project, project);
        EXPECT_EQ(failure.reason, c.failure.reason);
        EXPECT_EQ(failure, c.failure);
        if (c.failure.element) {
            EXPECT_EQ(refusal(project, {}).remedy, BuildRemedy::none) << "it has been removed meanwhile";
        }
    }
}

TEST(BuildFailure, leadsToWhatTheLastStepsLack)
{
    DMGProject project;
    project.encryption = ImageEncryption::aes256;
    const auto missing = missingPassword(project);
    ASSERT_TRUE(missing);
    EXPECT_EQ(explainFailure(missing->message, {.key = missing->field}, project),
              (BuildFailure{"Encryption is enabled but no password was set.",
                            "Enter a password in the Volume tab, or choose “None”.",
                            BuildRemedy::volumeTab,
                            {}}));

    EXPECT_EQ(explainFailure("hdiutil create failed:\nhdiutil: no space left\n\n", {}, project),
              (BuildFailure{"hdiutil create failed:", "hdiutil: no space left", BuildRemedy::none, {}}));
    EXPECT_EQ(explainFailure("", {}, project), BuildFailure{});
}

} // namespace
} // namespace velmora
