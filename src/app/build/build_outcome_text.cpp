#include "app/build/build_outcome_text.h"
#include "l10n/labels.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace velmora
{
namespace
{

/// Where a person finds a field of the project.
struct FieldPlace {
    std::string_view key;
    BuildRemedy remedy;
    /// What there is to do when the field is empty, in the place of the message's other lines; may be empty itself.
    std::string_view advice = {};
};

constexpr std::array fieldPlaces{
    FieldPlace{"items", BuildRemedy::addFiles, Labels::imageNeedsItems},
    FieldPlace{"volumeName", BuildRemedy::volumeTab, Labels::enterNameInVolume},
    FieldPlace{"encryptionPassword", BuildRemedy::volumeTab, Labels::enterPasswordInVolume},
    FieldPlace{"codeSignIdentity", BuildRemedy::volumeTab, Labels::enterIdentityInVolume},
    FieldPlace{"notaryProfile", BuildRemedy::volumeTab},
    FieldPlace{"manualSizeMB", BuildRemedy::volumeTab},
    FieldPlace{"volumeIconPath", BuildRemedy::volumeTab},
    FieldPlace{"textSize", BuildRemedy::textTab},
    FieldPlace{"windowLeft", BuildRemedy::layoutTab},
    FieldPlace{"windowTop", BuildRemedy::layoutTab},
    FieldPlace{"windowWidth", BuildRemedy::layoutTab},
    FieldPlace{"windowHeight", BuildRemedy::layoutTab},
    FieldPlace{"iconSize", BuildRemedy::layoutTab},
    FieldPlace{"backgroundImagePath", BuildRemedy::layoutTab},
    FieldPlace{"backgroundImageScale", BuildRemedy::layoutTab},
    FieldPlace{"backgroundImageOffsetX", BuildRemedy::layoutTab},
    FieldPlace{"backgroundImageOffsetY", BuildRemedy::layoutTab},
    FieldPlace{"backgroundColor", BuildRemedy::layoutTab},
    FieldPlace{"gradientStart", BuildRemedy::layoutTab},
    FieldPlace{"gradientEnd", BuildRemedy::layoutTab},
    FieldPlace{"gradientAngle", BuildRemedy::layoutTab},
};

/// "Encryption … was set (Volume tab)." without the place, which the button beside it says.
std::string withoutPlace(std::string reason)
{
    for (const std::string_view place : {" (Volume tab)", " (Output tab)"}) {
        if (const std::size_t at = reason.find(place); at != std::string::npos)
            reason.erase(at, place.size());
    }
    return reason;
}

/// How to show an element, if it is still there.
BuildRemedy remedyFor(const Uuid& element, const DMGProject& project)
{
    const auto isIn = [&element](const auto& list) {
        return std::any_of(list.begin(), list.end(), [&](const auto& other) { return other.id == element; });
    };
    if (isIn(project.items))
        return BuildRemedy::showItem;
    if (isIn(project.overlayImages))
        return BuildRemedy::showOverlay;
    return isIn(project.textOverlays) ? BuildRemedy::showCaption : BuildRemedy::none;
}

} // namespace

BuildFailure explainFailure(const std::string& message, const ProblemField& field, const DMGProject& project)
{
    const std::size_t lineEnd = std::min(message.find('\n'), message.size());
    BuildFailure failure{.reason = message.substr(0, lineEnd)};
    if (lineEnd < message.size())
        failure.detail = message.substr(lineEnd + 1);
    while (!failure.detail.empty() && failure.detail.back() == '\n')
        failure.detail.pop_back();

    if (field.element) {
        failure.remedy = remedyFor(*field.element, project);
        if (failure.remedy != BuildRemedy::none)
            failure.element = field.element;
        return failure;
    }
    const auto place = std::find_if(fieldPlaces.begin(), fieldPlaces.end(),
                                    [&field](const FieldPlace& known) { return known.key == field.key; });
    if (place == fieldPlaces.end())
        return failure;
    failure.reason = withoutPlace(failure.reason);
    failure.remedy = place->remedy;
    // A message that begins with the key is about what the field holds, and says so itself.
    if (!place->advice.empty() && !message.starts_with(field.key))
        failure.detail = place->advice;
    return failure;
}

} // namespace velmora
