#pragma once

#include "app/theme/app_theme.h"

#include <QPixmap>
#include <QString>

#include <functional>

namespace velmora
{

/// Takes a picture of a name.
using TakePicture = std::function<void(const QString& name, const QPixmap& picture)>;

/// Walks through the editor with the sample project and has a picture taken of every panel, sheet and window, in the
/// look that the application has.
void walkThroughTheEditor(AppTheme theme, const TakePicture& take);

} // namespace velmora
