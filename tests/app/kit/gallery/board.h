#pragma once

#include <QList>
#include <QString>

class QWidget;

namespace velmora
{

/// One picture of the gallery; whoever asked owns the widget.
struct Board {
    QString name{};
    QWidget* widget = nullptr;
};

/// All boards, made under the present look, not shown yet.
QList<Board> makeBoards();

} // namespace velmora
