#pragma once

#include "app/app_context.h"
#include "app/kit/tool_button.h"

#include <QWidget>

#include <vector>

namespace velmora
{

class RovingFocus;

/// The column of tools beside the canvas: what can be added, what is being edited, Remove, and Build at the bottom. In
/// a low window the tools scroll and Build stays.
class Toolbar : public QWidget
{
    Q_OBJECT

public:
    explicit Toolbar(const AppContext& context, QWidget* parent = nullptr);

    /// Wide enough for a button and its margins, in points.
    static constexpr double width = 80;

signals:
    /// Build was pressed while a build runs.
    void buildShown();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Tool {
        ToolButton* button;
        const char* key;
    };

    ToolButton* addTool(const char* icon, const char* key, const char* name,
                        ToolButton::Kind kind = ToolButton::Kind::tool);
    ToolButton* addMode(const char* icon, const char* key, const char* name);
    void connectTools();
    void layOut();
    void refresh();
    void retranslate();

    AppContext m_context;
    std::vector<Tool> m_tools{};
    RovingFocus* m_focus;
    ToolButton* m_addFiles;
    ToolButton* m_addImage;
    ToolButton* m_addText;
    ToolButton* m_background;
    ToolButton* m_contents;
    ToolButton* m_licenses;
    ToolButton* m_remove;
    ToolButton* m_build;
};

} // namespace velmora
