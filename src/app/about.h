#pragma once

#include <QString>

class QWidget;

namespace velmora
{

class Desktop;

/// Icon, name, version and address of the program: what the about panel and the settings page show. `area` is the first
/// part of the object names in it.
QWidget* makeAboutContent(Desktop& desktop, const QString& area, QWidget* parent = nullptr);

/// Shows the about panel, or brings it to the front.
void showAboutPanel(Desktop& desktop, QWidget* parent);

} // namespace velmora
