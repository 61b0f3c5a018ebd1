#pragma once

#include <QColor>
#include <QWidget>

namespace velmora
{

/// The run of a gradient's colours, between the wells of its ends.
class GradientStrip : public QWidget
{
    Q_OBJECT

public:
    explicit GradientStrip(QWidget* parent = nullptr);

    void setColors(const QColor& start, const QColor& end);
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_start{};
    QColor m_end{};
};

} // namespace velmora
