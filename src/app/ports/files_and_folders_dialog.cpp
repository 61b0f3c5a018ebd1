#include "app/ports/files_and_folders_dialog.h"

#include <QAbstractItemView>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>

namespace velmora
{

FilesAndFoldersDialog::FilesAndFoldersDialog(QWidget* parent, bool multiple) : QFileDialog(parent)
{
    setOption(QFileDialog::DontUseNativeDialog);
    setFileMode(QFileDialog::Directory); // with files shown, as ShowDirsOnly is off
    if (multiple) {
        for (QAbstractItemView* view : findChildren<QAbstractItemView*>()) {
            if (view->objectName() == QLatin1String("listView") || view->objectName() == QLatin1String("treeView"))
                view->setSelectionMode(QAbstractItemView::ExtendedSelection);
        }
    }
    // The dialog disables its button for files; queued, so that this comes after it.
    if (auto* name = findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
        connect(name, &QLineEdit::textChanged, this, &FilesAndFoldersDialog::updateOpenButton, Qt::QueuedConnection);
    connect(this, &QFileDialog::currentChanged, this, &FilesAndFoldersDialog::updateOpenButton, Qt::QueuedConnection);
    setNameFilter(QStringLiteral("All Files and Folders (*)"));
    setLabelText(QFileDialog::Accept, QStringLiteral("&Open"));
    setLabelText(QFileDialog::FileName, QStringLiteral("&Name:"));
}

bool FilesAndFoldersDialog::choiceExists() const
{
    const QStringList files = selectedFiles();
    return !files.isEmpty() &&
           std::all_of(files.begin(), files.end(), [](const QString& file) { return QFileInfo::exists(file); });
}

void FilesAndFoldersDialog::updateOpenButton()
{
    if (auto* box = findChild<QDialogButtonBox*>()) {
        if (QPushButton* button = box->button(QDialogButtonBox::Open))
            button->setEnabled(choiceExists());
    }
}

void FilesAndFoldersDialog::accept()
{
    if (choiceExists())
        QDialog::accept();
}

} // namespace velmora
