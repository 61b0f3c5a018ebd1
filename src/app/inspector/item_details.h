#pragma once

#include "app/inspector/folder_count.h"
#include "app/inspector/panel.h"
#include "editor/app_state.h"

#include <optional>
#include <utility>

class QLabel;
class QWidget;

namespace velmora
{

class ItemHead;
class NoteBanner;
class PathLabel;

/// The details of the selected item.
class ItemDetails : public InspectorPanel
{
    Q_OBJECT

public:
    explicit ItemDetails(const AppContext& context, QWidget* parent = nullptr);

    void refresh() override;
    /// Files may have changed.
    void expire();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void addFacts();
    void addButtons();
    void showFile(const DMGItem& item);

    AppState& state() const { return m_context.state; }

    Section* m_section;
    ItemHead* m_head;
    NoteBanner* m_missing;
    QWidget* m_target = nullptr;
    PathLabel* m_path = nullptr;
    QWidget* m_pathRow = nullptr;
    QWidget* m_dates = nullptr;
    QWidget* m_buttons = nullptr;
    QLabel* m_kind = nullptr;
    QLabel* m_size = nullptr;
    QLabel* m_created = nullptr;
    QLabel* m_modified = nullptr;
    FolderCount m_count{};
    std::optional<std::pair<Uuid, bool>> m_told{}; ///< the missing item, and whether it is left out
};

} // namespace velmora
