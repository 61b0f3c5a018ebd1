#pragma once

#include "app/app_context.h"
#include "app/inspector/small_picture.h"
#include "app/kit/form.h"
#include "model/enums.h"

#include <functional>
#include <vector>

namespace velmora
{

class PictureRows;

/// The kind of the window's background, and below it the rows of the chosen kind only.
class BackgroundSection : public Section
{
    Q_OBJECT

public:
    /// `picture` reads the background picture; it is kept by the caller.
    BackgroundSection(const AppContext& context, SmallPictureReader& picture);

    void refresh();

private:
    QWidget* colorRow();
    QWidget* gradientColors();
    QWidget* gradientAngle();
    void onlyFor(BackgroundKind kind, QWidget* row);

    AppContext m_context;
    std::vector<std::function<void()>> m_reads{};
    PictureRows* m_picture;
};

} // namespace velmora
