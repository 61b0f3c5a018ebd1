#pragma once

#include "app/kit/adjustable.h"
#include "app/kit/focus_ring.h"

#include <QWidget>

#include <functional>

namespace velmora
{

/// A dial for a direction in degrees: 0 points right, more turns counter-clockwise, 0 to 360. Drags set whole degrees,
/// with Shift every fifteenth; the arrow keys turn by one, Page Up and Page Down by fifteen.
class AngleDial : public QWidget, public HasFocusShape, public Adjustable
{
    Q_OBJECT

public:
    explicit AngleDial(QWidget* parent = nullptr);

    [[nodiscard]] double angle() const { return m_angle; }
    /// Takes on any angle without a signal; angles beyond a turn point where they point.
    void setAngle(double degrees);
    /// How the angle is said, for example "45 degrees"; digits otherwise.
    void setSpokenText(std::function<QString(double)> text) { m_spoken = std::move(text); }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
    [[nodiscard]] FocusShape focusShape() const override;

    [[nodiscard]] double adjustableValue() const override { return m_angle; }
    [[nodiscard]] double adjustableMinimum() const override { return 0; }
    [[nodiscard]] double adjustableMaximum() const override { return 360; }
    [[nodiscard]] double adjustableStep() const override { return 1; }
    void adjust(double value) override;
    [[nodiscard]] QString spokenValue() const override;

signals:
    /// The person turned the dial: at every movement.
    void angleEdited(double degrees);
    /// The movement is over: at the release of the mouse, or after each key.
    void editingFinished();
    /// The mouse took hold, and let go; a drag that is cut short lets go too.
    void dragBegan();
    void dragEnded();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void pointAt(const QPointF& position, bool coarse);
    void endDrag();
    void turnBy(double degrees);
    bool take(double degrees);

    double m_angle = 0;
    std::function<QString(double)> m_spoken;
    bool m_dragging = false;
    bool m_changed = false; ///< since the press
};

} // namespace velmora
