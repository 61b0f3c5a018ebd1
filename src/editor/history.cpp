#include "editor/history.h"

#include <utility>

namespace velmora
{
namespace
{

template <typename... Texts>
std::size_t lengthOf(const Texts&... texts)
{
    return (texts.size() + ...);
}

std::size_t estimatedBytes(const DMGProject& project)
{
    std::size_t bytes = sizeof(DMGProject);
    bytes += lengthOf(project.volumeName, project.backgroundImagePath, project.volumeIconPath, project.licenseText,
                      project.encryptionPassword, project.codeSignIdentity, project.notaryProfile);
    for (const DMGItem& item : project.items)
        bytes += sizeof(item) + lengthOf(item.sourcePath, item.displayName, item.symlinkTarget);
    for (const DMGOverlayImage& overlay : project.overlayImages)
        bytes += sizeof(overlay) + lengthOf(overlay.sourcePath, overlay.builtInArrowID.value_or(std::string()));
    for (const DMGTextOverlay& text : project.textOverlays)
        bytes += sizeof(text) + lengthOf(text.identifier, text.text, text.fontName);
    return bytes;
}

} // namespace

History::History(DMGProject project, Limits limits) : m_limits(limits)
{
    push({.project = std::move(project)});
}

bool History::record(const DMGProject& project, const Selections& before, const Selections& after, const EditKey& key,
                     Time now)
{
    if (project == m_states[m_current].project)
        return false;
    const bool continues = isRunning(key) && now - m_lastEdit <= m_limits.pause;
    m_lastEdit = now;
    m_run = key;
    if (continues) {
        // A run has no states after it, and its own is never the saved one: undo, redo and saving end it.
        --m_current;
        forgetAfterCurrent();
        if (project == m_states[m_current].project) {
            endRun();
            return true;
        }
    } else {
        forgetAfterCurrent();
        m_states[m_current].left = before;
    }
    push({.project = project, .arrived = after, .left = after});
    m_current = m_states.size() - 1;
    keepWithinLimits();
    return true;
}

void History::amend(DMGProject project)
{
    endRun();
    State& state = m_states[m_current];
    m_bytes -= state.bytes;
    state.project = std::move(project);
    state.bytes = estimatedBytes(state.project);
    m_bytes += state.bytes;
}

std::optional<History::Snapshot> History::abandonRun(const EditKey& key)
{
    if (!isRunning(key))
        return std::nullopt;
    Snapshot before = undo();
    forgetAfterCurrent();
    return before;
}

History::Snapshot History::undo()
{
    endRun();
    --m_current;
    return {m_states[m_current].project, m_states[m_current].left};
}

History::Snapshot History::redo()
{
    endRun();
    ++m_current;
    return {m_states[m_current].project, m_states[m_current].arrived};
}

void History::markSaved()
{
    endRun();
    m_saved = m_current;
}

void History::push(State state)
{
    state.bytes = estimatedBytes(state.project);
    m_bytes += state.bytes;
    m_states.push_back(std::move(state));
}

void History::forgetAfterCurrent()
{
    while (canRedo()) {
        m_bytes -= m_states.back().bytes;
        m_states.pop_back();
    }
    if (m_saved && *m_saved > m_current)
        m_saved.reset();
}

void History::keepWithinLimits()
{
    std::size_t surplus = 0;
    while (m_states.size() - surplus > 2 &&
           (m_states.size() - surplus > m_limits.steps + 1 || m_bytes > m_limits.bytes)) {
        m_bytes -= m_states[surplus].bytes;
        ++surplus;
    }
    if (surplus == 0)
        return;
    m_states.erase(m_states.begin(), m_states.begin() + static_cast<std::ptrdiff_t>(surplus));
    m_current -= surplus;
    if (m_saved)
        m_saved = *m_saved >= surplus ? std::optional(*m_saved - surplus) : std::nullopt;
}

} // namespace velmora
