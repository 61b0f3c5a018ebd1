#pragma once

#include "app/kit/fade.h"
#include "app/kit/focus_ring.h"

#include <QCheckBox>

namespace velmora
{

/// A switch without a text of its own; a check box to assistive technology. Give it an accessible name.
class Switch : public QCheckBox, public HasFocusShape
{
    Q_OBJECT

public:
    explicit Switch(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
    [[nodiscard]] FocusShape focusShape() const override;

protected:
    [[nodiscard]] bool hitButton(const QPoint& position) const override;
    void checkStateSet() override;
    void paintEvent(QPaintEvent* event) override;

private:
    Glide m_knob; ///< 0 off, 1 on
};

} // namespace velmora
