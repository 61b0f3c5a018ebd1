#include "editor/change_name.h"

#include "editor/element_binding.h"

#include <algorithm>
#include <set>
#include <tuple>

namespace velmora
{
namespace
{

/// How the commands on one kind of element are called.
struct Nouns {
    const char* one;
    const char* many;
};

std::string named(const char* verb, std::size_t count, const Nouns& nouns)
{
    return std::string(verb) + " " + (count == 1 ? nouns.one : nouns.many);
}

template <typename Element>
std::size_t missingIn(const std::vector<Element>& elements, const std::vector<Element>& list)
{
    const auto missing = [&](const Element& e) { return findElement(list, e.id) == nullptr; };
    return static_cast<std::size_t>(std::count_if(elements.begin(), elements.end(), missing));
}

std::string edited(const DMGItem& before, const DMGItem& after)
{
    // A file that takes another's place may bring its name along.
    if (std::tie(before.sourcePath, before.symlinkTarget) != std::tie(after.sourcePath, after.symlinkTarget))
        return "Replace Item";
    if (before.displayName != after.displayName)
        return "Rename Item";
    if (before.hidden != after.hidden)
        return after.hidden ? "Leave Out Item" : "Include Item";
    return "Move Icon";
}

template <typename Box>
std::string movedOrResized(const Box& before, const Box& after, const std::string& noun)
{
    const Rect a = before.bounds();
    const Rect b = after.bounds();
    if (a == b)
        return {};
    return (a.width == b.width && a.height == b.height ? "Move " : "Resize ") + noun;
}

std::string edited(const DMGOverlayImage& before, const DMGOverlayImage& after)
{
    if (before.sourcePath != after.sourcePath)
        return "Replace Image";
    const std::string box = movedOrResized(before, after, "Image");
    return box.empty() ? "Replace Image" : box;
}

std::string edited(const DMGTextOverlay& before, const DMGTextOverlay& after)
{
    if (before.text != after.text)
        return "Edit Text";
    const std::string box = movedOrResized(before, after, "Text");
    return box.empty() ? "Change Text Style" : box;
}

template <typename Element>
std::string elementsChange(const std::vector<Element>& before, const std::vector<Element>& after, const Nouns& nouns)
{
    const std::size_t added = missingIn(after, before);
    const std::size_t removed = missingIn(before, after);
    if (added > 0 || removed > 0)
        return removed == 0 ? named("Add", added, nouns) : (added == 0 ? named("Remove", removed, nouns) : "");
    std::set<std::string> changes;
    for (const Element& element : after) {
        const Element* old = findElement(before, element.id);
        if (*old != element)
            changes.insert(edited(*old, element));
    }
    if (changes.empty())
        return std::string("Reorder ") + nouns.many;
    return changes.size() == 1 ? *changes.begin() : "";
}

struct Group {
    const char* name;
    bool differs;
};

std::vector<Group> settingsChanges(const DMGProject& a, const DMGProject& b)
{
    const auto differ = [&](auto... fields) { return ((a.*fields != b.*fields) || ...); };
    using P = DMGProject;
    return {
        {"Change Window Size", differ(&P::windowWidth, &P::windowHeight)},
        {"Change Window Position", differ(&P::windowLeft, &P::windowTop)},
        {"Change Icon Size", differ(&P::iconSize)},
        {"Change Icon Labels", differ(&P::textSize, &P::labelOnBottom)},
        {"Change Window Options", differ(&P::showSidebar, &P::showIconPreview, &P::showItemInfo)},
        {"Change Background",
         differ(&P::backgroundKind, &P::backgroundColor, &P::gradientStart, &P::gradientEnd, &P::gradientAngle,
                &P::backgroundImagePath, &P::backgroundImageFit, &P::backgroundImageScale)},
        {"Move Background", differ(&P::backgroundImageOffsetX, &P::backgroundImageOffsetY)},
        {"Change Volume Name", differ(&P::volumeName)},
        {"Change Volume Icon", differ(&P::volumeIconPath)},
        {"Change Volume Format",
         differ(&P::format, &P::filesystem, &P::imageSizeAutomatic, &P::manualSizeMB, &P::internetEnabled)},
        {"Change Encryption", differ(&P::encryption, &P::encryptionPassword)},
        {"Change Signing", differ(&P::signingMode, &P::codeSignIdentity, &P::notaryProfile)},
        {"Change License", differ(&P::licenseEnabled, &P::licenseText)},
    };
}

} // namespace

std::string changeName(const DMGProject& before, const DMGProject& after)
{
    std::vector<std::string> names;
    const auto compare = [&](const auto& a, const auto& b, const Nouns& nouns) {
        if (a != b)
            names.push_back(elementsChange(a, b, nouns));
    };
    compare(before.items, after.items, {"Item", "Items"});
    compare(before.overlayImages, after.overlayImages, {"Image", "Images"});
    compare(before.textOverlays, after.textOverlays, {"Text", "Texts"});
    for (const Group& group : settingsChanges(before, after)) {
        if (group.differs)
            names.emplace_back(group.name);
    }
    // Taking a picture puts it back to its place too.
    const bool pictureTaken = before.backgroundImagePath != after.backgroundImagePath;
    if (names.size() == 2 && pictureTaken && names[0] == "Change Background" && names[1] == "Move Background")
        names.pop_back();
    return names.size() == 1 ? names.front() : "";
}

} // namespace velmora
