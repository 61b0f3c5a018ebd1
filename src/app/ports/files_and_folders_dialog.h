#pragma once

#include <QFileDialog>

namespace velmora
{

/// Qt's own file dialog in which files and folders can be chosen alike: an application bundle is a folder to every
/// desktop but its own. A double click still enters a folder.
class FilesAndFoldersDialog : public QFileDialog
{
    Q_OBJECT

public:
    FilesAndFoldersDialog(QWidget* parent, bool multiple);

protected:
    void accept() override;

private:
    void updateOpenButton();
    [[nodiscard]] bool choiceExists() const;
};

} // namespace velmora
