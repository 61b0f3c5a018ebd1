#pragma once

#include "app/app_context.h"

#include <QWidget>

namespace velmora
{

/// What a tab of the inspector shows. A panel reads the editor state when it is told to and writes to it at once.
class InspectorPanel : public QWidget
{
    Q_OBJECT

public:
    explicit InspectorPanel(const AppContext& context, QWidget* parent = nullptr);

    /// Shows everything as it is now. Called when the panel comes into view and, while it is seen, after each change.
    /// The field in which a person types keeps its text.
    virtual void refresh() = 0;

protected:
    AppContext m_context;
};

/// The panels, in the order of their tabs.
InspectorPanel* makeLayoutPanel(const AppContext& context);
InspectorPanel* makeVolumePanel(const AppContext& context);
InspectorPanel* makeFileInfoPanel(const AppContext& context);
InspectorPanel* makeArrangePanel(const AppContext& context);
InspectorPanel* makeTextPanel(const AppContext& context);

} // namespace velmora
