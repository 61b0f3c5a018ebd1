#pragma once

#include "app/kit/tool_button.h"

#include <QList>
#include <QWidget>

namespace velmora
{

class RovingFocus;

/// The column of tabs at the inspector's side, 60 wide, on the chrome gradient. The arrow keys choose at once.
class TabRail : public QWidget
{
    Q_OBJECT

public:
    explicit TabRail(QWidget* parent = nullptr);

    /// Adds a tab below the others; the first becomes the chosen one. `help` is its tooltip and description.
    ToolButton* addTab(const QString& icon, const QString& label, const QString& help = {});
    [[nodiscard]] ToolButton* tab(int index) const { return m_tabs.value(index); }
    [[nodiscard]] int count() const { return static_cast<int>(m_tabs.size()); }

    /// -1 while there is no tab.
    [[nodiscard]] int currentIndex() const { return m_current; }
    /// Chooses a tab without a signal; an index that is none is ignored.
    void setCurrentIndex(int index);

    [[nodiscard]] QSize sizeHint() const override;

signals:
    /// The person chose another tab.
    void currentChosen(int index);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void choose(int index);

    QList<ToolButton*> m_tabs;
    RovingFocus* m_focus;
    int m_current = -1;
};

} // namespace velmora
