#include "editor/app_state.h"

#include "editor/build_session.h"
#include "editor/file_names.h"
#include "editor/file_types.h"
#include "platform/file_tree.h"
#include "platform/ports/desktop.h"
#include "render/overlay_images.h"

#include <QCoreApplication>
#include <QEvent>

#include <exception>
#include <utility>

namespace velmora
{

namespace fs = std::filesystem;

void AppState::build()
{
    if (m_isBuilding)
        return;
    const auto output = m_ports.panels.save({.proposedName = proposedFileName(m_project.volumeName, "dmg"),
                                             .type = FileTypes::diskImage(),
                                             .extension = "dmg"});
    // The panel lets events through, and with them another build command.
    if (!output || m_isBuilding)
        return;
    m_buildOutput = *output;
    set(m_isBuilding, true, &AppState::isBuildingChanged);
    set(m_buildLog, std::string(), &AppState::buildLogChanged);
    m_buildErrorField = {};
    set(m_buildError, {}, &AppState::buildErrorChanged);
    set(m_lastOutputURL, {}, &AppState::lastOutputURLChanged);
    set(m_buildWarnings, {}, &AppState::buildWarningsChanged);
    migrateLegacyIconCoordinates();
    m_ports.pictures.forgetChanged();
    startBuild(*output);
}

void AppState::startBuild(const fs::path& output)
{
    // What the worker tells is posted: it arrives here in order, and not at all once this object is gone.
    const auto post = [this](std::function<void()> call) {
        QMetaObject::invokeMethod(this, std::move(call), Qt::QueuedConnection);
    };
    BuildSession::Listener listener{
        .line = [this, post](const std::string& line) { post([this, line] { appendToLog(line + "\n"); }); },
        .step = [this,
                 post](BuildStep step,
                       double fraction) { post([this, step, fraction] { emit buildStepChanged(step, fraction); }); },
        .finished =
            [this, post, output](const BuildOutcome& outcome) {
                post([this, output, outcome] { finishBuild(output, outcome); });
            },
    };
    try {
        m_build = std::make_unique<BuildSession>(m_project, output, m_ports.buildEnvironment, std::move(listener));
    } catch (const std::exception& error) {
        finishBuild(output, {.error = error.what()});
    }
}

void AppState::finishBuild(const fs::path& output, const BuildOutcome& outcome)
{
    m_build.reset();
    m_buildErrorField = outcome.field;
    set(m_isBuilding, false, &AppState::isBuildingChanged);
    set(m_buildWarnings, outcome.warnings, &AppState::buildWarningsChanged);
    for (const std::string& warning : outcome.warnings) {
        const std::string line = "⚠️ " + warning + "\n";
        if (m_buildLog.find(line) == std::string::npos)
            appendToLog(line);
    }
    if (outcome.error) {
        set(m_buildError, outcome.error, &AppState::buildErrorChanged);
        appendToLog("\n❌ " + *outcome.error + "\n");
    } else {
        set(m_lastOutputURL, {output}, &AppState::lastOutputURLChanged);
    }
    emit buildFinished();
}

void AppState::stopBuild()
{
    if (!m_build)
        return;
    m_build->stop();
    // The end of the build is waiting in the queue.
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

void AppState::appendToLog(const std::string& text)
{
    m_buildLog += text;
    emit buildLogChanged();
    emit buildLogAppended(text);
}

void AppState::revealLastOutput()
{
    if (m_lastOutputURL)
        m_ports.desktop.reveal(*m_lastOutputURL);
}

void AppState::saveBuildLogViaPanel()
{
    const auto file = m_ports.panels.save(
        {.proposedName = m_buildOutput.stem().string() + ".log", .type = FileTypes::log(), .extension = "log"});
    if (!file)
        return;
    try {
        writeFileAtomically(*file, m_buildLog);
    } catch (const std::exception& error) {
        presentError(std::string("Could not save the log:\n") + error.what());
    }
}

} // namespace velmora
