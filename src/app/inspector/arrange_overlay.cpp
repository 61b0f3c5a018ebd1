#include "app/clipped_label.h"
#include "app/inspector/action_button.h"
#include "app/inspector/arrange_part.h"
#include "app/kit/checker_thumbnail.h"
#include "app/kit/form.h"
#include "app/kit/look.h"
#include "app/kit/note_banner.h"
#include "app/kit/number_field.h"
#include "app/kit/plain_labels.h"
#include "app/text.h"
#include "canvas/canvas_elements.h"
#include "l10n/labels.h"
#include "render/built_in_arrows.h"
#include "render/overlay_images.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace velmora
{
namespace
{

class ArrangeOverlay : public ArrangePart
{
public:
    explicit ArrangeOverlay(const AppContext& context)
        : ArrangePart(context),
          m_preview(new CheckerThumbnail(QSize(268, 96))),
          m_missing(new NoteBanner),
          m_name(new ClippedLabel(Type::controlStrong, 1, QPalette::WindowText)),
          m_about(makeHint({}))
    {
        Section* section = addSection(localized("section.overlay_image"));
        addPicture(*section);
        addBox(*section);
        addButtons(*section);
        addButtonSection(actionButton(localized("remove_overlay"), "arrange.removeOverlay",
                                      [this] { state().removeSelectedOverlay(); }));
    }

    [[nodiscard]] bool applies() const override { return state().selectedOverlay() != nullptr; }

    void refresh() override
    {
        ArrangePart::refresh();
        if (const DMGOverlayImage* overlay = state().selectedOverlay())
            showPicture(*overlay);
    }

    void showDraggedBox(const Uuid& id, const Rect& box) override
    {
        if (state().overlaySelection() == id)
            m_box.show(box);
    }

private:
    void addPicture(Section& section)
    {
        m_preview->setInset(10);
        m_preview->setObjectName(QStringLiteral("arrange.overlayPreview"));
        section.addRow(m_preview);
        m_missing->setObjectName(QStringLiteral("arrange.overlayMissing"));
        m_missing->setText(qtText(Labels::pictureMissing), qtText(Labels::pictureMissingRest));
        m_missing->setButton(localized("replace_image"));
        m_missing->button()->setObjectName(QStringLiteral("arrange.replaceImage"));
        connect(m_missing, &NoteBanner::buttonClicked, this, [this] {
            if (const auto id = state().overlaySelection())
                state().replaceOverlayImageViaPanel(*id);
        });
        section.addRow(m_missing);
        m_name->setObjectName(QStringLiteral("arrange.overlayName"));
        m_about->setWordWrap(false);
        auto* row = new QWidget;
        auto* line = new QHBoxLayout(row);
        line->setContentsMargins({});
        line->setSpacing(lookOf(this).length(measure::rowGap));
        line->addWidget(m_name, 1);
        line->addWidget(m_about);
        section.addRow(row);
    }

    void addBox(Section& section)
    {
        const auto selected = [this] { return state().overlaySelection(); };
        using O = DMGOverlayImage;
        const auto side = [](const char* name, const char* spoken, const char* letter) {
            return NumberSpec{
                .objectName = name, .spokenName = spoken, .prefix = letter, .minimum = 16, .maximum = 2000};
        };
        m_box = {
            addNumber({.objectName = "arrange.overlayX", .spokenName = Labels::imageX, .prefix = "X"}, selected, &O::x),
            addNumber({.objectName = "arrange.overlayY", .spokenName = Labels::imageY, .prefix = "Y"}, selected, &O::y),
            addNumber(side("arrange.overlayWidth", Labels::imageWidth, "W"), selected, &O::width),
            addNumber(side("arrange.overlayHeight", Labels::imageHeight, "H"), selected, &O::height)};
        section.addRow(localized("text_position"), sideBySide({m_box.x, m_box.y}));
        section.addRow(qtText(Labels::size), sideBySide({m_box.width, m_box.height}));
    }

    void addButtons(Section& section)
    {
        const auto button = [this](const QString& text, const char* name, void (AppState::*act)(const Uuid&)) {
            return actionButton(text, name, [this, act] {
                if (const auto id = state().overlaySelection())
                    (state().*act)(*id);
            });
        };
        m_original =
            button(localized("overlay_original_size"), "arrange.originalSize", &AppState::resetOverlayToOriginalSize);
        m_forward = button(qtText(Labels::bringForward), "arrange.bringForward", &AppState::bringOverlayForward);
        m_backward = button(qtText(Labels::sendBackward), "arrange.sendBackward", &AppState::sendOverlayBackward);
        section.addRow(m_original);
        section.addRow(sideBySide({m_forward, m_backward}));
        section.addHint(localized("overlay_hint"));
    }

    void showPicture(const DMGOverlayImage& overlay)
    {
        const PicturePtr picture = OverlayImageResolver::load(overlay, m_context.arrows, m_context.pictures);
        m_preview->setImage(picture ? picture->pixels : QImage());
        m_preview->setSign(picture ? QString() : QStringLiteral("warning"));
        m_missing->setVisible(!picture);
        const QString name = nameOf({CanvasElement::Kind::overlay, overlay.id}, state().project());
        m_name->setText(name);
        m_preview->setAccessibleName(name);
        if (BuiltInArrowLibrary::find(overlay.builtInArrowID.value_or("")))
            m_about->setText(qtText(Labels::builtInArrow));
        else
            m_about->setText(picture
                                 ? qtText(Labels::pixelSize).arg(picture->pixels.width()).arg(picture->pixels.height())
                                 : QString());
        m_original->setEnabled(overlay.canResetToOriginalSize());
        m_forward->setEnabled(state().canBringOverlayForward(overlay.id));
        m_backward->setEnabled(state().canSendOverlayBackward(overlay.id));
    }

    CheckerThumbnail* m_preview;
    NoteBanner* m_missing;
    ClippedLabel* m_name;
    QLabel* m_about;
    BoxFields m_box{};
    QPushButton* m_original = nullptr;
    QPushButton* m_forward = nullptr;
    QPushButton* m_backward = nullptr;
};

} // namespace

ArrangePart* makeArrangeOverlay(const AppContext& context)
{
    return new ArrangeOverlay(context);
}

} // namespace velmora
