#pragma once

#include "app/kit/fade.h"

#include <QWidget>

namespace velmora
{

/// A progress bar 6 points tall that glides to each new value.
class ProgressLine : public QWidget
{
    Q_OBJECT

public:
    enum class Outcome { open, success };

    explicit ProgressLine(QWidget* parent = nullptr);

    /// 0 to 1; anything outside counts as the nearer end.
    void setFraction(double fraction);
    /// The same from 0 to 100, as assistive technology has it.
    [[nodiscard]] int percent() const;
    /// `success` paints the bar in the colour of good news.
    void setOutcome(Outcome outcome);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double m_fraction = 0;
    Outcome m_outcome = Outcome::open;
    Glide m_shown;
};

} // namespace velmora
