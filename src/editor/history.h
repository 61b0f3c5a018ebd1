#pragma once

#include "editor/selections.h"
#include "model/project.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace velmora
{

/// What an edit changes. Edits of one key that follow each other without a pause are one run and one undo step.
struct EditKey {
    std::string field{}; ///< empty: a step of its own
    std::optional<Uuid> element{};
    bool operator==(const EditKey&) const = default;
};

/// The states that a document went through, as whole project values, and which of them is on disk. A plain value.
class History
{
public:
    using Time = std::chrono::steady_clock::time_point;

    struct Limits {
        std::size_t steps = 200;
        /// Estimated bytes of all states. The newest step can be undone even when it alone is larger.
        std::size_t bytes = std::size_t{64} * 1024 * 1024;
        std::chrono::milliseconds pause{1000}; ///< a longer one ends a run
    };
    struct Snapshot {
        DMGProject project{};
        Selections selections{};
    };

    /// Begins with `project`, which counts as saved.
    explicit History(DMGProject project, Limits limits);
    explicit History(DMGProject project) : History(std::move(project), Limits{}) {}

    /// Adds the state that an edit led to, or puts it in the place of the newest one when the edit continues the run of
    /// `key`. States that could have been redone are forgotten. `before` and `after` are the selections round the edit.
    /// A project equal to the current one adds nothing; a run that ends up where it began takes its step back. Returns
    /// whether anything changed.
    bool record(const DMGProject& project, const Selections& before, const Selections& after, const EditKey& key,
                Time now);
    /// Puts `project` in the place of the current state, without a step and without touching the saved mark.
    void amend(DMGProject project);

    [[nodiscard]] bool isRunning(const EditKey& key) const { return !key.field.empty() && m_run == key; }
    void endRun() { m_run = {}; }
    /// Takes back the step of the run of `key`, for good, and returns the state before it; nothing when the run has
    /// made no step.
    std::optional<Snapshot> abandonRun(const EditKey& key);

    [[nodiscard]] bool canUndo() const { return m_current > 0; }
    [[nodiscard]] bool canRedo() const { return m_current + 1 < m_states.size(); }
    [[nodiscard]] const DMGProject& current() const { return m_states[m_current].project; }
    /// The states that undo() and redo() lead to; null when there is none.
    [[nodiscard]] const DMGProject* previous() const { return canUndo() ? &m_states[m_current - 1].project : nullptr; }
    [[nodiscard]] const DMGProject* next() const { return canRedo() ? &m_states[m_current + 1].project : nullptr; }
    /// Moves one state back, or forward, and returns it with the selections it is to be shown with. Only when possible.
    Snapshot undo();
    Snapshot redo();

    /// The current state is what the file holds.
    void markSaved();
    [[nodiscard]] bool isAtSaved() const { return m_saved == m_current; }

private:
    struct State {
        DMGProject project{};
        Selections arrived{}; ///< after the step that led here: what redo shows
        Selections left{};    ///< before the step that led away: what undo shows
        std::size_t bytes = 0;
    };

    void push(State state);
    void forgetAfterCurrent();
    void keepWithinLimits();

    Limits m_limits{};
    std::vector<State> m_states{}; ///< oldest first, never empty
    std::size_t m_current = 0;
    std::optional<std::size_t> m_saved = 0; ///< nothing when that state is no longer kept
    std::size_t m_bytes = 0;
    EditKey m_run{};
    Time m_lastEdit{};
};

} // namespace velmora
