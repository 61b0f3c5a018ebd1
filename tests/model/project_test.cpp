#include "model/icon_layout.h"
#include "model/project.h"
#include "model/project_defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace velmora
{
namespace
{

const ArrowFileFinder knowsArrows = [](std::string_view id) { return "/arrows/" + std::string(id) + ".png"; };

DMGItem file(const char* name)
{
    return {.sourcePath = std::string("/files/") + name, .displayName = name, .x = 7, .y = 7};
}

TEST(DMGProject, startsFromTheTemplate)
{
    const DMGProject project = DMGProject::starter(knowsArrows);
    EXPECT_EQ(project.volumeName, "My App");
    EXPECT_EQ(project.contentSize(), (Size{600, 332}));
    EXPECT_EQ(project.gradientStart, (CodableColor{0.55, 0.55, 0.58, 1}));
    EXPECT_EQ(project.gradientEnd, (CodableColor{1, 1, 1, 1}));
    EXPECT_EQ(project.gradientAngle, 0);
    ASSERT_EQ(project.items.size(), 1U);
    EXPECT_EQ(project.items[0].symlinkTarget, "/Applications");
    EXPECT_EQ(project.items[0].position(), (Point{450, 166}));
    ASSERT_EQ(project.overlayImages.size(), 1U);
    EXPECT_EQ(project.overlayImages[0].sourcePath, "/arrows/arrow_pro_swoosh.png");
    EXPECT_EQ(project.overlayImages[0].bounds(), (Rect{245.67, 145.507, 152.919, 40.9853}));
    EXPECT_FALSE(project.overlayImages[0].canResetToOriginalSize());
    ASSERT_EQ(project.textOverlays.size(), 1U);
    EXPECT_EQ(project.textOverlays[0].bounds(), (Rect{120, 272, 360, 36}));
    EXPECT_EQ(project.textOverlays[0].identifier, "textObject1");

    DMGProject withoutArrow = DMGProject::starter({});
    EXPECT_TRUE(withoutArrow.overlayImages.empty());
    withoutArrow.overlayImages = project.overlayImages;
    withoutArrow.items = project.items; // each with identifiers of its own
    withoutArrow.textOverlays = project.textOverlays;
    EXPECT_EQ(withoutArrow, project) << "nothing else differs";
}

TEST(DMGProject, goesBackToTheTemplateWithItsContent)
{
    DMGProject project{.volumeName = "Kept", .format = DMGFormat::readWrite, .encryptionPassword = "secret"};
    project.items = {file("app")};
    const Uuid id = project.items[0].id;
    project.applyDefaultSettingsPreservingContent(knowsArrows);
    EXPECT_EQ(project.volumeName, "Kept");
    EXPECT_EQ(project.format, DMGFormat::compressed);
    EXPECT_EQ(project.encryptionPassword, "");
    ASSERT_EQ(project.items.size(), 2U);
    EXPECT_EQ(project.items[0].id, id);
    EXPECT_EQ(project.items[0].position(), (Point{169, 166}));
}

TEST(DMGProjectDefaults, placesFilesInAGridInsideTheWindow)
{
    const struct {
        double width;
        int index;
        Point slot;
    } cases[] = {{600, 0, {169, 166}}, {600, 1, {319, 120}}, {600, 2, {169, 240}},
                 {600, 3, {319, 240}}, {600, 4, {169, 272}}, {300, 1, {220, 120}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.index);
        EXPECT_EQ(DMGProjectDefaults::appSlot(c.index, {.windowWidth = c.width, .windowHeight = 360}), c.slot);
    }
}

TEST(DMGProjectDefaults, repositionsVisibleItemsAndAddsAMissingLink)
{
    const DMGProject project{.windowHeight = 360};
    DMGItem hidden = file("hidden");
    hidden.hidden = true;
    DMGItem link = DMGItem::applicationsLink({1, 2});
    const auto placed = DMGProjectDefaults::repositionItems({file("app"), hidden, link, file("second")}, project);
    ASSERT_EQ(placed.size(), 4U);
    EXPECT_EQ(placed[0].position(), (Point{169, 166}));
    EXPECT_EQ(placed[1].position(), (Point{7, 7}));
    EXPECT_EQ(placed[2].position(), (Point{450, 166}));
    EXPECT_EQ(placed[3].position(), (Point{319, 120}));

    link.hidden = true;
    EXPECT_EQ(DMGProjectDefaults::repositionItems({link}, project).size(), 2U);
    link = DMGItem::applicationsLink({1, 2});
    link.symlinkTarget = "/Applications/";
    const auto other = DMGProjectDefaults::repositionItems({link}, project);
    ASSERT_EQ(other.size(), 2U) << "a link to another folder, to the letter";
    EXPECT_EQ(other[0].position(), (Point{450, 166}));
}

TEST(DMGProjectDefaults, centersTheCaption)
{
    const struct {
        double content;
        double width;
        double x;
    } cases[] = {{1000, 360, 320}, {500, 325, 87.5}, {250, 200, 25}, {200, 200, 0}};
    for (const auto& c : cases) {
        const auto caption = DMGProjectDefaults::makeDefaultInstallText({c.content, 100}, 12);
        EXPECT_EQ(caption.bounds(), (Rect{c.x, 40, c.width, 36})) << c.content;
        EXPECT_EQ(caption.identifier, "textObject12");
    }
}

TEST(IconLayout, makesRoomForTheLabel)
{
    EXPECT_EQ(IconLayout::slotSize(80, 12, true), (Size{136, 102}));
    EXPECT_EQ(IconLayout::slotSize(32, 12, false), (Size{64, 32}));
    const DMGItem item{.x = 100, .y = 100};
    EXPECT_EQ(IconLayout::graphicCenter(item, {.textSize = 12}), (Point{100, 93}));
    EXPECT_EQ(IconLayout::graphicCenter(item, {.textSize = 12, .labelOnBottom = false}), (Point{100, 100}));
}

TEST(DMGOverlayImage, knowsWhenItHasItsNaturalSize)
{
    DMGOverlayImage overlay{.width = 100, .height = 50, .originalWidth = 100, .originalHeight = 50};
    overlay.setBounds({10, 20, -100.5, 50});
    EXPECT_EQ(overlay.bounds(), (Rect{10, 20, 100.5, 50}));
    EXPECT_FALSE(overlay.canResetToOriginalSize());
    overlay.width = 100.51;
    EXPECT_TRUE(overlay.canResetToOriginalSize());
    overlay.originalWidth = 0; // unknown
    EXPECT_FALSE(overlay.canResetToOriginalSize());
    overlay.height = 49.4;
    EXPECT_TRUE(overlay.canResetToOriginalSize());
}

template <typename E>
void expectConsistentTable(std::size_t count)
{
    std::set<std::string_view> raws;
    ASSERT_EQ(allCases<E>().size(), count);
    for (std::size_t i = 0; i < count; ++i) {
        const E value = allCases<E>()[i];
        EXPECT_EQ(value, static_cast<E>(i)) << "rows stand in the order of the cases";
        EXPECT_EQ(fromRawValue<E>(rawValue(value)), value);
        EXPECT_FALSE(displayName(value).empty());
        raws.insert(rawValue(value));
    }
    EXPECT_EQ(raws.size(), count);
    EXPECT_EQ(fromRawValue<E>(""), std::nullopt);
}

TEST(Enumerations, haveOneRowACase)
{
    expectConsistentTable<DMGFormat>(4);
    expectConsistentTable<FilesystemKind>(2);
    expectConsistentTable<SigningMode>(3);
    expectConsistentTable<ImageEncryption>(3);
    expectConsistentTable<BackgroundKind>(3);
    expectConsistentTable<BackgroundImageFit>(3);
    expectConsistentTable<TextHorizontalAlignment>(4);
    expectConsistentTable<TextVerticalAlignment>(3);
    EXPECT_EQ(fromRawValue<SigningMode>("Don't Code Sign or Notarize"), SigningMode::none);
    EXPECT_EQ(hdiutilValue(ImageEncryption::none), std::nullopt);
    EXPECT_EQ(hdiutilValue(ImageEncryption::aes128), "AES-128");
}

TEST(Uuid, readsItsCanonicalFormOnly)
{
    const char* const canonical = "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0";
    const auto uuid = Uuid::parse("0f1e2d3c-4B5A-6978-8796-a5b4c3d2e1f0");
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuid->toString(), canonical);
    EXPECT_EQ(uuid->bytes[4], 0x4B);
    for (const char* const wrong : {"", "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F", "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F00",
                                    "0F1E2D3C4-B5A-6978-8796-A5B4C3D2E1F0", "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1FG",
                                    "{F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F}", "0F1E2D3C+4B5A-6978-8796-A5B4C3D2E1F0"})
        EXPECT_EQ(Uuid::parse(wrong), std::nullopt) << wrong;

    const std::string random = Uuid::random().toString();
    EXPECT_EQ(random[14], '4');
    EXPECT_NE(std::string("89AB").find(random[19]), std::string::npos);
    EXPECT_NE(Uuid::random(), Uuid::random());
}

} // namespace
} // namespace velmora
