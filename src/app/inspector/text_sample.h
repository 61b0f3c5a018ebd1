#pragma once

#include "app/inspector/small_picture.h"
#include "canvas/canvas_pictures.h"
#include "canvas/icon_drawing.h"

#include <QWidget>

namespace velmora
{

class BuiltInArrowLibrary;
class OverlayImageCache;

/// One icon of the window with its label, before the window's background: what the settings of the labels do.
class TextSample : public QWidget
{
    Q_OBJECT

public:
    /// What is referred to is kept by the caller.
    TextSample(const BuiltInArrowLibrary& arrows, OverlayImageCache& overlays, QWidget* parent = nullptr);

    void showProject(const DMGProject& project);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void drawBackground(QPainter& painter);

    const BuiltInArrowLibrary& m_arrows;
    OverlayImageCache& m_overlays;
    DMGProject m_project; ///< the sample alone: its background and its one item
    SmallPictureReader m_background{};
    CanvasPictures m_pictures{};
    IconDrawing m_icons{m_pictures};
};

} // namespace velmora
