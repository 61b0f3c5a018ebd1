#include "app/ports/dialog_file_panels.h"

#include "app/operating_system.h"
#include "app/ports/files_and_folders_dialog.h"
#include "app/ports/message_alerts.h"
#include "app/text.h"
#include "platform/folders.h"

#include <QApplication>
#include <QFileDialog>

#include <memory>
#include <system_error>

namespace velmora
{

namespace fs = std::filesystem;

namespace
{

QStringList nameFilters(const std::vector<FileType>& types)
{
    QStringList filters;
    for (const FileType& type : types) {
        QStringList patterns;
        for (const std::string& extension : type.extensions)
            patterns << QStringLiteral("*.") + qtText(extension);
        if (patterns.isEmpty())
            patterns << QStringLiteral("*");
        filters << qtText(type.name) + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) + QLatin1Char(')');
    }
    return filters;
}

std::unique_ptr<QFileDialog> makeOpenDialog(const OpenPanelRequest& request)
{
    QWidget* parent = QApplication::activeWindow();
    // The system's panel on a Mac takes bundles for files. Other desktops' panels offer either files or folders.
    if (request.folders && !isMac())
        return std::make_unique<FilesAndFoldersDialog>(parent, request.multiple);
    auto dialog = std::make_unique<QFileDialog>(parent);
    dialog->setFileMode(request.multiple ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    return dialog;
}

std::vector<fs::path> run(QFileDialog& dialog, fs::path& folder)
{
    dialog.setDirectory(qtPath(folder.empty() ? Folders::home() : folder));
    if (dialog.exec() != QDialog::Accepted)
        return {};
    std::vector<fs::path> files;
    for (const QString& file : dialog.selectedFiles())
        files.push_back(nativePath(file));
    if (!files.empty())
        folder = files.front().parent_path();
    return files;
}

bool isTaken(const fs::path& file)
{
    std::error_code ignored;
    return fs::exists(fs::symlink_status(file, ignored));
}

bool confirmReplacing(const fs::path& file)
{
    return MessageAlerts().show({.title = "“" + file.filename().string() + "” already exists.",
                                 .text = "Do you want to replace it?\n" + file.parent_path().string(),
                                 .buttons = {"Replace", "Cancel"}}) == 0;
}

} // namespace

fs::path withExtension(const fs::path& file, const std::string& extension)
{
    const QString suffix = QLatin1Char('.') + qtText(extension);
    if (extension.empty() || qtPath(file.filename()).endsWith(suffix, Qt::CaseInsensitive))
        return file;
    return fs::path(file.string() + "." + extension);
}

std::vector<fs::path> DialogFilePanels::open(const OpenPanelRequest& request)
{
    const auto dialog = makeOpenDialog(request);
    dialog->setObjectName(QStringLiteral("openPanel"));
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setWindowTitle(request.message.empty() ? QStringLiteral("Open") : qtText(request.message));
    if (!request.types.empty())
        dialog->setNameFilters(nameFilters(request.types));
    return run(*dialog, m_folder);
}

std::optional<fs::path> DialogFilePanels::save(const SavePanelRequest& request)
{
    QFileDialog dialog(QApplication::activeWindow());
    dialog.setObjectName(QStringLiteral("savePanel"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setWindowTitle(QStringLiteral("Save"));
    dialog.setNameFilters(nameFilters({request.type}));
    // The dialogs add an extension only to names without any ("Notes 2.1" has one to them), so their question would be
    // about another file than the one that is written.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.selectFile(qtText(request.proposedName));
    for (;;) {
        const auto chosen = run(dialog, m_folder);
        if (chosen.empty())
            return std::nullopt;
        const fs::path file = withExtension(chosen.front(), request.extension);
        // The Mac's panel has asked by itself about the name it was given.
        const bool asked = isMac() && file == chosen.front();
        if (asked || !isTaken(file) || confirmReplacing(file))
            return file;
        dialog.selectFile(qtPath(file.filename()));
    }
}

} // namespace velmora
