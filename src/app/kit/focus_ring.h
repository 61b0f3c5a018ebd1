#pragma once

#include <QPointer>
#include <QRectF>
#include <QWidget>

namespace velmora
{

/// Where the focus ring of a widget lies.
struct FocusShape {
    QRectF rect{}; ///< in the widget's coordinates; the ring is drawn outside it
    double radius = 0;
    bool gap = false;    ///< a point of the ground between ring and control: for filled controls
    bool always = false; ///< shown however the focus came: text fields
    bool visible = true; ///< false: the widget shows its focus by itself
};

/// A control that says itself where its ring lies; all others have theirs from their class.
class HasFocusShape
{
public:
    HasFocusShape() = default;
    HasFocusShape(const HasFocusShape&) = delete;
    HasFocusShape& operator=(const HasFocusShape&) = delete;
    virtual ~HasFocusShape() = default;
    [[nodiscard]] virtual FocusShape focusShape() const = 0;
};

/// The ring of a widget. One that draws its own, and lies in a folder below this one, says so by the dynamic property
/// "showsOwnFocus".
FocusShape focusShapeOf(const QWidget* widget);

/// Whether a focus that arrived for `reason` came by the keyboard. What moves it besides keys and mouse (a window, a
/// menu, the program) continues as the person began: `before`.
bool isByKeyboard(Qt::FocusReason reason, bool before);

/// Draws the ring round one widget, above its siblings and without clipping at its parent: a child of the window, or of
/// the content of the scroll area that the widget is in. It follows every move; the mouse does not see it.
class FocusRing : public QWidget
{
    Q_OBJECT

public:
    FocusRing();
    /// Moves to another widget, or hides with none.
    void setTarget(QWidget* target);
    [[nodiscard]] QWidget* target() const { return m_target; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void watch(bool on);
    void place();

    QPointer<QWidget> m_target;
    QPointer<QWidget> m_host;
};

/// Keeps the one ring of the application on the widget with the focus, when the focus came by the keyboard or the
/// widget is a text field.
class FocusFollower : public QObject
{
    Q_OBJECT

public:
    FocusFollower();
    ~FocusFollower() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void focusArrived(QWidget* widget, Qt::FocusReason reason);

    QPointer<FocusRing> m_ring;
    bool m_byKeyboard = false;
};

} // namespace velmora
