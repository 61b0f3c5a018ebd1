#include "app/kit/accessibility.h"

#include "app/kit/adjustable.h"
#include "app/kit/color_well.h"
#include "app/kit/form.h"
#include "app/kit/note.h"
#include "app/kit/progress_line.h"
#include "app/kit/segment.h"
#include "app/kit/segmented_control.h"
#include "app/kit/step_list.h"
#include "app/kit/tab_rail.h"
#include "app/kit/tool_button.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCheckBox>
#include <QRadioButton>

#include <cmath>
#include <memory>
#include <vector>

namespace velmora
{
namespace
{

constexpr const char* roleKey = "accessibleRole";

/// A button of any role: what it is called, whether it is on, and how to press it.
class ButtonAccessible : public QAccessibleWidget
{
public:
    ButtonAccessible(QAbstractButton* button, QAccessible::Role role)
        : QAccessibleWidget(button, role), m_button(button)
    {
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        const QString set = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && set.isEmpty() ? accessibleNameFor(m_button->text()) : set;
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = m_button->isCheckable();
        state.checked = m_button->isChecked();
        state.pressed = m_button->isDown();
        const bool tab = role() == QAccessible::PageTab;
        state.selectable = tab;
        state.selected = tab && m_button->isChecked();
        if (const auto* tool = qobject_cast<const ToolButton*>(m_button))
            state.busy = tool->isBusy();
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (m_button->isEnabled())
            names.prepend(m_button->isCheckable() ? toggleAction() : pressAction());
        return names;
    }

    void doAction(const QString& name) override
    {
        if (name == pressAction() || name == toggleAction())
            m_button->click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    QAbstractButton* m_button;
};

class AdjustableAccessible : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    AdjustableAccessible(QWidget* widget, Adjustable* adjustable)
        : QAccessibleWidget(widget, QAccessible::Slider), m_adjustable(adjustable)
    {
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? m_adjustable->spokenValue() : QAccessibleWidget::text(kind);
    }
    [[nodiscard]] QVariant currentValue() const override { return m_adjustable->adjustableValue(); }
    void setCurrentValue(const QVariant& value) override
    {
        const double number = value.toDouble();
        if (widget()->isEnabled() && std::isfinite(number))
            m_adjustable->adjust(number);
    }
    [[nodiscard]] QVariant minimumValue() const override { return m_adjustable->adjustableMinimum(); }
    [[nodiscard]] QVariant maximumValue() const override { return m_adjustable->adjustableMaximum(); }
    [[nodiscard]] QVariant minimumStepSize() const override { return m_adjustable->adjustableStep(); }

private:
    Adjustable* m_adjustable;
};

class ProgressAccessible : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit ProgressAccessible(ProgressLine* line) : QAccessibleWidget(line, QAccessible::ProgressBar), m_line(line) {}

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    [[nodiscard]] QVariant currentValue() const override { return m_line->percent(); }
    void setCurrentValue(const QVariant&) override {}
    [[nodiscard]] QVariant minimumValue() const override { return 0; }
    [[nodiscard]] QVariant maximumValue() const override { return 100; }
    [[nodiscard]] QVariant minimumStepSize() const override { return 1; }

private:
    ProgressLine* m_line;
};

/// A step, which is no widget of its own.
class StepAccessible : public QAccessibleInterface
{
public:
    StepAccessible(StepList* list, int index) : m_list(list), m_index(index) {}

    [[nodiscard]] bool isValid() const override { return m_index < m_list->steps().size(); }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_list);
    }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        if (kind != QAccessible::Name || !isValid())
            return {};
        const Step& step = m_list->steps().at(m_index);
        return step.spoken.isEmpty() ? step.name : step.name + QStringLiteral(", ") + step.spoken;
    }
    void setText(QAccessible::Text, const QString&) override {}
    [[nodiscard]] QRect rect() const override
    {
        const QRect row = m_list->rowRect(m_index);
        return {m_list->mapToGlobal(row.topLeft()), row.size()};
    }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state;
        state.readOnly = true;
        state.busy = isValid() && m_list->steps().at(m_index).state == StepState::running;
        state.invisible = !m_list->isVisible();
        return state;
    }

private:
    StepList* m_list;
    int m_index;
};

class StepListAccessible : public QAccessibleWidget
{
public:
    explicit StepListAccessible(StepList* list) : QAccessibleWidget(list, QAccessible::List), m_list(list) {}
    ~StepListAccessible() override
    {
        for (const QAccessible::Id id : m_children)
            QAccessible::deleteAccessibleInterface(id);
    }
    StepListAccessible(const StepListAccessible&) = delete;
    StepListAccessible& operator=(const StepListAccessible&) = delete;

    [[nodiscard]] int childCount() const override { return static_cast<int>(m_list->steps().size()); }
    [[nodiscard]] QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= childCount())
            return nullptr;
        // The registry owns them from here on; they are made when they are asked for.
        while (static_cast<int>(m_children.size()) <= index) {
            auto step = std::make_unique<StepAccessible>(m_list, static_cast<int>(m_children.size()));
            m_children.push_back(QAccessible::registerAccessibleInterface(step.release()));
        }
        return QAccessible::accessibleInterface(m_children.at(static_cast<std::size_t>(index)));
    }
    int indexOfChild(const QAccessibleInterface* wanted) const override
    {
        for (int i = 0; i < static_cast<int>(m_children.size()); ++i) {
            if (child(i) == wanted)
                return i;
        }
        return -1;
    }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override
    {
        const QPoint point = m_list->mapFromGlobal(QPoint(x, y));
        for (int i = 0; i < childCount(); ++i) {
            if (m_list->rowRect(i).contains(point))
                return child(i);
        }
        return nullptr;
    }

private:
    StepList* m_list;
    mutable std::vector<QAccessible::Id> m_children;
};

QAccessible::Role roleOf(const ToolButton& button)
{
    return button.kind() == ToolButton::Kind::tab ? QAccessible::PageTab : QAccessible::Button;
}

/// Asked for every class from the object's own upwards; the first answer counts.
QAccessibleInterface* makeInterface(const QString&, QObject* object)
{
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget)
        return nullptr;
    if (auto* tool = qobject_cast<ToolButton*>(widget))
        return new ButtonAccessible(tool, roleOf(*tool));
    if (auto* segment = qobject_cast<Segment*>(widget))
        return new ButtonAccessible(segment, QAccessible::RadioButton);
    // Qt's own would toggle them without the signal that a person's press sends.
    if (auto* check = qobject_cast<QCheckBox*>(widget))
        return new ButtonAccessible(check, QAccessible::CheckBox);
    if (auto* radio = qobject_cast<QRadioButton*>(widget))
        return new ButtonAccessible(radio, QAccessible::RadioButton);
    if (auto* well = qobject_cast<ColorWell*>(widget))
        return new ButtonAccessible(well, QAccessible::ColorChooser);
    if (auto* adjustable = dynamic_cast<Adjustable*>(widget))
        return new AdjustableAccessible(widget, adjustable);
    if (auto* steps = qobject_cast<StepList*>(widget))
        return new StepListAccessible(steps);
    if (auto* line = qobject_cast<ProgressLine*>(widget))
        return new ProgressAccessible(line);
    if (qobject_cast<TabRail*>(widget))
        return new QAccessibleWidget(widget, QAccessible::PageTabList);
    if (qobject_cast<SegmentedControl*>(widget))
        return new QAccessibleWidget(widget, QAccessible::Grouping);
    if (qobject_cast<Note*>(widget))
        return new QAccessibleWidget(widget, QAccessible::AlertMessage);
    const QVariant role = widget->property(roleKey);
    return role.isValid() ? new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt())) : nullptr;
}

} // namespace

void setAccessibleRole(QWidget* widget, QAccessible::Role role)
{
    widget->setProperty(roleKey, static_cast<int>(role));
}

void installAccessibility()
{
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    static_cast<void>(installed);
}

} // namespace velmora
