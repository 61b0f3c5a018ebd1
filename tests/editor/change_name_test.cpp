#include "editor/change_name.h"

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

TEST(ChangeName, saysWhatACommandDid)
{
    DMGProject base = DMGProject::fromTemplate("Notes", {{.displayName = "Notes.app"}, {.displayName = "Read Me"}},
                                               [](std::string_view) { return std::optional<std::string>("/a.png"); });
    ASSERT_FALSE(base.overlayImages.empty());
    ASSERT_FALSE(base.textOverlays.empty());
    const struct {
        const char* name;
        void (*change)(DMGProject&);
        const char* says;
    } cases[] = {
        {"nothing", [](DMGProject&) {}, ""},
        {"one file", [](DMGProject& p) { p.items.emplace_back(); }, "Add Item"},
        {"two files", [](DMGProject& p) { p.items.resize(p.items.size() + 2); }, "Add Items"},
        {"a file gone", [](DMGProject& p) { p.items.pop_back(); }, "Remove Item"},
        {"an icon dragged", [](DMGProject& p) { p.items[0].x += 1; }, "Move Icon"},
        {"two icons moved", [](DMGProject& p) { p.items[0].x = p.items[1].x = 7; }, "Move Icon"},
        {"one moved, one renamed",
         [](DMGProject& p) {
             p.items[0].x += 1;
             p.items[1].displayName = "x";
         },
         ""},
        {"one dragged up the list", [](DMGProject& p) { std::swap(p.items[0], p.items[1]); }, "Reorder Items"},
        {"left out", [](DMGProject& p) { p.items[0].hidden = true; }, "Leave Out Item"},
        {"a corner pulled", [](DMGProject& p) { p.overlayImages[0].width += 1; }, "Resize Image"},
        {"the caption moved", [](DMGProject& p) { p.textOverlays[0].y += 1; }, "Move Text"},
        {"the caption written", [](DMGProject& p) { p.textOverlays[0].text = "Hello"; }, "Edit Text"},
        {"its font", [](DMGProject& p) { p.textOverlays[0].fontSize = 20; }, "Change Text Style"},
        {"both window sides", [](DMGProject& p) { p.windowWidth = p.windowHeight = 700; }, "Change Window Size"},
        {"the picture dragged", [](DMGProject& p) { p.backgroundImageOffsetX = 4; }, "Move Background"},
        {"everything reset",
         [](DMGProject& p) {
             p.windowWidth = 900;
             p.format = DMGFormat::readOnly;
         },
         ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        DMGProject changed = base;
        c.change(changed);
        EXPECT_EQ(changeName(base, changed), c.says);
    }
    // A new picture starts in the middle again.
    base.backgroundImagePath = "/old.png";
    base.backgroundImageOffsetX = 9;
    DMGProject changed = base;
    changed.backgroundImagePath = "/new.png";
    changed.backgroundImageOffsetX = 0;
    EXPECT_EQ(changeName(base, changed), "Change Background");
}

} // namespace
} // namespace velmora
