#pragma once

#include "app/kit/focus_ring.h"

#include <QAbstractButton>

namespace velmora
{

/// One segment of a SegmentedControl: its label or icon; the control draws ground and chip.
class Segment : public QAbstractButton, public HasFocusShape
{
    Q_OBJECT

public:
    Segment(const QString& name, const QString& icon, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] FocusShape focusShape() const override;

protected:
    void moveEvent(QMoveEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_icon;
};

} // namespace velmora
