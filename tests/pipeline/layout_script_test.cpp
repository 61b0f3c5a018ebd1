#include "pipeline/layout_script.h"

#include "diskimage/finder/layout_script.h"
#include "pipeline/build_error.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace velmora
{
namespace
{

DMGProject sampleProject()
{
    DMGProject project;
    project.windowWidth = 640;
    project.windowHeight = 420;
    project.items = {{.sourcePath = "/x/My App.app", .displayName = "My App.app", .x = 169, .y = 172.5},
                     {.sourcePath = "/x/secret", .displayName = "secret", .x = 1, .y = 1, .hidden = true},
                     DMGItem::applicationsLink({-10.7, 20.2})};
    project.items.push_back({.sourcePath = "/x/notes", .displayName = "Notes 1:2", .x = 7}); // the Finder shows 1/2
    return project;
}

TEST(LayoutScript, saysTheWholeWindow)
{
    EXPECT_EQ(layoutScript(sampleProject(), "My App 1", "background.tiff"),
              R"(tell application "Finder"
    tell disk "My App 1"
        open
        set current view of container window to icon view
        set toolbar visible of container window to false
        set statusbar visible of container window to false
        set sidebar width of container window to 0
        set the bounds of container window to {200, 120, 840, 540}
        set theViewOptions to the icon view options of container window
        set arrangement of theViewOptions to not arranged
        set icon size of theViewOptions to 80
        set text size of theViewOptions to 12
        set label position of theViewOptions to bottom
        set shows icon preview of theViewOptions to false
        set shows item info of theViewOptions to false
            set background picture of theViewOptions to file ".background:background.tiff"
            set position of item "My App.app" of container window to {169, 172}
    set position of item "Applications" of container window to {-10, 20}
    set position of item "Notes 1/2" of container window to {7, 0}

        close
        open
        update without registering applications
        delay 1
    end tell
end tell)");
}

TEST(LayoutScript, saysTheOtherChoicesAndLeavesOutWhatIsNotThere)
{
    DMGProject project;
    project.windowLeft = 100.9;
    project.windowWidth = 600.9;
    project.windowTop = -0.5;
    project.windowHeight = 400.99;
    project.iconSize = 127.9;
    project.textSize = 10.2;
    project.labelOnBottom = false;
    project.showSidebar = true;
    project.showIconPreview = true;
    project.showItemInfo = true;
    const std::string blank(8, ' ');
    EXPECT_EQ(layoutScript(project, "D", {}),
              R"(tell application "Finder"
    tell disk "D"
        open
        set current view of container window to icon view
        set toolbar visible of container window to false
        set statusbar visible of container window to false
        set sidebar width of container window to 180
        set the bounds of container window to {100, 0, 700, 400}
        set theViewOptions to the icon view options of container window
        set arrangement of theViewOptions to not arranged
        set icon size of theViewOptions to 127
        set text size of theViewOptions to 10
        set label position of theViewOptions to right
        set shows icon preview of theViewOptions to true
        set shows item info of theViewOptions to true
)" + blank + "\n" +
                  blank + R"(
        close
        open
        update without registering applications
        delay 1
    end tell
end tell)");
}

TEST(LayoutScript, keepsNamesInsideTheirLiterals)
{
    const struct {
        const char* name;
        std::string given;
        std::string written;
    } cases[] = {
        {"quote", "a\"b", "a\\\"b"},
        {"backslash", "a\\", "a\\\\"},
        {"escaped quote", "\\\"", "\\\\\\\""},
        {"command", "x\" of container window to {0, 0}\ndo shell script \"touch p\"\n--",
         "x\\\" of container window to {0, 0}\\ndo shell script \\\"touch p\\\"\\n--"},
        {"control characters", "a\r\n\tb", "a\\r\\n\\tb"},
        {"anything else", "Zoë’s “App” 日本 'x'", "Zoë’s “App” 日本 'x'"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        DMGProject project;
        project.items = {{.sourcePath = "/x", .displayName = c.given, .x = 1, .y = 2}};
        const std::string script = layoutScript(project, c.given, {});
        EXPECT_NE(script.find("    tell disk \"" + c.written + "\"\n"), std::string::npos) << script;
        EXPECT_NE(script.find("    set position of item \"" + c.written + "\" of container window to {1, 2}\n"),
                  std::string::npos)
            << script;
        // The reader of such scripts gets the very name back, and nothing else.
        const auto parsed = diskimage::finder::parseLayoutScript(script);
        EXPECT_EQ(parsed.diskName, c.given);
        ASSERT_EQ(parsed.layout.positions.size(), 1u);
        EXPECT_EQ(parsed.layout.positions[0].name, c.given);
    }
}

TEST(LayoutScript, refusesNumbersThatTheFinderCannotKeep)
{
    const double nan = std::nan("");
    const double huge = 2147483648.0;
    const struct {
        const char* field;
        std::function<void(DMGProject&)> spoil;
    } cases[] = {
        {"windowLeft", [&](DMGProject& p) { p.windowLeft = nan; }},
        {"windowTop", [&](DMGProject& p) { p.windowTop = -huge - 1; }},
        {"windowWidth", [&](DMGProject& p) { p.windowWidth = huge; }},
        {"windowWidth", [&](DMGProject& p) { p.windowLeft = p.windowWidth = 1.5e9; }},
        {"windowHeight", [&](DMGProject& p) { p.windowHeight = std::numeric_limits<double>::infinity(); }},
        {"iconSize", [&](DMGProject& p) { p.iconSize = 1e308; }},
        {"textSize", [&](DMGProject& p) { p.textSize = nan; }},
        {"items[2].x", [&](DMGProject& p) { p.items[2].x = huge; }},
        {"items[0].y", [&](DMGProject& p) { p.items[0].y = -nan; }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.field);
        DMGProject project = sampleProject();
        c.spoil(project);
        try {
            layoutScript(project, "D", {});
            ADD_FAILURE() << "accepted";
        } catch (const BuildError& error) {
            EXPECT_TRUE(error.message.starts_with(std::string(c.field) + ": ")) << error.message;
        }
    }
    DMGProject project = sampleProject();
    project.items[1].x = nan; // hidden
    project.items[0].x = 2147483647.9;
    project.items[0].y = -2147483648.9;
    EXPECT_NE(layoutScript(project, "D", {}).find("{2147483647, -2147483648}"), std::string::npos);
}

} // namespace
} // namespace velmora
