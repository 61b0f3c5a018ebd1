#pragma once

#include "model/color.h"
#include "model/enums.h"
#include "model/geometry.h"
#include "model/uuid.h"

#include <optional>
#include <string>

namespace velmora
{

/// A picture burnt into the background, identified by `id`. Its box is in content points.
struct DMGOverlayImage {
    Uuid id = Uuid::random();
    std::string sourcePath{}; ///< absolute path of the picture; for a built-in arrow the path of its file
    std::optional<std::string> builtInArrowID{};
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    double originalWidth = 0;  ///< natural width in points; 0 or less means unknown
    double originalHeight = 0; ///< natural height in points; 0 or less means unknown

    [[nodiscard]] Rect bounds() const { return {x, y, width, height}; }
    /// Stores the origin and the absolute width and height.
    void setBounds(const Rect& rect);
    [[nodiscard]] Point center() const { return {x + width * 0.5, y + height * 0.5}; }
    [[nodiscard]] double effectiveOriginalWidth() const { return originalWidth > 0 ? originalWidth : width; }
    [[nodiscard]] double effectiveOriginalHeight() const { return originalHeight > 0 ? originalHeight : height; }
    /// Whether the box differs from the natural size by more than half a point in either direction.
    [[nodiscard]] bool canResetToOriginalSize() const;

    bool operator==(const DMGOverlayImage&) const = default;
};

/// A caption burnt into the background, identified by `id`; `identifier` is the readable name shown in the editor.
/// Its box is in content points.
struct DMGTextOverlay {
    Uuid id = Uuid::random();
    std::string identifier = "textObject";
    std::string text = "Drag & Drop";       ///< may hold line breaks
    std::string fontName = "HelveticaNeue"; ///< PostScript name
    double fontSize = 12;                   ///< points
    CodableColor color{0, 0, 0, 1};
    TextHorizontalAlignment horizontalAlignment = TextHorizontalAlignment::center;
    TextVerticalAlignment verticalAlignment = TextVerticalAlignment::middle;
    bool shadowEnabled = false;
    CodableColor shadowColor{0, 0, 0, 1};
    double shadowAngle = 315; ///< degrees, counter-clockwise from the right
    double shadowOffset = 3;  ///< points
    double shadowBlur = 3;    ///< blur radius in points
    double shadowOpacity = 0.25;
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] Rect bounds() const { return {x, y, width, height}; }
    /// Stores the origin and the absolute width and height.
    void setBounds(const Rect& rect);

    bool operator==(const DMGTextOverlay&) const = default;
};

} // namespace velmora
