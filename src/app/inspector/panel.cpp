#include "app/inspector/panel.h"

namespace velmora
{

InspectorPanel::InspectorPanel(const AppContext& context, QWidget* parent) : QWidget(parent), m_context(context) {}

} // namespace velmora
