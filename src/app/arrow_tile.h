#pragma once

#include "app/kit/focus_ring.h"
#include "render/picture.h"

#include <QRadioButton>

namespace velmora
{

struct Look;

/// One arrow of the picker: its picture on the checker, its name below.
class ArrowTile : public QRadioButton, public HasFocusShape
{
    Q_OBJECT

public:
    ArrowTile(const QString& name, PicturePtr picture, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] FocusShape focusShape() const override;

    /// What a tile leaves round its picture.
    static int padding(const Look& look);

signals:
    void doubleClicked();

protected:
    [[nodiscard]] bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    QImage m_picture{}; ///< trimmed to what is drawn
    bool m_pale = false;
};

} // namespace velmora
