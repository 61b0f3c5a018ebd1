#pragma once

#include "app/kit/focus_ring.h"
#include "app/theme/app_theme.h"

#include <QRadioButton>

#include <functional>

namespace velmora
{

/// A theme to choose: a small window in its colours, its name and description, its two swatches.
class ThemeCard : public QRadioButton, public HasFocusShape
{
    Q_OBJECT

public:
    /// `systemAccent` answers the desktop's accent at the moment of painting.
    ThemeCard(AppTheme theme, std::function<QColor()> systemAccent, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
    [[nodiscard]] FocusShape focusShape() const override;

protected:
    [[nodiscard]] bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    void paintEvent(QPaintEvent* event) override;

private:
    AppTheme m_theme;
    std::function<QColor()> m_systemAccent;
};

} // namespace velmora
