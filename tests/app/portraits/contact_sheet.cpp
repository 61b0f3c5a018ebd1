#include "app/portraits/contact_sheet.h"

#include <QPainter>

#include <algorithm>

namespace velmora
{
namespace
{

constexpr int columns = 4;
constexpr int gap = 24;
constexpr int captionHeight = 32;

} // namespace

QImage contactSheet(const std::vector<Portrait>& portraits, int cellWidth)
{
    std::vector<QImage> small;
    for (const Portrait& portrait : portraits) {
        QImage picture = portrait.picture;
        picture.setDevicePixelRatio(1);
        if (picture.width() > cellWidth)
            picture = picture.scaledToWidth(cellWidth, Qt::SmoothTransformation);
        small.push_back(picture);
    }
    std::vector<int> tops{gap};
    for (std::size_t first = 0; first < small.size(); first += columns) {
        int height = 0;
        for (std::size_t i = first; i < std::min(first + columns, small.size()); ++i)
            height = std::max(height, small[i].height());
        tops.push_back(tops.back() + captionHeight + height + gap);
    }
    QImage sheet(gap + columns * (cellWidth + gap), tops.back(), QImage::Format_RGB32);
    sheet.fill(QColor(0x80, 0x84, 0x8C));
    QPainter painter(&sheet);
    QFont font = painter.font();
    font.setPixelSize(18);
    painter.setFont(font);
    painter.setPen(Qt::white);
    for (std::size_t i = 0; i < small.size(); ++i) {
        const int left = gap + static_cast<int>(i % columns) * (cellWidth + gap);
        const int top = tops[i / columns];
        painter.drawText(QRect(left, top, cellWidth, captionHeight), Qt::AlignLeft | Qt::AlignVCenter,
                         portraits[i].name);
        painter.drawImage(left, top + captionHeight, small[i]);
    }
    return sheet;
}

} // namespace velmora
