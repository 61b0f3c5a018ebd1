#pragma once

#include "app/app_context.h"
#include "model/geometry.h"
#include "model/uuid.h"

#include <QWidget>

#include <functional>
#include <vector>

class QVBoxLayout;

namespace velmora
{

class Section;

/// What a tab of the inspector shows. A panel reads the editor state when it is told to and writes to it at once.
class InspectorPanel : public QWidget
{
    Q_OBJECT

public:
    explicit InspectorPanel(const AppContext& context, QWidget* parent = nullptr);

    /// Shows everything as it is now. Called when the panel comes into view and, while it is seen, after each change.
    /// The field in which a person types keeps its text.
    virtual void refresh();
    /// A box on the canvas is being dragged, in content points; the project learns of it at the end.
    virtual void showDraggedBox(const Uuid&, const Rect&) {}

protected:
    /// Adds a section below those that are there.
    Section* addSection(const QString& title);
    void insertSection(Section* section);
    /// Adds what shows one thing as it is now.
    void onRefresh(std::function<void()> read) { m_reads.push_back(std::move(read)); }
    std::vector<std::function<void()>>& reads() { return m_reads; }

    AppContext m_context;

private:
    QVBoxLayout* m_layout;
    std::vector<std::function<void()>> m_reads{};
};

/// The panels, in the order of their tabs.
InspectorPanel* makeLayoutPanel(const AppContext& context);
InspectorPanel* makeVolumePanel(const AppContext& context);
InspectorPanel* makeFileInfoPanel(const AppContext& context);
InspectorPanel* makeArrangePanel(const AppContext& context);
InspectorPanel* makeTextPanel(const AppContext& context);

} // namespace velmora
