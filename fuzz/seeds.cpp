#include "seeds.h"

#include "diskimage/base/property_list.h"
#include "diskimage/finder/ds_store.h"
#include "diskimage/finder/icns.h"
#include "model/document.h"
#include "tools/support/png_file.h"

namespace velmora::fuzz
{

using namespace diskimage;
using namespace diskimage::finder;

namespace
{

Bytes bytesOf(std::string_view text)
{
    return {text.begin(), text.end()};
}

/// `count` times the same.
std::string repeated(std::string_view text, std::size_t count)
{
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

AliasTarget background()
{
    return {.volumeName = "Velmora \xC3\xA9",
            .volumeCreated = 1'600'000'000,
            .path = {".background", "picture:2.tiff"},
            .folderIds = {17},
            .fileId = 18,
            .fileCreated = 1'600'000'100};
}

WindowLayout sampleLayout(std::size_t items)
{
    WindowLayout layout{.left = 200, .top = 120, .right = 800, .bottom = 520, .sidebarWidth = 10, .iconSize = 80};
    layout.backgroundPath = "/.background/picture:2.tiff";
    for (std::size_t i = 0; i < items; ++i)
        layout.positions.push_back({"Item " + std::to_string(i), static_cast<std::int32_t>(100 * i), -5});
    return layout;
}

std::vector<Seed> documentSeeds()
{
    DMGProject project = DMGProject::fromTemplate("Name \xC3\xA9", {}, [](std::string_view) { return "/a.svg"; });
    DMGItem item;
    item.displayName = "App \"quoted\"\n";
    item.symlinkTarget = "/Applications";
    project.items = {item, item};
    const auto unnumber = [](auto& list) { // the same seeds every time
        for (auto& element : list)
            element.id = Uuid{};
    };
    unnumber(project.items);
    unnumber(project.overlayImages);
    unnumber(project.textOverlays);
    const std::string text = Document::encode(project);
    std::string legacy = text;
    const std::string flag = "\"iconUsesTopLeftCoords\": ";
    legacy.replace(legacy.find(flag) + flag.size(), 5, "true");
    std::string huge = legacy;
    const std::string iconSize = "\"iconSize\": ";
    huge.replace(huge.find(iconSize) + iconSize.size(), 2, "1.7e308");
    const std::string unknown = "{\"unknown\": ";
    return {{"project", bytesOf(text)},
            {"legacy", bytesOf(legacy)},
            {"huge", bytesOf(huge)},
            {"nested", bytesOf(unknown + repeated("[", 100) + repeated("]", 100) + "," + text.substr(1))}};
}

std::vector<Seed> propertyListSeeds()
{
    const Plist::Dict scalars = {{"flag", true},
                                 {"integer", -5},
                                 {"large", std::int64_t{1} << 40},
                                 {"real", 0.1},
                                 {"text", "a&b"},
                                 {"wide", "\xC3\xA9\xF0\x9F\x8D\x8E"},
                                 {"data", sampleBytes(40)}};
    Plist::Dict nested = scalars;
    nested.emplace("list", Plist::Array{Plist::Dict(scalars), Plist::Array{}, "x"});
    // An array of two references to itself: it would unfold without end.
    Bytes cycle = bytesOf(std::string_view("bplist00\xA2\0\0\x08", 12));
    cycle.resize(cycle.size() + 6);
    append(cycle, Bytes{1, 1});
    appendBE64(cycle, 1);
    appendBE64(cycle, 0);
    appendBE64(cycle, 11);
    const std::string open = "<plist version=\"1.0\">";
    return {{"binary", writeBinaryPlist(scalars)},
            {"xml", bytesOf(writeXmlPlist(nested))},
            {"cycle", std::move(cycle)},
            {"date", bytesOf(open + "<array><date>2020-01-01T00:00:00Z</date><integer>0x7f</integer></array></plist>")},
            {"deep", bytesOf(open + repeated("<array>", 200) + repeated("</array>", 200) + "</plist>")}};
}

std::vector<Seed> layoutScriptSeeds()
{
    const std::string_view script = R"(tell application "Finder"
  tell disk "Disk \"1\""
    open
    set current view of container window to icon view
    set toolbar visible of container window to false
    set statusbar visible of container window to false
    set sidebar width of container window to 0
    set the bounds of container window to {200, 120, 800, 520}
    set theViewOptions to the icon view options of container window
    set arrangement of theViewOptions to not arranged
    set arrangement of theViewOptions to snap to grid
    set icon size of theViewOptions to 80
    set text size of theViewOptions to 12
    set label position of theViewOptions to bottom
    set label position of theViewOptions to right
    set shows icon preview of theViewOptions to true
    set shows item info of theViewOptions to false
    set background picture of theViewOptions to file ".background:picture.tiff"
    set position of item "App/1.app" of container window to {150, 170}
    set position of item "app/1.APP" of container window to {-5, 2147483647}
    update without registering applications
    delay 2
    close
  end tell
end tell
)";
    return {{"script", bytesOf(script)}};
}

std::vector<Seed> aliasSeeds()
{
    AliasTarget inRoot = background();
    inRoot.path = {"picture.tiff"};
    inRoot.folderIds = {};
    AliasTarget withoutIds = background();
    withoutIds.fileId = 0;
    withoutIds.folderIds = {};
    return {{"folder", writeAlias(background())}, {"root", writeAlias(inRoot)}, {"ids", writeAlias(withoutIds)}};
}

std::vector<Seed> dsStoreSeeds()
{
    const Bytes file = writeDsStore(layoutRecords(sampleLayout(3), background()));
    // The root names itself as its only child.
    constexpr std::size_t rootNode = 4 + 0x1000;
    Bytes cycle = file;
    putBE32(cycle.data() + rootNode, 2);
    putBE32(cycle.data() + rootNode + 4, 0);
    return {{"layout", file},
            {"levels", writeDsStore(layoutRecords(sampleLayout(150), background()))},
            {"cycle", std::move(cycle)}};
}

std::vector<Seed> iconSeeds()
{
    const IconPixels pixels{16, 16, sampleBytes(16 * 16 * 4)};
    Bytes picture = bytesOf("\x89PNG\r\n\x1A\n");
    return {{"icons", writeIcns({{"ic04", encodeArgb(pixels)},
                                 {"s8mk", Bytes(16 * 16, 0x80)},
                                 {"is32", Bytes(sampleBytes(16 * 16 * 3))},
                                 {"ic10", std::move(picture)}})},
            {"runs", writeIcns({{"is32", Bytes(12, 0xFF)}})}};
}

std::vector<Seed> pngSeeds()
{
    Bytes file = bytesOf("\x89PNG\r\n\x1A\n");
    const auto chunk = [&](std::string_view type, const Bytes& data) {
        appendBE32(file, static_cast<std::uint32_t>(data.size()));
        append(file, type);
        append(file, data);
        appendBE32(file, 0); // the target puts the checksum right
    };
    chunk("IHDR", {0, 0, 0, 1, 0, 0, 0, 1, 8, 6, 0, 0, 0});
    chunk("pHYs", {0, 0, 11, 19, 0, 0, 11, 19, 1});
    chunk("IDAT", {1, 2, 3});
    chunk("IEND", {});
    return {{"picture", std::move(file)}};
}

} // namespace

Bytes bytesOf(const Source& source)
{
    return source.read(0, static_cast<std::size_t>(source.size()));
}

Bytes sampleBytes(std::size_t size)
{
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(1 + i / 7 % 251);
    return bytes;
}

std::vector<Seed> seedsOf(std::string_view target)
{
    constexpr struct {
        std::string_view target;
        std::vector<Seed> (*seeds)();
    } all[] = {
        {"alias", aliasSeeds},
        {"document", documentSeeds},
        {"ds_store", dsStoreSeeds},
        {"hfs_edit", volumeSeeds},
        {"hfs_volume", volumeSeeds},
        {"icns", iconSeeds},
        {"layout_script", layoutScriptSeeds},
        {"partitions", partitionSeeds},
        {"png", pngSeeds},
        {"property_list", propertyListSeeds},
        {"udif", imageSeeds},
        {"udif_tables", imageTableSeeds},
    };
    for (const auto& [name, seeds] : all) {
        if (name == target)
            return seeds();
    }
    return {};
}

} // namespace velmora::fuzz
