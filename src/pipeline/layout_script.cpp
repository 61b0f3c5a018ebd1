#include "pipeline/layout_script.h"

#include "pipeline/whole_number.h"

#include <algorithm>
#include <string_view>

namespace velmora
{
namespace
{

/// For the inside of a string literal of the script: a name from a stranger must not end the literal.
std::string escaped(std::string_view name)
{
    std::string result;
    for (const char c : name) {
        switch (c) {
        case '"':
            result += "\\\"";
            break;
        case '\\':
            result += "\\\\";
            break;
        case '\n':
            result += "\\n";
            break;
        case '\r':
            result += "\\r";
            break;
        case '\t':
            result += "\\t";
            break;
        default:
            result += c;
        }
    }
    return result;
}

/// A file's name as the Finder shows it: what is ":" below is "/" to it, and ":" separates the parts of its paths.
std::string finderName(std::string posixName)
{
    std::replace(posixName.begin(), posixName.end(), ':', '/');
    return posixName;
}

std::string number(double value, const std::string& field)
{
    return std::to_string(wholeNumber(value, field));
}

std::string truth(bool value)
{
    return value ? "true" : "false";
}

/// Left, top, right, bottom of the outer window. The edges are truncated before they are added.
std::string bounds(const DMGProject& project)
{
    const auto farEdge = [](double nearEdge, double length, const std::string& field) {
        return number(nearEdge + wholeNumber(length, field), field);
    };
    const double left = wholeNumber(project.windowLeft, "windowLeft");
    const double top = wholeNumber(project.windowTop, "windowTop");
    return number(left, "windowLeft") + ", " + number(top, "windowTop") + ", " +
           farEdge(left, project.windowWidth, "windowWidth") + ", " +
           farEdge(top, project.windowHeight, "windowHeight");
}

std::string positionLines(const DMGProject& project)
{
    std::string lines;
    for (std::size_t i = 0; i < project.items.size(); ++i) {
        const DMGItem& item = project.items[i];
        if (item.hidden)
            continue;
        const std::string field = "items[" + std::to_string(i) + "].";
        lines += "    set position of item \"" + escaped(finderName(item.displayName)) + "\" of container window to {" +
                 number(item.x, field + "x") + ", " + number(item.y, field + "y") + "}\n";
    }
    return lines;
}

} // namespace

std::string layoutScript(const DMGProject& project, const std::string& diskName,
                         const std::optional<std::string>& backgroundName)
{
    const std::string background =
        backgroundName ? "    set background picture of theViewOptions to file \".background:" + *backgroundName + "\""
                       : "";
    return "tell application \"Finder\"\n"
           "    tell disk \"" +
           escaped(diskName) +
           "\"\n"
           "        open\n"
           "        set current view of container window to icon view\n"
           "        set toolbar visible of container window to false\n"
           "        set statusbar visible of container window to false\n"
           "        set sidebar width of container window to " +
           (project.showSidebar ? "180" : "0") +
           "\n"
           "        set the bounds of container window to {" +
           bounds(project) +
           "}\n"
           "        set theViewOptions to the icon view options of container window\n"
           "        set arrangement of theViewOptions to not arranged\n"
           "        set icon size of theViewOptions to " +
           number(project.iconSize, "iconSize") +
           "\n"
           "        set text size of theViewOptions to " +
           number(project.textSize, "textSize") +
           "\n"
           "        set label position of theViewOptions to " +
           (project.labelOnBottom ? "bottom" : "right") +
           "\n"
           "        set shows icon preview of theViewOptions to " +
           truth(project.showIconPreview) +
           "\n"
           "        set shows item info of theViewOptions to " +
           truth(project.showItemInfo) +
           "\n"
           "        " +
           background +
           "\n"
           "        " +
           positionLines(project) +
           "\n"
           "        close\n"
           "        open\n"
           "        update without registering applications\n"
           "        delay 1\n"
           "    end tell\n"
           "end tell";
}

} // namespace velmora
