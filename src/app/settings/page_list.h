#pragma once

#include <QListWidget>

namespace velmora
{

/// The names of the settings' pages, on the window's own ground.
class PageList : public QListWidget
{
    Q_OBJECT

public:
    explicit PageList(QWidget* parent = nullptr);

    /// Adds a page by the name of its icon; its text is set later.
    QListWidgetItem* addPage(const QString& icon);
};

} // namespace velmora
