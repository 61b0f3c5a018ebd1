#pragma once

#include "pipeline/build_environment.h"

#include <chrono>
#include <functional>

namespace velmora
{

class Alerts;
class BuiltInArrowLibrary;
class Desktop;
class FilePanels;
class FontPanel;
class OverlayImageCache;
class SettingsStore;

/// What the editor takes from outside. Everything referred to outlives it.
struct EditorPorts {
    FilePanels& panels;
    Alerts& alerts;
    FontPanel& fontPanel;
    Desktop& desktop;
    SettingsStore& settings;
    OverlayImageCache& pictures;
    const BuiltInArrowLibrary& arrows;
    /// Makes the surroundings of one build, which stops when the token says so. Called on the main thread.
    std::function<BuildEnvironment(StopToken)> buildEnvironment;
    /// Tells the pauses in a run of typing.
    std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
};

} // namespace velmora
