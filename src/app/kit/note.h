#pragma once

#include <QWidget>

namespace velmora
{

/// What has to be noticed, on a coloured ground: an alert to assistive technology, told whenever it comes into view.
/// Its accessible name says what is the matter.
class Note : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

signals:
    /// It was told.
    void announced();

protected:
    /// Tells it again, as far as it is in view: to be called when the text has changed.
    void announce();
    void showEvent(QShowEvent* event) override;
};

} // namespace velmora
