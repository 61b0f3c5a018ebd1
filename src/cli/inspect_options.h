#pragma once

#include <QStringList>

#include <optional>
#include <string>

namespace velmora::cli
{

enum class InspectMode { summary, list, cat, background };

/// What velmora-inspect was asked to do.
struct InspectOptions {
    std::string image{};
    InspectMode mode = InspectMode::summary;
    std::string argument{}; ///< `cat`: the path in the volume; `background`: the PNG file to write
};

/// Options, or a text to print and the exit status to end with (0 help and version, 2 wrong usage).
struct ParsedInspectLine {
    std::optional<InspectOptions> options{};
    std::string text{};
    int exitStatus = 0;
};

ParsedInspectLine parseInspectOptions(const QStringList& arguments);

} // namespace velmora::cli
