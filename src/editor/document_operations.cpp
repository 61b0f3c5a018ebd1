#include "editor/app_state.h"

#include "editor/document_file.h"
#include "editor/file_names.h"
#include "editor/file_types.h"
#include "model/document.h"
#include "model/project_paths.h"
#include "platform/file_tree.h"
#include "platform/ports/alerts.h"

#include <exception>
#include <system_error>

namespace velmora
{

namespace fs = std::filesystem;

void AppState::newProject()
{
    store(DMGProject::starter(arrowFinder()));
    beginHistory();
    clearSelections();
    setDocumentURL({});
    setDirty(false);
    set(m_buildLog, std::string(), &AppState::buildLogChanged);
    set(m_lastOutputURL, {}, &AppState::lastOutputURLChanged);
}

void AppState::open()
{
    const auto files = m_ports.panels.open({.types = {FileTypes::project()}});
    if (!files.empty())
        openProject(files.front());
}

void AppState::openProject(const fs::path& file)
{
    DMGProject project;
    try {
        project = Document::decode(readFile(file, Document::maximumSize));
        changeSourcePaths(project, [&](const std::string& path) { return pathFrom(file.parent_path(), path); });
    } catch (const std::exception& error) {
        return presentError(std::string("Could not open project:\n") + error.what());
    }
    store(std::move(project));
    beginHistory();
    setDocumentURL(file);
    clearSelections();
    setDirty(false);
    rememberDocument(file);
}

void AppState::openHandedOver(const fs::path& file)
{
    std::error_code error; // an unusable path stays empty, which openProject() refuses
    if (confirmClose())
        openProject(fs::absolute(file, error));
}

void AppState::save()
{
    if (m_documentURL)
        write(fs::path(*m_documentURL));
    else
        saveAs();
}

void AppState::saveAs()
{
    const auto file = m_ports.panels.save({.proposedName = proposedFileName(m_project.volumeName, ext),
                                           .type = FileTypes::project(),
                                           .extension = std::string(ext)});
    if (!file)
        return;
    setDocumentURL(*file);
    write(*file);
}

void AppState::write(const fs::path& file)
{
    endGesture();
    try {
        const bool secret = !m_project.encryptionPassword.empty();
        writeDocumentFile(file, Document::encode(m_project),
                          secret ? DocumentAccess::ownerOnly : DocumentAccess::ordinary);
    } catch (const std::exception& error) {
        return presentError(std::string("Could not save project:\n") + error.what());
    }
    m_history.markSaved();
    setDirty(false);
    rememberDocument(file);
}

void AppState::setDocumentURL(std::optional<fs::path> file)
{
    set(m_documentURL, std::move(file), &AppState::documentURLChanged);
}

void AppState::rememberDocument(const fs::path& file)
{
    m_recent.add(file);
    emit recentDocumentsChanged();
}

void AppState::clearRecentDocuments()
{
    m_recent.clear();
    emit recentDocumentsChanged();
}

void AppState::presentError(const std::string& message)
{
    m_ports.alerts.show({.title = "Velmora", .text = message});
}

bool AppState::confirmClose()
{
    endGesture();
    if (!m_isDirty)
        return true;
    const std::size_t answer =
        m_ports.alerts.show({.title = "Do you want to save the changes made to “" + documentName() + "”?",
                             .text = "Your changes will be lost if you don't save them.",
                             .buttons = {"Save", "Don't Save", "Cancel"}});
    if (answer == 0)
        save();
    // Saving may have failed, or nobody chose a place.
    return answer == 1 || (answer == 0 && !m_isDirty);
}

bool AppState::confirmQuit()
{
    if (m_isBuilding) {
        const std::size_t answer =
            m_ports.alerts.show({.title = "A disk image is being built.",
                                 .text = "If you quit now, the build is stopped and its image is not finished.",
                                 .buttons = {"Stop Build and Quit", "Cancel"}});
        if (answer != 0)
            return false;
    }
    if (!confirmClose())
        return false;
    stopBuild();
    return true;
}

} // namespace velmora
