#pragma once

#include "app/kit/adjustable.h"
#include "app/kit/focus_ring.h"
#include "app/kit/slider_scale.h"

#include <QWidget>

#include <functional>
#include <optional>

namespace velmora
{

/// A slider with its value as text at the right. A value beyond the range is shown as it is, the knob at the end.
class ValueSlider : public QWidget, public HasFocusShape, public Adjustable
{
    Q_OBJECT

public:
    explicit ValueSlider(const SliderScale& scale, QWidget* parent = nullptr);

    [[nodiscard]] double value() const { return m_value; }
    /// Takes on a value, in or out of the range, without a signal.
    void setValue(double value);
    /// How the value is written at the right; plain digits otherwise.
    void setText(std::function<QString(double)> text);
    /// How the value is said, for example "100 percent"; as written otherwise.
    void setSpokenText(std::function<QString(double)> text);
    /// A double-click sets this value, and a drag within `snap` of it comes to rest there.
    void setHome(double value, double snap);
    /// A mark under the track at every step.
    void setTicks(bool ticks);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    /// None: the ring moves with the knob, so the slider draws it by itself.
    [[nodiscard]] FocusShape focusShape() const override { return {.visible = false}; }

    [[nodiscard]] double adjustableValue() const override { return m_value; }
    [[nodiscard]] double adjustableMinimum() const override { return m_scale.minimum; }
    [[nodiscard]] double adjustableMaximum() const override { return m_scale.maximum; }
    [[nodiscard]] double adjustableStep() const override { return m_scale.step; }
    void adjust(double value) override;
    [[nodiscard]] QString spokenValue() const override;

signals:
    /// The person moved the knob: at every movement.
    void valueEdited(double value);
    /// The movement is over: at the release of the mouse, or after each key.
    void editingFinished();
    /// The mouse took hold, and let go; a drag that is cut short lets go too.
    void dragBegan();
    void dragEnded();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QRectF trackRect() const;
    [[nodiscard]] QString shownText(double value) const;
    void dragTo(double x);
    void endDrag();
    bool take(double value);

    SliderScale m_scale;
    double m_value = 0;
    std::function<QString(double)> m_text;
    std::function<QString(double)> m_spoken;
    std::optional<double> m_home;
    double m_snap = 0;
    double m_grip = 0; ///< from the knob's middle to the mouse
    bool m_dragging = false;
    bool m_changed = false; ///< since the press
    bool m_ticks = false;
    bool m_ring = false; ///< the focus came, or was last used, by the keyboard
};

} // namespace velmora
