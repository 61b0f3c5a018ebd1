// The records of a root window: what belongs to the window itself is kept under the name ".", an item's position under
// its own name.

#include "diskimage/base/error.h"
#include "diskimage/base/property_list.h"
#include "diskimage/finder/ds_store.h"
#include "diskimage/hfs/names.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace velmora::diskimage::finder
{
namespace
{

constexpr std::size_t positionSize = 16;

std::string boundsText(const WindowLayout& layout)
{
    // Stored frames have their origin at the bottom left of the screen.
    const std::int64_t left = layout.left;
    const std::int64_t top = layout.top;
    const std::int64_t bottom = layout.bottom;
    const std::int64_t y = std::max<std::int64_t>(0, referenceScreenHeight - bottom);
    return "{{" + std::to_string(left) + ", " + std::to_string(y) + "}, {" + std::to_string(layout.right - left) +
           ", " + std::to_string(bottom - top) + "}}";
}

Plist::Dict windowSettings(const WindowLayout& layout)
{
    const bool sidebar = layout.sidebarWidth > 0;
    return {{"ContainerShowSidebar", sidebar},
            {"PreviewPaneVisibility", false},
            {"ShowPathbar", false},
            {"ShowSidebar", sidebar},
            {"ShowStatusBar", layout.showStatusBar},
            {"ShowTabView", false},
            {"ShowToolbar", layout.showToolbar},
            {"SidebarWidth", layout.sidebarWidth},
            {"WindowBounds", boundsText(layout)}};
}

/// Every key matters: the Finder takes none of them when one is missing.
Plist::Dict iconSettings(const WindowLayout& layout, const std::optional<AliasTarget>& background)
{
    constexpr int whiteBackground = 0;
    constexpr int pictureBackground = 2;
    Plist::Dict dict = {{"arrangeBy", layout.arrangeBy},
                        {"backgroundColorBlue", 1.0},
                        {"backgroundColorGreen", 1.0},
                        {"backgroundColorRed", 1.0},
                        {"backgroundType", background ? pictureBackground : whiteBackground},
                        {"gridOffsetX", 0.0},
                        {"gridOffsetY", 0.0},
                        {"gridSpacing", 100.0},
                        {"iconSize", layout.iconSize},
                        {"labelOnBottom", layout.labelOnBottom},
                        {"showIconPreview", layout.showIconPreview},
                        {"showItemInfo", layout.showItemInfo},
                        {"textSize", layout.textSize},
                        {"viewOptionsVersion", 1}};
    if (background)
        dict["backgroundImageAlias"] = writeAlias(*background);
    return dict;
}

Bytes positionData(const ItemPosition& position)
{
    Bytes data;
    appendBE32(data, static_cast<std::uint32_t>(position.x));
    appendBE32(data, static_cast<std::uint32_t>(position.y));
    append(data, Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0});
    return data;
}

Bytes textBytes(std::string_view text)
{
    return {text.begin(), text.end()};
}

} // namespace

std::vector<DsRecord> layoutRecords(const WindowLayout& layout, const std::optional<AliasTarget>& background)
{
    if (layout.backgroundPath && !background)
        throw DiskImageError("The background picture \"" + *layout.backgroundPath + "\" has no alias.");
    Bytes icons = writeBinaryPlist(iconSettings(layout, background));
    constexpr std::size_t largestBlob = 4000; // what a node of the file can hold beside a record's own head
    if (background && icons.size() > largestBlob)
        throw DiskImageError("The names of the volume and of the background picture \"" + background->path.back() +
                             "\" are too long together: the window's settings cannot hold a reference to the picture.");
    std::vector<DsRecord> records = {
        {u".", "bwsp", "blob", writeBinaryPlist(windowSettings(layout))},
        {u".", "icvl", "type", textBytes("icnv")},
        {u".", "icvp", "blob", std::move(icons)},
        {u".", "vSrn", "long", {0, 0, 0, 1}},
        {u".", "vstl", "type", textBytes("icnv")},
    };
    for (const ItemPosition& position : layout.positions)
        records.push_back({hfs::storedName(position.name), "Iloc", "blob", positionData(position)});
    return records;
}

namespace
{

/// A whole number that a layout can hold; what lies beyond is cut to the nearest one.
std::int32_t bounded(double value)
{
    if (std::isnan(value))
        return 0;
    constexpr double low = std::numeric_limits<std::int32_t>::min();
    constexpr double high = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(std::trunc(value), low, high));
}

/// The number at the start of `text`, which loses it and the punctuation before it.
std::optional<double> takeNumber(std::string_view& text)
{
    text.remove_prefix(std::min(text.find_first_not_of("{}, "), text.size()));
    const std::size_t length = std::min(text.find_first_of("{}, "), text.size());
    const std::string_view number = text.substr(0, length);
    text.remove_prefix(length);
    // Fractions of a point do not matter, so that the whole part is enough.
    const std::string_view whole = number.substr(0, number.find('.'));
    std::int64_t value = 0;
    const auto [stop, error] = std::from_chars(whole.data(), whole.data() + whole.size(), value);
    if (error != std::errc() || stop != whole.data() + whole.size())
        return std::nullopt;
    return static_cast<double>(value);
}

/// "{{x, y}, {width, height}}", counted from the bottom left of the screen.
void readBounds(WindowLayout& layout, std::string_view text)
{
    std::array<double, 4> numbers{};
    for (double& number : numbers) {
        const auto next = takeNumber(text);
        if (!next)
            throw DiskImageError("The window's bounds in the .DS_Store file cannot be read.");
        number = *next;
    }
    const auto [x, y, width, height] = numbers;
    layout.left = bounded(x);
    layout.right = bounded(x + width);
    layout.bottom = bounded(referenceScreenHeight - y);
    layout.top = bounded(referenceScreenHeight - y - height);
}

void readFlag(const Plist& dict, std::string_view key, bool& flag)
{
    const Plist* value = dict.find(key);
    if (const bool* found = value ? value->as<bool>() : nullptr)
        flag = *found;
}

std::optional<double> numberIn(const Plist& dict, std::string_view key)
{
    const Plist* value = dict.find(key);
    if (const auto* real = value ? value->as<double>() : nullptr)
        return *real;
    if (const auto* integer = value ? value->as<std::int64_t>() : nullptr)
        return static_cast<double>(*integer);
    return std::nullopt;
}

void readWindowSettings(WindowLayout& layout, const Plist& dict)
{
    const Plist* bounds = dict.find("WindowBounds");
    if (const auto* text = bounds ? bounds->as<std::string>() : nullptr)
        readBounds(layout, *text);
    readFlag(dict, "ShowToolbar", layout.showToolbar);
    readFlag(dict, "ShowStatusBar", layout.showStatusBar);
    bool sidebar = true;
    readFlag(dict, "ShowSidebar", sidebar);
    layout.sidebarWidth = sidebar ? bounded(numberIn(dict, "SidebarWidth").value_or(0)) : 0;
}

void readIconSettings(ReadLayout& result, const Plist& dict)
{
    WindowLayout& layout = result.layout;
    const Plist* arrangement = dict.find("arrangeBy");
    if (const auto* text = arrangement ? arrangement->as<std::string>() : nullptr)
        layout.arrangeBy = *text;
    layout.iconSize = numberIn(dict, "iconSize").value_or(layout.iconSize);
    layout.textSize = numberIn(dict, "textSize").value_or(layout.textSize);
    readFlag(dict, "labelOnBottom", layout.labelOnBottom);
    readFlag(dict, "showIconPreview", layout.showIconPreview);
    readFlag(dict, "showItemInfo", layout.showItemInfo);
    const Plist* alias = dict.find("backgroundImageAlias");
    if (const auto* record = alias ? alias->as<Bytes>() : nullptr; record && numberIn(dict, "backgroundType") == 2) {
        result.background = readAlias(*record);
        layout.backgroundPath.emplace();
        for (const std::string& name : result.background->path)
            *layout.backgroundPath += "/" + name;
    }
}

} // namespace

ReadLayout readLayout(const std::vector<DsRecord>& records)
{
    ReadLayout result;
    for (const DsRecord& record : records) {
        const bool ofWindow = record.name == u"." && record.type == "blob";
        if (ofWindow && record.code == "bwsp")
            readWindowSettings(result.layout, readPlist(record.data));
        else if (ofWindow && record.code == "icvp")
            readIconSettings(result, readPlist(record.data));
        else if (record.code == "Iloc" && record.data.size() == positionSize)
            result.layout.positions.push_back({hfs::posixName(record.name),
                                               static_cast<std::int32_t>(getBE32(record.data.data())),
                                               static_cast<std::int32_t>(getBE32(record.data.data() + 4))});
    }
    return result;
}

} // namespace velmora::diskimage::finder
