#pragma once

#include "render/picture.h"

#include <QAbstractButton>

namespace velmora
{

/// One arrow of the picker: its picture on the checker, its name below.
class ArrowTile : public QAbstractButton
{
    Q_OBJECT

public:
    ArrowTile(const QString& name, PicturePtr picture, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

signals:
    void doubleClicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    QImage m_picture{}; ///< trimmed to what is drawn
    bool m_pale = false;
};

} // namespace velmora
