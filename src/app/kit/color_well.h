#pragma once

#include "app/kit/focus_ring.h"

#include <QAbstractButton>
#include <QColor>
#include <QPointer>

class QColorDialog;

namespace velmora
{

/// Shows a colour and opens the platform's colour panel, with opacity, to change it. A colour that is not opaque shows
/// the checker under its right half.
class ColorWell : public QAbstractButton, public HasFocusShape
{
    Q_OBJECT

public:
    explicit ColorWell(QWidget* parent = nullptr);

    [[nodiscard]] QColor color() const { return m_color; }
    /// Takes on a colour without a signal; an open panel shows it as well.
    void setColor(const QColor& color);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] FocusShape focusShape() const override;

signals:
    /// The person chose another colour: at every change in the panel.
    void colorEdited(const QColor& color);
    /// The panel was closed; after Cancel the colour is what it was before.
    void editingFinished();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void openPanel();
    void take(const QColor& color);

    QColor m_color{Qt::black};
    QPointer<QColorDialog> m_panel;
};

} // namespace velmora
