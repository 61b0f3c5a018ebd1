#pragma once

#include "app/kit/fade.h"

#include <QList>
#include <QString>
#include <QWidget>

namespace velmora
{

enum class StepState { waiting, running, done, failed };

struct Step {
    QString name{};
    StepState state = StepState::waiting;
    QString time{};   ///< as shown at the right, for example "0:07"
    QString spoken{}; ///< the state in words for assistive technology: "running, 7 seconds"

    bool operator==(const Step&) const = default;
};

/// The steps of a build, one row of 28 each, with a mark of another shape for every state.
class StepList : public QWidget
{
    Q_OBJECT

public:
    explicit StepList(QWidget* parent = nullptr);

    void setSteps(const QList<Step>& steps);
    [[nodiscard]] const QList<Step>& steps() const { return m_steps; }
    /// The row of a step, in this widget's coordinates.
    [[nodiscard]] QRect rowRect(int index) const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void drawMark(QPainter& painter, const QRectF& box, StepState state) const;
    void stepsChanged();

    QList<Step> m_steps;
    BusyTurn m_turn;
};

} // namespace velmora
