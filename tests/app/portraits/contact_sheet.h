#pragma once

#include <QImage>
#include <QString>

#include <vector>

namespace velmora
{

struct Portrait {
    QString name{};
    QImage picture{};
};

/// All pictures beside each other with their names, small enough to be seen at once. Larger ones fill a cell of
/// `cellWidth` pixels, smaller ones keep their size.
QImage contactSheet(const std::vector<Portrait>& portraits, int cellWidth);

} // namespace velmora
