#include "app/build/build_outcome_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

namespace velmora
{
namespace
{

/// A message of the builder that a person can do something about, by how it begins.
struct KnownFailure {
    std::string_view begin;
    BuildRemedy remedy;
    std::string_view advice; ///< in the place of the message's other lines, unless empty
};

constexpr std::array knownFailures{
    KnownFailure{"Missing source file:\n", BuildRemedy::showItem, ""},
    KnownFailure{"Add at least one file or folder", BuildRemedy::addFiles,
                 "An image needs something to hold: an application, a folder or a file."},
    KnownFailure{"Volume name cannot be empty.", BuildRemedy::volumeTab, "Enter a name in the Volume tab."},
    KnownFailure{"volumeName:", BuildRemedy::volumeTab, ""},
    KnownFailure{"manualSizeMB:", BuildRemedy::volumeTab, ""},
    KnownFailure{"Encryption is enabled but no password was set", BuildRemedy::volumeTab,
                 "Enter a password in the Volume tab, or choose “None”."},
    KnownFailure{"Code signing is enabled but no signing identity", BuildRemedy::volumeTab,
                 "Enter an identity in the Volume tab, or build without signing."},
    KnownFailure{"Notarization requires a keychain profile name", BuildRemedy::volumeTab, ""},
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

std::optional<Uuid> itemWithSource(const DMGProject& project, const std::string& path)
{
    for (const DMGItem& item : project.items) {
        if (!item.isSymlink() && item.sourcePath == path)
            return item.id;
    }
    return std::nullopt;
}

} // namespace

BuildFailure explainFailure(const std::string& message, const DMGProject& project)
{
    const std::size_t lineEnd = std::min(message.find('\n'), message.size());
    BuildFailure failure{.reason = message.substr(0, lineEnd)};
    if (lineEnd < message.size())
        failure.detail = message.substr(lineEnd + 1);
    while (!failure.detail.empty() && failure.detail.back() == '\n')
        failure.detail.pop_back();

    const auto known = std::find_if(knownFailures.begin(), knownFailures.end(),
                                    [&](const KnownFailure& k) { return message.rfind(k.begin, 0) == 0; });
    if (known == knownFailures.end())
        return failure;
    failure.reason = withoutPlace(failure.reason);
    failure.remedy = known->remedy;
    if (!known->advice.empty())
        failure.detail = known->advice;
    if (failure.remedy == BuildRemedy::showItem) {
        failure.item = itemWithSource(project, failure.detail);
        if (!failure.item)
            failure.remedy = BuildRemedy::none; // it has been removed meanwhile
    }
    return failure;
}

std::string sizeText(std::uintmax_t bytes)
{
    constexpr std::array units{"KB", "MB", "GB", "TB"};
    if (bytes < 1000)
        return std::to_string(bytes) + " bytes";
    double value = static_cast<double>(bytes) / 1000;
    std::size_t unit = 0;
    while (value >= 999.95 && unit + 1 < units.size()) {
        value /= 1000;
        ++unit;
    }
    char text[48];
    std::snprintf(text, sizeof text, "%.1f %s", value, units[unit]);
    return text;
}

} // namespace velmora
