#pragma once

#include "model/project.h"

#include <concepts>
#include <type_traits>

/// Which keys the records of a project have in a document: one list each, used for writing and for reading. The order
/// is the order of the keys in the file, ascending by bytes.
namespace velmora
{

template <typename T, typename Record>
concept Is = std::same_as<std::remove_const_t<T>, Record>;

template <typename Visitor>
void visitFields(Is<CodableColor> auto& color, Visitor&& visit)
{
    visit("a", color.a);
    visit("b", color.b);
    visit("g", color.g);
    visit("r", color.r);
}

template <typename Visitor>
void visitFields(Is<DMGItem> auto& item, Visitor&& visit)
{
    visit("displayName", item.displayName);
    visit("hidden", item.hidden);
    visit("id", item.id);
    visit("sourcePath", item.sourcePath);
    visit("symlinkTarget", item.symlinkTarget);
    visit("x", item.x);
    visit("y", item.y);
}

template <typename Visitor>
void visitFields(Is<DMGOverlayImage> auto& overlay, Visitor&& visit)
{
    visit("builtInArrowID", overlay.builtInArrowID);
    visit("height", overlay.height);
    visit("id", overlay.id);
    visit("originalHeight", overlay.originalHeight);
    visit("originalWidth", overlay.originalWidth);
    visit("sourcePath", overlay.sourcePath);
    visit("width", overlay.width);
    visit("x", overlay.x);
    visit("y", overlay.y);
}

template <typename Visitor>
void visitFields(Is<DMGTextOverlay> auto& overlay, Visitor&& visit)
{
    visit("color", overlay.color);
    visit("fontName", overlay.fontName);
    visit("fontSize", overlay.fontSize);
    visit("height", overlay.height);
    visit("horizontalAlignment", overlay.horizontalAlignment);
    visit("id", overlay.id);
    visit("identifier", overlay.identifier);
    visit("shadowAngle", overlay.shadowAngle);
    visit("shadowBlur", overlay.shadowBlur);
    visit("shadowColor", overlay.shadowColor);
    visit("shadowEnabled", overlay.shadowEnabled);
    visit("shadowOffset", overlay.shadowOffset);
    visit("shadowOpacity", overlay.shadowOpacity);
    visit("text", overlay.text);
    visit("verticalAlignment", overlay.verticalAlignment);
    visit("width", overlay.width);
    visit("x", overlay.x);
    visit("y", overlay.y);
}

template <typename Visitor>
void visitFields(Is<DMGProject> auto& project, Visitor&& visit)
{
    visit("backgroundColor", project.backgroundColor);
    visit("backgroundImageFit", project.backgroundImageFit);
    visit("backgroundImageOffsetX", project.backgroundImageOffsetX);
    visit("backgroundImageOffsetY", project.backgroundImageOffsetY);
    visit("backgroundImagePath", project.backgroundImagePath);
    visit("backgroundImageScale", project.backgroundImageScale);
    visit("backgroundKind", project.backgroundKind);
    visit("codeSignIdentity", project.codeSignIdentity);
    visit("encryption", project.encryption);
    visit("encryptionPassword", project.encryptionPassword);
    visit("filesystem", project.filesystem);
    visit("format", project.format);
    visit("gradientAngle", project.gradientAngle);
    visit("gradientEnd", project.gradientEnd);
    visit("gradientStart", project.gradientStart);
    visit("iconSize", project.iconSize);
    visit("iconUsesTopLeftCoords", project.iconUsesTopLeftCoords);
    visit("imageSizeAutomatic", project.imageSizeAutomatic);
    visit("internetEnabled", project.internetEnabled);
    visit("items", project.items);
    visit("labelOnBottom", project.labelOnBottom);
    visit("licenseEnabled", project.licenseEnabled);
    visit("licenseText", project.licenseText);
    visit("manualSizeMB", project.manualSizeMB);
    visit("notaryProfile", project.notaryProfile);
    visit("overlayImages", project.overlayImages);
    visit("showIconPreview", project.showIconPreview);
    visit("showItemInfo", project.showItemInfo);
    visit("showSidebar", project.showSidebar);
    visit("signingMode", project.signingMode);
    visit("textOverlays", project.textOverlays);
    visit("textSize", project.textSize);
    visit("volumeIconPath", project.volumeIconPath);
    visit("volumeName", project.volumeName);
    visit("windowHeight", project.windowHeight);
    visit("windowLeft", project.windowLeft);
    visit("windowTop", project.windowTop);
    visit("windowWidth", project.windowWidth);
}

} // namespace velmora
