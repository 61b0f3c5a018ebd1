#pragma once

#include <QObject>
#include <QVariantAnimation>

class QWidget;

namespace velmora
{

/// How strongly a control shows that the mouse is over it or holds it: at once when that begins, fading when it ends.
/// Repaints the control; one a control, owned by it.
class Fade
{
public:
    explicit Fade(QWidget* widget);

    void set(bool on);
    /// 0 to 1.
    [[nodiscard]] double strength() const { return m_strength; }

private:
    QWidget* m_widget;
    QVariantAnimation m_animation;
    double m_strength = 0;
};

/// The fade of a control that the style paints: a child of the control, which follows the mouse by itself.
class HoverFade : public QObject
{
    Q_OBJECT

public:
    explicit HoverFade(QWidget* widget);
    /// The strength for a widget, or what `over` says where it has no fade.
    static double strengthFor(const QWidget* widget, bool over);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Fade m_fade;
};

/// A number that glides to each new value, repainting its control.
class Glide
{
public:
    /// `duration` in milliseconds; reduced motion makes it none.
    Glide(QWidget* widget, int duration);

    void moveTo(double value);
    void jumpTo(double value);
    [[nodiscard]] double value() const { return m_value; }

private:
    QWidget* m_widget;
    int m_duration;
    QVariantAnimation m_animation;
    double m_value = 0;
};

/// The turn of a busy ring, from 0 to 1 again and again, while its control is visible and busy. Still where motion is
/// reduced.
class BusyTurn
{
public:
    explicit BusyTurn(QWidget* widget);

    /// To be called when the control becomes busy or not, and when it is shown or hidden.
    void run(bool on);
    [[nodiscard]] double turn() const;

private:
    QWidget* m_widget;
    QVariantAnimation m_animation;
};

} // namespace velmora
