#pragma once

#include "app/app_context.h"
#include "app/settings/settings_window.h"

class QWidget;

namespace velmora
{

/// The pages of the settings window; each shows the setting as it is now and follows changes made elsewhere.
QWidget* makeThemePage(const AppContext& context);
QWidget* makeUpdatesPage(const AppContext& context);
QWidget* makeLanguagePage(const AppContext& context);
/// `menus` holds the menus' actions, whose keys the page names; it may be missing.
QWidget* makeWindowPage(const AppContext& context, const WindowCommands& commands, const QWidget* menus);
QWidget* makeAboutPage(const AppContext& context);
QWidget* makeHelpPage(const AppContext& context);

} // namespace velmora
