#pragma once

#include "app/kit/fade.h"

#include <QList>
#include <QWidget>

namespace velmora
{

class RovingFocus;
class Segment;

/// One choice of a few, side by side; radio buttons to assistive technology. The arrow keys choose at once.
class SegmentedControl : public QWidget
{
    Q_OBJECT

public:
    explicit SegmentedControl(QWidget* parent = nullptr);

    /// Adds a segment at the right; `name` is its label, or with an icon only its name and tooltip. The first is
    /// chosen.
    void addSegment(const QString& name, const QString& icon = {});
    [[nodiscard]] int count() const { return static_cast<int>(m_segments.size()); }
    [[nodiscard]] QWidget* segment(int index) const;
    /// -1 while there is no segment.
    [[nodiscard]] int currentIndex() const { return m_current; }
    /// Chooses without a signal; an index that is none is ignored.
    void setCurrentIndex(int index);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    /// The person chose another segment.
    void currentChosen(int index);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void choose(int index);
    void place();

    QList<Segment*> m_segments;
    RovingFocus* m_focus;
    int m_current = -1;
    Glide m_left; ///< of the raised chip
    Glide m_width;
};

} // namespace velmora
