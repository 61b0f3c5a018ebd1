#pragma once

#include <QWidget>

class QLabel;

namespace velmora
{

class AppState;
class BarButton;
class ItemList;

/// The list of items in its frame, with a bar below it to add and remove, and how many there are. It is as tall as its
/// items need, up to six.
class ItemBox : public QWidget
{
    Q_OBJECT

public:
    explicit ItemBox(AppState& state, QWidget* parent = nullptr);

    [[nodiscard]] ItemList& list() const { return *m_list; }
    /// Shows the items and the selection as they are now.
    void refresh();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void offerAdding();

    AppState& m_state;
    ItemList* m_list;
    BarButton* m_add;
    BarButton* m_remove;
    QLabel* m_count;
};

} // namespace velmora
