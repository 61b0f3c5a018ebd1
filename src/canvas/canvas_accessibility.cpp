#include "canvas/canvas_accessibility.h"

#include "canvas/canvas_view.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>

#include <map>
#include <string>

namespace velmora
{
namespace
{

/// One object of the canvas; alive as long as the canvas' own interface, found anew at every question.
class ElementAccessible : public QAccessibleInterface
{
public:
    ElementAccessible(CanvasView* canvas, const CanvasElement& element) : m_canvas(canvas), m_element(element) {}

    [[nodiscard]] bool isValid() const override { return m_canvas && !describe(m_element, project()).isEmpty(); }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_canvas);
    }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString&) override {}
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    [[nodiscard]] QAccessible::State state() const override;

private:
    [[nodiscard]] const DMGProject& project() const { return m_canvas->state().project(); }
    [[nodiscard]] bool isSelected() const { return selectedElement(m_canvas->state()) == m_element; }

    QPointer<CanvasView> m_canvas;
    CanvasElement m_element{};
};

QString ElementAccessible::text(QAccessible::Text kind) const
{
    if (!isValid() || kind != QAccessible::Name)
        return {};
    QString text = describe(m_element, project());
    if (!isSelected())
        return text;
    text += QStringLiteral(", selected");
    const QString aligned = m_canvas->alignment(m_element);
    return aligned.isEmpty() ? text : text + QStringLiteral(", ") + aligned;
}

QRect ElementAccessible::rect() const
{
    if (!isValid())
        return {};
    const QRect area = (m_canvas->areaOf(m_element) & QRectF(m_canvas->rect())).toAlignedRect();
    return {m_canvas->mapToGlobal(area.topLeft()), area.size()};
}

QAccessible::State ElementAccessible::state() const
{
    QAccessible::State state;
    state.selectable = true;
    state.focusable = true;
    state.invalid = !isValid();
    if (isValid() && isSelected()) {
        state.selected = true;
        state.focused = m_canvas->hasFocus();
        state.active = true;
    }
    return state;
}

/// The canvas: its objects come first, then its own controls.
class CanvasAccessible : public QAccessibleWidget
{
public:
    explicit CanvasAccessible(CanvasView* canvas) : QAccessibleWidget(canvas, QAccessible::List) {}
    ~CanvasAccessible() override
    {
        for (const auto& [key, id] : m_ids)
            QAccessible::deleteAccessibleInterface(id);
    }

    [[nodiscard]] int childCount() const override
    {
        return static_cast<int>(elements().size()) + QAccessibleWidget::childCount();
    }
    [[nodiscard]] QAccessibleInterface* child(int index) const override
    {
        const auto objects = elements();
        const auto count = static_cast<int>(objects.size());
        if (index < 0)
            return nullptr;
        return index < count ? interfaceOf(objects[static_cast<std::size_t>(index)])
                             : QAccessibleWidget::child(index - count);
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto objects = elements();
        for (std::size_t i = 0; i < objects.size(); ++i) {
            if (interfaceOf(objects[i]) == child)
                return static_cast<int>(i);
        }
        const int index = QAccessibleWidget::indexOfChild(child);
        return index < 0 ? index : index + static_cast<int>(objects.size());
    }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override
    {
        const auto objects = elements();
        for (auto each = objects.rbegin(); each != objects.rend(); ++each) {
            QAccessibleInterface* object = interfaceOf(*each);
            if (object->rect().contains(x, y))
                return object;
        }
        return QAccessibleWidget::childAt(x, y);
    }
    [[nodiscard]] QAccessibleInterface* focusChild() const override
    {
        const auto selected = selectedElement(canvas()->state());
        return canvas()->hasFocus() && selected ? interfaceOf(*selected) : QAccessibleWidget::focusChild();
    }

    [[nodiscard]] QAccessibleInterface* interfaceOf(const CanvasElement& element) const
    {
        const std::string key = element.id.toString();
        const auto known = m_ids.find(key);
        if (known != m_ids.end())
            return QAccessible::accessibleInterface(known->second);
        auto* made = new ElementAccessible(canvas(), element); // the registry owns it
        m_ids[key] = QAccessible::registerAccessibleInterface(made);
        return made;
    }

private:
    [[nodiscard]] CanvasView* canvas() const { return static_cast<CanvasView*>(widget()); }
    [[nodiscard]] std::vector<CanvasElement> elements() const
    {
        return canvasElements(canvas()->state().project(), canvas()->state().editorMode());
    }

    mutable std::map<std::string, QAccessible::Id> m_ids{};
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object)
{
    auto* canvas = qobject_cast<CanvasView*>(object);
    return canvas ? new CanvasAccessible(canvas) : nullptr;
}

void tell(CanvasView& canvas, const CanvasElement& element, QAccessible::Event event)
{
    if (!QAccessible::isActive())
        return;
    auto* list = dynamic_cast<CanvasAccessible*>(QAccessible::queryAccessibleInterface(&canvas));
    if (!list)
        return;
    QAccessibleEvent told(list->interfaceOf(element), event);
    QAccessible::updateAccessibility(&told);
}

} // namespace

void installCanvasAccessibility()
{
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    static_cast<void>(installed);
}

void announceSelection(CanvasView& canvas, const std::optional<CanvasElement>& element)
{
    if (!element)
        return;
    tell(canvas, *element, QAccessible::Selection);
    if (canvas.hasFocus())
        tell(canvas, *element, QAccessible::Focus);
}

void announceMoved(CanvasView& canvas, const CanvasElement& element)
{
    tell(canvas, element, QAccessible::LocationChanged);
    tell(canvas, element, QAccessible::NameChanged);
}

} // namespace velmora
