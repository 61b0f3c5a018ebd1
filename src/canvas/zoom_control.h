#pragma once

#include "app/theme/theme_manager.h"

#include <QAbstractButton>

#include <optional>

namespace velmora
{

/// The capsule that shows the zoom and offers the presets in a menu.
class ZoomControl : public QAbstractButton
{
    Q_OBJECT

public:
    ZoomControl(ThemeManager& themes, QWidget* parent);

    void showZoom(const std::optional<double>& zoom);
    [[nodiscard]] QSize sizeHint() const override;
    /// The room around the capsule for the focus ring, points.
    static constexpr int margin = 3;

signals:
    /// A person chose a zoom; nothing: fit.
    void zoomChosen(std::optional<double> zoom);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void openMenu();

    ThemeManager& m_themes;
    std::optional<double> m_zoom{};
    bool m_open = false;
    bool m_keyboardFocus = false;
};

} // namespace velmora
