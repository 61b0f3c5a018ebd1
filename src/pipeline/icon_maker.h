#pragma once

#include "pipeline/build_run.h"
#include "render/picture.h"

#include <QByteArray>

#include <optional>
#include <string>

/// Makes Apple icon files from pictures.
namespace velmora::IconMaker
{

/// The whole picture stretched into a square of `pixels` by `pixels`: RGBA PNG bytes at 72 dots per inch. Nothing when
/// it cannot be made.
std::optional<QByteArray> pngData(const Picture& picture, int pixels);

/// Renders the ten standard sizes and has the icon compiler pack them into `destination`, a path as the tools know it.
/// Failures are warnings. Throws BuildError only when a stop is requested.
void writeICNS(BuildRun& run, const Picture& picture, const std::string& destination);

} // namespace velmora::IconMaker
