#include "app/inspector/item_box.h"
#include "app/inspector/item_details.h"
#include "app/inspector/item_list.h"
#include "app/inspector/panel.h"
#include "app/kit/empty_state.h"
#include "app/kit/form.h"
#include "app/text.h"
#include "editor/app_state.h"
#include "l10n/labels.h"

#include <QBoxLayout>
#include <QEvent>
#include <QPushButton>

namespace velmora
{
namespace
{

/// The items of the image and the details of the selected one.
class FileInfoPanel : public InspectorPanel
{
public:
    explicit FileInfoPanel(const AppContext& context)
        : InspectorPanel(context),
          m_items(addSection(qtText(Labels::items))),
          m_box(new ItemBox(context.state)),
          m_details(new ItemDetails(context)),
          m_nothing(new EmptyState(QStringLiteral("file-info"), qtText(Labels::noItems), qtText(Labels::noItemsAdvice)))
    {
        m_items->addRow(m_box);
        m_nothing->setObjectName(QStringLiteral("fileInfo.nothing"));
        m_nothing->setButton(localized("toolbar.add_files") + QStringLiteral("…"));
        m_nothing->button()->setObjectName(QStringLiteral("fileInfo.addFirst"));
        connect(m_nothing, &EmptyState::buttonClicked, &context.state, &AppState::addFilesViaPanel);
        for (QWidget* part : std::initializer_list<QWidget*>{m_details, m_nothing})
            static_cast<QBoxLayout*>(layout())->insertWidget(layout()->count() - 1, part);
    }

    void refresh() override
    {
        InspectorPanel::refresh();
        const AppState& state = m_context.state;
        const bool empty = state.project().items.empty();
        m_box->refresh();
        m_details->refresh();
        m_items->setVisible(!empty);
        m_nothing->setVisible(empty);
        m_details->setVisible(state.selectedItem() != nullptr);
    }

protected:
    bool event(QEvent* event) override
    {
        // Somebody may have been at the files meanwhile.
        if (event->type() == QEvent::WindowActivate || event->type() == QEvent::Show) {
            m_box->list().expireIcons();
            m_details->expire();
        }
        // Whoever shows the panel refreshes it.
        if (event->type() == QEvent::WindowActivate && isVisible())
            refresh();
        return InspectorPanel::event(event);
    }

private:
    Section* m_items;
    ItemBox* m_box;
    ItemDetails* m_details;
    EmptyState* m_nothing;
};

} // namespace

InspectorPanel* makeFileInfoPanel(const AppContext& context)
{
    return new FileInfoPanel(context);
}

} // namespace velmora
