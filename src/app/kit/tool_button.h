#pragma once

#include "app/kit/fade.h"
#include "app/kit/focus_ring.h"

#include <QAbstractButton>

namespace velmora
{

/// An icon above its label: a tool of the toolbar, the filled tool that builds, or a tab of the inspector. Checkable
/// ones show that they are chosen. The text is the label and, until another is set, the accessible name.
class ToolButton : public QAbstractButton, public HasFocusShape
{
    Q_OBJECT

public:
    enum class Kind {
        tool,   ///< 67 × 54
        filled, ///< 67 × 58, filled with the accent
        tab,    ///< 51 × 50
    };

    /// `icon` is the name of an icon of the family.
    ToolButton(const QString& icon, const QString& label, Kind kind = Kind::tool, QWidget* parent = nullptr);

    [[nodiscard]] Kind kind() const { return m_kind; }
    /// A ring turns in the icon's place; the button can still be pressed.
    void setBusy(bool busy);
    [[nodiscard]] bool isBusy() const { return m_busy; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
    [[nodiscard]] FocusShape focusShape() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void drawGround(QPainter& painter) const;

    QString m_icon;
    Kind m_kind;
    bool m_busy = false;
    Fade m_hover;
    Fade m_press;
    BusyTurn m_turn;
};

} // namespace velmora
