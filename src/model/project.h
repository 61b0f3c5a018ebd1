#pragma once

#include "model/color.h"
#include "model/enums.h"
#include "model/geometry.h"
#include "model/item.h"
#include "model/overlays.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora
{

/// Answers where the picture file of a built-in arrow lies, or nothing when it has none. Handed in from above, because
/// the arrow library draws and the model does not.
using ArrowFileFinder = std::function<std::optional<std::string>(std::string_view arrowID)>;

/// The whole description of one disk image: what goes in, how its window looks, how it is produced. A plain value;
/// the record imposes no ranges.
struct DMGProject {
    std::string volumeName = "My App";
    DMGFormat format = DMGFormat::compressed;
    FilesystemKind filesystem = FilesystemKind::hfs;
    double windowWidth = 600;  ///< points, outer
    double windowHeight = 400; ///< points, outer, title bar included
    double windowLeft = 200;   ///< screen points
    double windowTop = 120;    ///< screen points from the top of the screen
    double iconSize = 80;      ///< points
    double textSize = 12;      ///< label text, points
    bool labelOnBottom = true;
    bool showSidebar = false;
    bool showIconPreview = false;
    bool showItemInfo = false;
    BackgroundKind backgroundKind = BackgroundKind::gradient;
    CodableColor backgroundColor = CodableColor::defaultBackground();
    CodableColor gradientStart = CodableColor::gradientTop();
    CodableColor gradientEnd = CodableColor::gradientBottom();
    double gradientAngle = 270;        ///< degrees, counter-clockwise from the right
    std::string backgroundImagePath{}; ///< absolute; empty means none
    BackgroundImageFit backgroundImageFit = BackgroundImageFit::fill;
    double backgroundImageScale = 1;
    double backgroundImageOffsetX = 0; ///< points, to the right
    double backgroundImageOffsetY = 0; ///< points, upward
    std::string volumeIconPath{};      ///< absolute; empty means none
    std::vector<DMGItem> items{};
    std::vector<DMGOverlayImage> overlayImages{}; ///< drawn in order
    std::vector<DMGTextOverlay> textOverlays{};   ///< drawn in order, above the images
    bool licenseEnabled = false;
    std::string licenseText{};
    bool imageSizeAutomatic = true;
    std::int64_t manualSizeMB = 100;
    ImageEncryption encryption = ImageEncryption::none;
    std::string encryptionPassword{};
    bool internetEnabled = false;
    SigningMode signingMode = SigningMode::none;
    std::string codeSignIdentity{};
    std::string notaryProfile{};
    bool iconUsesTopLeftCoords = false; ///< item positions are in the legacy top-left convention

    /// Height of the Finder window's title bar in points.
    static constexpr double titleBarHeight = 28;

    /// A starter project: factory window, gradient, caption, the default arrow when `arrowFile` knows its file, and the
    /// given items on the default slots with an Applications link.
    static DMGProject fromTemplate(std::string volumeName, std::vector<DMGItem> items,
                                   const ArrowFileFinder& arrowFile);
    /// The project with which every new document begins: fromTemplate("My App", {}).
    static DMGProject starter(const ArrowFileFinder& arrowFile);

    /// The window's content area in points: the coordinate space of every item and overlay.
    [[nodiscard]] Size contentSize() const { return {windowWidth, windowHeight - titleBarHeight}; }

    /// Converts item positions from the legacy top-left convention to anchors, once; a project without the flag stays
    /// as it is.
    void migrateLegacyIconCoordinatesIfNeeded();
    /// Becomes fromTemplate with its own volume name and items.
    void applyDefaultSettingsPreservingContent(const ArrowFileFinder& arrowFile);

    bool operator==(const DMGProject&) const = default;
};

} // namespace velmora
