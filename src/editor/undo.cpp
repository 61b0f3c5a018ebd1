// How changes of the project become steps that can be undone.

#include "editor/app_state.h"
#include "editor/change_name.h"

#include <utility>

namespace velmora
{

AppState::UndoStep::UndoStep(AppState& state, const EditKey& key) : m_state(state)
{
    OpenStep& step = state.m_step;
    if (step.depth++ > 0)
        return;
    step.key = state.m_gesture ? state.m_gesture->key : key;
    step.before = state.m_selections;
    // A command ends a run of typing even when it turns out to change nothing.
    if (!state.m_history.isRunning(step.key))
        state.m_history.endRun();
}

AppState::UndoStep::~UndoStep()
{
    if (--m_state.m_step.depth == 0)
        m_state.recordStep();
}

void AppState::recordStep()
{
    // A gesture may pause as long as it likes.
    const History::Time now = m_gesture ? m_gesture->began : m_ports.now();
    if (m_history.record(m_project, m_step.before, m_selections, m_step.key, now))
        emit historyChanged();
}

std::string AppState::undoName() const
{
    return canUndo() ? changeName(*m_history.previous(), m_history.current()) : std::string();
}

std::string AppState::redoName() const
{
    return canRedo() ? changeName(m_history.current(), *m_history.next()) : std::string();
}

void AppState::undo()
{
    endGesture();
    if (canUndo())
        showState(m_history.undo());
}

void AppState::redo()
{
    endGesture();
    if (canRedo())
        showState(m_history.redo());
}

void AppState::showState(const History::Snapshot& snapshot)
{
    const Selections& shown = snapshot.selections;
    // Selected overlays and captions show in background mode alone.
    const bool showsOverlay =
        (shown.overlay && shown.overlay != m_selections.overlay) || (shown.text && shown.text != m_selections.text);
    store(snapshot.project);
    setSelection(shown.item);
    setOverlaySelection(shown.overlay);
    setTextSelection(shown.text);
    if (showsOverlay)
        setEditorMode(EditorMode::background);
    setDirty(!m_history.isAtSaved());
    emit historyChanged();
}

void AppState::endTypingRun()
{
    if (!m_gesture)
        m_history.endRun();
}

void AppState::beginGesture()
{
    endGesture();
    m_history.endRun();
    const std::string name = "gesture " + std::to_string(++m_gestures);
    m_gesture = {.key = {name, {}}, .began = m_ports.now(), .wasDirty = m_isDirty};
}

void AppState::endGesture()
{
    if (std::exchange(m_gesture, std::nullopt))
        m_history.endRun();
}

void AppState::cancelGesture()
{
    const std::optional<Gesture> gesture = std::exchange(m_gesture, std::nullopt);
    if (!gesture)
        return;
    if (const auto before = m_history.abandonRun(gesture->key)) {
        store(before->project);
        emit historyChanged();
    }
    m_history.endRun();
    setDirty(gesture->wasDirty);
}

void AppState::beginHistory()
{
    m_gesture.reset();
    m_history = History(m_project);
    emit historyChanged();
}

} // namespace velmora
