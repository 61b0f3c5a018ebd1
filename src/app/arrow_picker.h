#pragma once

#include "app/app_context.h"

#include <QWidget>

class QButtonGroup;

namespace velmora
{

/// The sheet that offers the built-in arrows, or a picture of one's own.
class ArrowPicker : public QWidget
{
    Q_OBJECT

public:
    /// `margin` is what a sheet's content leaves at its sides.
    ArrowPicker(const AppContext& context, int margin, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

    /// Chooses the first arrow and returns the control that has the focus when the sheet opens.
    QWidget* prepare();

private:
    void addChosen();

    AppContext m_context;
    QButtonGroup* m_tiles;
};

} // namespace velmora
