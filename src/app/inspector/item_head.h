#pragma once

#include "app/inspector/icon_source.h"

#include <QWidget>

namespace velmora
{

class ClippedLabel;

/// An item's icon with its name and a line about it at the right.
class ItemHead : public QWidget
{
    Q_OBJECT

public:
    /// `iconSize` in points.
    explicit ItemHead(double iconSize, QWidget* parent = nullptr);

    void setItem(const DMGItem& item, const QString& about);
    /// Files may have changed: the icon is looked at again.
    void expireIcon();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_side;
    DMGItem m_item{};
    IconSource m_icons;
    ClippedLabel* m_name;
    ClippedLabel* m_about;
};

} // namespace velmora
