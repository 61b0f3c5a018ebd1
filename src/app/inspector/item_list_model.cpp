#include "app/inspector/item_list_model.h"

#include "app/inspector/file_facts.h"
#include "app/text.h"
#include "l10n/labels.h"

#include <QMimeData>
#include <QTextDocument>

#include <algorithm>
#include <tuple>

namespace velmora
{
namespace
{

/// A dragged row, by its item's id; it means nothing outside this program.
const QString rowType = QStringLiteral("application/x-velmora-item");

bool looksAlike(const DMGItem& a, const DMGItem& b)
{
    return std::tie(a.displayName, a.hidden, a.sourcePath, a.symlinkTarget) ==
           std::tie(b.displayName, b.hidden, b.sourcePath, b.symlinkTarget);
}

} // namespace

ItemListModel::ItemListModel(AppState& state, QObject* parent) : QAbstractListModel(parent), m_state(state) {}

void ItemListModel::refresh()
{
    const std::vector<DMGItem>& now = m_state.project().items;
    const std::size_t shorter = std::min(m_items.size(), now.size());
    std::size_t head = 0;
    while (head < shorter && m_items[head].id == now[head].id)
        ++head;
    std::size_t tail = 0;
    while (tail < shorter - head && m_items[m_items.size() - 1 - tail].id == now[now.size() - 1 - tail].id)
        ++tail;
    const auto at = [](std::size_t index) { return static_cast<std::ptrdiff_t>(index); };
    if (const std::size_t end = m_items.size() - tail; end > head) {
        beginRemoveRows({}, static_cast<int>(head), static_cast<int>(end) - 1);
        m_items.erase(m_items.begin() + at(head), m_items.begin() + at(end));
        endRemoveRows();
    }
    if (const std::size_t end = now.size() - tail; end > head) {
        beginInsertRows({}, static_cast<int>(head), static_cast<int>(end) - 1);
        m_items.insert(m_items.begin() + at(head), now.begin() + at(head), now.begin() + at(end));
        endInsertRows();
    }
    for (std::size_t i = 0; i < now.size(); ++i) {
        const bool changed = !looksAlike(m_items[i], now[i]);
        m_items[i] = now[i];
        if (changed)
            emit dataChanged(index(static_cast<int>(i)), index(static_cast<int>(i)));
    }
}

int ItemListModel::rowOf(const std::optional<Uuid>& id) const
{
    const DMGItem* item = findElement(m_items, id);
    return item ? static_cast<int>(item - m_items.data()) : -1;
}

int ItemListModel::leftOut() const
{
    return static_cast<int>(std::count_if(m_items.begin(), m_items.end(), [](const auto& i) { return i.hidden; }));
}

int ItemListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

QVariant ItemListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const DMGItem& shown = item(index.row());
    const QString name = qtText(shown.displayName);
    if (role == Qt::DisplayRole)
        return name;
    if (role == Qt::ToolTipRole)
        return Qt::convertFromPlainText(name, Qt::WhiteSpaceNormal); // a name may hold markup
    if (role == Qt::AccessibleTextRole)
        return shown.hidden ? name + qtText(Labels::leftOutSuffix) : name;
    if (role == Qt::AccessibleDescriptionRole)
        return kindOf(shown);
    return {};
}

Qt::ItemFlags ItemListModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled; // between the rows
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
}

QStringList ItemListModel::mimeTypes() const
{
    return {rowType};
}

QMimeData* ItemListModel::mimeData(const QModelIndexList& indexes) const
{
    if (indexes.isEmpty())
        return nullptr;
    auto* data = new QMimeData;
    data->setData(rowType, QByteArray::fromStdString(item(indexes.front().row()).id.toString()));
    return data;
}

bool ItemListModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int, const QModelIndex& parent)
{
    if (action != Qt::MoveAction || !data->hasFormat(rowType))
        return false;
    const auto id = Uuid::parse(data->data(rowType).toStdString());
    if (!id)
        return false;
    const int before = row >= 0 ? row : (parent.isValid() ? parent.row() : rowCount());
    m_state.moveItem(*id, static_cast<std::size_t>(before));
    return true;
}

} // namespace velmora
