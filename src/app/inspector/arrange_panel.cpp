#include "app/inspector/arrange_part.h"
#include "app/kit/empty_state.h"
#include "app/text.h"
#include "l10n/labels.h"

#include <QBoxLayout>

#include <array>

namespace velmora
{
namespace
{

/// Place, size and looks of what is selected, or word that nothing is.
class ArrangePanel : public InspectorPanel
{
public:
    explicit ArrangePanel(const AppContext& context)
        : InspectorPanel(context),
          m_parts{makeArrangeText(context), makeArrangeOverlay(context), makeArrangeItem(context)},
          m_nothing(new EmptyState(QStringLiteral("arrange"), qtText(Labels::nothingSelected),
                                   qtText(Labels::nothingSelectedAdvice)))
    {
        for (ArrangePart* part : m_parts)
            add(part);
        add(m_nothing);
    }

    void refresh() override
    {
        ArrangePart* shown = nullptr;
        for (ArrangePart* part : m_parts) {
            if (!shown && part->applies())
                shown = part;
        }
        // Hidden first: what is to be seen never stands below what goes.
        for (ArrangePart* part : m_parts)
            part->setVisible(part == shown);
        m_nothing->setVisible(!shown);
        if (shown)
            shown->refresh();
    }

    void showDraggedBox(const Uuid& id, const Rect& box) override
    {
        for (ArrangePart* part : m_parts) {
            if (!part->isHidden())
                part->showDraggedBox(id, box);
        }
    }

private:
    void add(QWidget* part)
    {
        static_cast<QBoxLayout*>(layout())->insertWidget(layout()->count() - 1, part);
        part->hide();
    }

    std::array<ArrangePart*, 3> m_parts; ///< the first that applies is shown
    EmptyState* m_nothing;
};

} // namespace

InspectorPanel* makeArrangePanel(const AppContext& context)
{
    return new ArrangePanel(context);
}

} // namespace velmora
