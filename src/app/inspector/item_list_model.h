#pragma once

#include "editor/app_state.h"

#include <QAbstractListModel>

namespace velmora
{

/// The items of the open project as a list, those that are left out included. It shows what it took over at the last
/// refresh(). Rows are dragged within the list; the move goes through the editor state.
class ItemListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit ItemListModel(AppState& state, QObject* parent = nullptr);

    /// Takes over the project's items, telling no more than what differs.
    void refresh();
    [[nodiscard]] const DMGItem& item(int row) const { return m_items[static_cast<std::size_t>(row)]; }
    /// -1 when no item has this id.
    [[nodiscard]] int rowOf(const std::optional<Uuid>& id) const;
    [[nodiscard]] int leftOut() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    [[nodiscard]] Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    [[nodiscard]] QStringList mimeTypes() const override;
    [[nodiscard]] QMimeData* mimeData(const QModelIndexList& indexes) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

private:
    AppState& m_state;
    std::vector<DMGItem> m_items{};
};

} // namespace velmora
