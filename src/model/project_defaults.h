#pragma once

#include "model/project.h"

/// The factory layout of a new disk-image window. Content points.
namespace velmora::DMGProjectDefaults
{

inline constexpr double windowWidth = 600;
inline constexpr double windowHeight = 360;
inline constexpr double windowLeft = 200;
inline constexpr double windowTop = 120;
inline constexpr double iconSize = 80;
inline constexpr double textSize = 12;
inline constexpr double appIconX = 169;
inline constexpr double applicationsX = 450;
inline constexpr CodableColor gradientStart{0.55, 0.55, 0.58, 1};
inline constexpr CodableColor gradientEnd{1, 1, 1, 1};
inline constexpr double gradientAngle = 0;
inline constexpr std::string_view defaultArrowID = "arrow_pro_swoosh";
inline constexpr double defaultArrowX = 245.67;
inline constexpr double defaultArrowY = 145.507;
inline constexpr double defaultArrowWidth = 152.919;
inline constexpr double defaultArrowHeight = 40.9853;

/// The default position of the `index`-th file (from 0): the first at the vertical centre, further ones in a
/// two-column grid that stays inside the window.
Point appSlot(int index, const DMGProject& project);
/// A new Applications link for the project's window.
DMGItem applicationsItem(const DMGProject& project);
/// The items on their default slots (hidden ones keep their places), with an Applications link appended when no visible
/// one is there.
std::vector<DMGItem> repositionItems(std::vector<DMGItem> items, const DMGProject& project);
/// The default install arrow at its fixed place, or nothing when its file is not available.
std::optional<DMGOverlayImage> makeDefaultArrowOverlay(const ArrowFileFinder& arrowFile);
/// A list of the default arrow, or an empty list.
std::vector<DMGOverlayImage> defaultOverlays(const ArrowFileFinder& arrowFile);
/// The default caption, named "textObject" + `index`.
DMGTextOverlay makeDefaultInstallText(Size contentSize, int index);
/// A list of the caption with index 1.
std::vector<DMGTextOverlay> defaultTextOverlays(Size contentSize);

} // namespace velmora::DMGProjectDefaults
