#include "app/inspector/fields.h"
#include "app/inspector/panel.h"
#include "app/kit/color_well.h"
#include "app/kit/empty_state.h"
#include "app/kit/form.h"
#include "app/kit/look.h"
#include "app/kit/number_field.h"
#include "app/plain_widgets.h"
#include "app/text.h"
#include "l10n/labels.h"
#include "model/enums.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace velmora
{
namespace
{

/// The text of a caption, several lines of it.
class CaptionEdit : public QPlainTextEdit
{
public:
    explicit CaptionEdit(AppState& state) : m_state(state) { setTabChangesFocus(true); }

protected:
    void focusOutEvent(QFocusEvent* event) override
    {
        QPlainTextEdit::focusOutEvent(event);
        m_state.endTypingRun();
    }

private:
    AppState& m_state;
};

/// Place, size and text of what is selected.
class ArrangePanel : public InspectorPanel
{
public:
    explicit ArrangePanel(const AppContext& context) : InspectorPanel(context)
    {
        addItem();
        addOverlay();
        addText();
        Section* nothing = addSection({});
        nothing->addRow(new EmptyState(QStringLiteral("arrange"), qtText(Labels::nothingSelected),
                                       qtText(Labels::nothingSelectedAdvice)));
        onRefresh([this, nothing] {
            const bool text = state().selectedTextOverlay() != nullptr;
            const bool overlay = !text && state().selectedOverlay();
            const bool item = !text && !overlay && state().selectedItem();
            m_item->setVisible(item);
            m_overlay->setVisible(overlay);
            m_text->setVisible(text);
            nothing->setVisible(!text && !overlay && !item);
        });
    }

private:
    AppState& state() { return m_context.state; }

    template <typename Element>
    struct NumberRow {
        const char* label;
        NumberSpec first;
        double Element::*firstMember;
        NumberSpec second;
        double Element::*secondMember;
    };

    template <typename Element>
    void addNumbers(Section& section, const std::function<std::optional<Uuid>()>& selected,
                    const NumberRow<Element>& row)
    {
        const auto number = [&](const NumberSpec& spec, double Element::*member) {
            auto* field = new NumberField;
            onRefresh(
                bindNumber(*field, spec, elementField<Element, double>(state(), selected, member, spec.objectName)));
            return field;
        };
        section.addRow(qtText(row.label),
                       sideBySide({number(row.first, row.firstMember), number(row.second, row.secondMember)}));
    }

    QPushButton* button(const QString& text, const char* name, std::function<void()> act)
    {
        auto* made = new QPushButton(withoutMnemonics(text));
        made->setObjectName(QLatin1String(name));
        made->setAccessibleName(accessibleNameFor(text));
        connect(made, &QPushButton::clicked, this, std::move(act));
        return made;
    }

    void addItem()
    {
        m_item = addSection(qtText(Labels::selectedItem));
        addNumbers<DMGItem>(*m_item, [this] { return state().selection(); },
                            {Labels::position,
                             {.objectName = "arrange.itemX", .spokenName = "Icon X", .prefix = "X"},
                             &DMGItem::x,
                             {.objectName = "arrange.itemY", .spokenName = "Icon Y", .prefix = "Y"},
                             &DMGItem::y});
        m_item->addRow(button(qtText(Labels::removeItem), "arrange.removeItem", [this] { state().removeSelected(); }));
    }

    void addOverlay()
    {
        m_overlay = addSection(localized("section.overlay_image"));
        const auto selected = [this] { return state().overlaySelection(); };
        using O = DMGOverlayImage;
        addNumbers<O>(*m_overlay, selected,
                      {Labels::position,
                       {.objectName = "arrange.overlayX", .spokenName = "Image X", .prefix = "X"},
                       &O::x,
                       {.objectName = "arrange.overlayY", .spokenName = "Image Y", .prefix = "Y"},
                       &O::y});
        addNumbers<O>(*m_overlay, selected,
                      {Labels::size,
                       {.objectName = "arrange.overlayWidth",
                        .spokenName = "Image width",
                        .prefix = "W",
                        .minimum = 16,
                        .maximum = 2000},
                       &O::width,
                       {.objectName = "arrange.overlayHeight",
                        .spokenName = "Image height",
                        .prefix = "H",
                        .minimum = 16,
                        .maximum = 2000},
                       &O::height});
        QPushButton* original = button(localized("overlay_original_size"), "arrange.originalSize", [this] {
            if (const auto id = state().overlaySelection())
                state().resetOverlayToOriginalSize(*id);
        });
        onRefresh([this, original] {
            const O* overlay = state().selectedOverlay();
            original->setEnabled(overlay && overlay->canResetToOriginalSize());
        });
        m_overlay->addRow(original);
        m_overlay->addHint(localized("overlay_hint"));
        m_overlay->addRow(
            button(localized("remove_overlay"), "arrange.removeOverlay", [this] { state().removeSelectedOverlay(); }));
    }

    void addText()
    {
        m_text = addSection(localized("section.text_overlay"));
        const auto selected = [this] { return state().textSelection(); };
        using T = DMGTextOverlay;
        auto* identifier = new QLineEdit;
        identifier->setObjectName(QStringLiteral("arrange.textIdentifier"));
        onRefresh(bindText(*identifier, elementField<T, std::string>(state(), selected, &T::identifier, "identifier")));
        m_text->addRow(localized("text_identifier"), identifier);
        m_text->addRow(localized("text_content"), captionEdit(selected));
        QPushButton* font = button(localized("text_font"), "arrange.textFont", [this] {
            if (const auto id = state().textSelection())
                state().presentFontPanel(*id);
        });
        onRefresh([this, font] {
            if (const T* text = state().selectedTextOverlay())
                font->setText(withoutMnemonics(qtText(text->fontName) + QStringLiteral(" – ") +
                                               NumberField::format(text->fontSize, 2) + QStringLiteral(" pt")));
        });
        m_text->addRow(qtText(Labels::font), font);
        auto* color = new ColorWell;
        color->setObjectName(QStringLiteral("arrange.textColor"));
        color->setAccessibleName(QStringLiteral("Text color"));
        onRefresh(bindColor(*color, elementField<T, CodableColor>(state(), selected, &T::color, "color")));
        m_text->addRow(localized("text_color"), atLeft({color}));
        addNumbers<T>(*m_text, selected,
                      {Labels::position,
                       {.objectName = "arrange.textX", .spokenName = "Text X", .prefix = "X"},
                       &T::x,
                       {.objectName = "arrange.textY", .spokenName = "Text Y", .prefix = "Y"},
                       &T::y});
        addNumbers<T>(*m_text, selected,
                      {Labels::size,
                       {.objectName = "arrange.textWidth",
                        .spokenName = "Text width",
                        .prefix = "W",
                        .minimum = 40,
                        .maximum = 2000},
                       &T::width,
                       {.objectName = "arrange.textHeight",
                        .spokenName = "Text height",
                        .prefix = "H",
                        .minimum = 24,
                        .maximum = 2000},
                       &T::height});
        const auto center = [this](const char* key, const char* name, bool horizontal, bool vertical) {
            return button(localized(key), name, [=, this] {
                if (const auto id = state().textSelection())
                    state().centerTextOverlayOnCanvas(horizontal, vertical, *id);
            });
        };
        m_text->addRow(sideBySide({center("text_center_h", "arrange.centerH", true, false),
                                   center("text_center_v", "arrange.centerV", false, true),
                                   center("text_center_both", "arrange.center", true, true)}));
        m_text->addHint(localized("text_overlay_hint"));
        m_text->addRow(
            button(localized("remove_text"), "arrange.removeText", [this] { state().removeSelectedTextOverlay(); }));
    }

    QWidget* captionEdit(const std::function<std::optional<Uuid>()>& selected)
    {
        auto* edit = new CaptionEdit(state());
        edit->setObjectName(QStringLiteral("arrange.textContent"));
        edit->setAccessibleName(localized("text_content"));
        edit->setFixedHeight(lookOf(this).length(60));
        const auto field = elementField<DMGTextOverlay, std::string>(state(), selected, &DMGTextOverlay::text, "text");
        const auto shown = [edit] { return exactText(*edit).toStdString(); };
        connect(edit, &QPlainTextEdit::textChanged, this, [this, field, shown] {
            if (!m_showing)
                field.store(shown());
        });
        onRefresh([this, edit, field, shown] {
            m_showing = true;
            if (shown() != field.value())
                edit->setPlainText(qtText(field.value()));
            m_showing = false;
        });
        return edit;
    }

    Section* m_item = nullptr;
    Section* m_overlay = nullptr;
    Section* m_text = nullptr;
    bool m_showing = false; ///< text is put into the field, not typed
};

} // namespace

InspectorPanel* makeArrangePanel(const AppContext& context)
{
    return new ArrangePanel(context);
}

} // namespace velmora
