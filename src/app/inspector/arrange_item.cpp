#include "app/inspector/action_button.h"
#include "app/inspector/arrange_part.h"
#include "app/inspector/file_facts.h"
#include "app/inspector/item_head.h"
#include "app/kit/form.h"
#include "app/kit/icons.h"
#include "app/kit/look.h"
#include "app/kit/number_field.h"
#include "app/kit/switch.h"
#include "app/text.h"
#include "l10n/labels.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace velmora
{
namespace
{

class ArrangeItem : public ArrangePart
{
public:
    explicit ArrangeItem(const AppContext& context) : ArrangePart(context), m_head(new ItemHead(40))
    {
        const auto selected = [this] { return state().selection(); };
        Section* section = addSection(qtText(Labels::item));
        section->addRow(m_head);
        section->addRow(
            localized("text_position"),
            sideBySide({addNumber({.objectName = "arrange.itemX", .spokenName = Labels::iconX, .prefix = "X"}, selected,
                                  &DMGItem::x),
                        addNumber({.objectName = "arrange.itemY", .spokenName = Labels::iconY, .prefix = "Y"}, selected,
                                  &DMGItem::y)}));
        section->addRow(sideBySide({centerButton("text_center_h", "arrange.itemCenterH", true),
                                    centerButton("text_center_v", "arrange.itemCenterV", false)}));
        addLeavingOut(selected);
        addButtonSection(
            actionButton(qtText(Labels::removeItem), "arrange.removeItem", [this] { state().removeSelected(); }));
    }

    [[nodiscard]] bool applies() const override { return state().selectedItem() != nullptr; }

    void refresh() override
    {
        ArrangePart::refresh();
        if (const DMGItem* item = state().selectedItem())
            m_head->setItem(*item, kindOf(*item));
    }

private:
    QPushButton* centerButton(const char* key, const char* name, bool horizontal)
    {
        QPushButton* button = actionButton(localized(key), name, [this, horizontal] {
            if (const auto id = state().selection())
                state().centerItemOnCanvas(horizontal, !horizontal, *id);
        });
        button->setIcon(
            toolIcon(horizontal ? QStringLiteral("center-horizontally") : QStringLiteral("center-vertically")));
        return button;
    }

    void addLeavingOut(const std::function<std::optional<Uuid>()>& selected)
    {
        Section* section = addSection(qtText(Labels::inTheImage));
        auto* leaveOut = new Switch;
        leaveOut->setObjectName(QStringLiteral("arrange.leaveOut"));
        leaveOut->setAccessibleName(qtText(Labels::leaveOut));
        leaveOut->setAccessibleDescription(qtText(Labels::leaveOutAdvice));
        onRefresh(bindCheck(*leaveOut, elementField<DMGItem, bool>(state(), selected, &DMGItem::hidden, "")));
        auto* row = new QWidget;
        auto* line = new QHBoxLayout(row);
        line->setContentsMargins({});
        line->addWidget(new QLabel(qtText(Labels::leaveOut)), 1);
        line->addWidget(leaveOut);
        section->addRow(row);
        section->addHint(qtText(Labels::leaveOutAdvice));
    }

    ItemHead* m_head;
};

} // namespace

ArrangePart* makeArrangeItem(const AppContext& context)
{
    return new ArrangeItem(context);
}

} // namespace velmora
