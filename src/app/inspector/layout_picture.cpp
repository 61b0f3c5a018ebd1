#include "app/inspector/layout_picture.h"

#include "app/clipped_label.h"
#include "app/inspector/action_button.h"
#include "app/inspector/fields.h"
#include "app/kit/checker_thumbnail.h"
#include "app/kit/form.h"
#include "app/kit/note_banner.h"
#include "app/kit/number_field.h"
#include "app/kit/paint.h"
#include "app/kit/path_label.h"
#include "app/kit/plain_labels.h"
#include "app/kit/value_slider.h"
#include "app/text.h"
#include "l10n/labels.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora
{
namespace
{

constexpr QSize thumbnail(96, 54); // points

/// The ground of the words that stand in a picture's place.
class EmptyWell : public QWidget
{
public:
    explicit EmptyWell(const QString& words)
    {
        auto* column = new QVBoxLayout(this);
        auto* label = makeHint(words, Type::control);
        label->setObjectName(QStringLiteral("layout.noImage"));
        label->setAlignment(Qt::AlignCenter);
        column->addWidget(label);
        setFixedHeight(lookOf(this).length(thumbnail.height()));
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        const Look& look = lookOf(this);
        QPainter painter(this);
        drawBox(painter, rect(), look.length(measure::buttonRadius), look.roles.field, look.roles.border);
    }
};

/// A widget that only holds rows.
QWidget* column(const QList<QWidget*>& rows)
{
    auto* holder = new QWidget;
    auto* layout = new QVBoxLayout(holder);
    layout->setContentsMargins({});
    layout->setSpacing(lookOf(holder).length(measure::rowGap));
    for (QWidget* row : rows)
        layout->addWidget(row);
    return holder;
}

/// The middle of the picture in the shape of what the thumbnail's frame leaves.
QImage cropped(const QImage& image)
{
    const QSize shape = (thumbnail - QSize(2, 2)).scaled(image.size(), Qt::KeepAspectRatio);
    return image.copy({QPoint((image.width() - shape.width()) / 2, (image.height() - shape.height()) / 2), shape});
}

} // namespace

PictureRows::PictureRows(AppState& state, SmallPictureReader& reader)
    : m_state(state),
      m_reader(reader),
      m_nothing(makeNothing()),
      m_head(makeHead()),
      m_unreadable(makeUnreadable()),
      m_adjustments(makeAdjustments())
{
    auto* replace =
        actionButton(localized("replace_image"), "layout.replaceImage", [this] { m_state.pickBackgroundImage(); });
    auto* remove =
        actionButton(localized("remove_background"), "layout.removeImage", [this] { m_state.clearBackgroundImage(); });
    m_buttons = sideBySide({replace, remove});
    // One name is much longer than the other.
    auto* shares = static_cast<QHBoxLayout*>(m_buttons->layout());
    shares->setStretch(0, replace->sizeHint().width());
    shares->setStretch(1, remove->sizeHint().width());
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->setSpacing(lookOf(this).length(measure::rowGap));
    for (QWidget* row : {m_nothing, m_head, m_unreadable, m_buttons, m_adjustments})
        rows->addWidget(row);
}

QWidget* PictureRows::makeNothing()
{
    return column({new EmptyWell(localized("no_image")), actionButton(localized("choose_image"), "layout.chooseImage",
                                                                      [this] { m_state.pickBackgroundImage(); })});
}

QWidget* PictureRows::makeHead()
{
    m_thumbnail = new CheckerThumbnail(thumbnail);
    m_name = new ClippedLabel(Type::control, 1, QPalette::WindowText);
    m_name->setObjectName(QStringLiteral("layout.imageName"));
    m_size = makeHint({});
    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addStretch(1);
    words->addWidget(m_name);
    words->addWidget(m_size);
    words->addStretch(1);
    auto* head = new QWidget;
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins({});
    row->setSpacing(lookOf(this).length(12));
    row->addWidget(m_thumbnail);
    row->addLayout(words, 1);
    return head;
}

QWidget* PictureRows::makeUnreadable()
{
    auto* note = new NoteBanner;
    note->setObjectName(QStringLiteral("layout.imageUnreadable"));
    note->setText(qtText(Labels::pictureUnreadable));
    m_path = new PathLabel;
    m_path->setObjectName(QStringLiteral("layout.imagePath"));
    m_path->setAccessibleName(qtText(Labels::path));
    return column({note, m_path});
}

QWidget* PictureRows::makeAdjustments()
{
    QComboBox* fit = makePopUp("layout.fitMode", {}, m_state, &DMGProject::backgroundImageFit, m_reads);
    auto* scale = new ValueSlider({.minimum = 0.25, .maximum = 3, .step = 0.05});
    scale->setObjectName(QStringLiteral("layout.imageScale"));
    scale->setText([](double value) { return NumberField::format(value * 100, 0) + QLatin1Char('%'); });
    scale->setSpokenText([](double value) { return NumberField::format(value * 100, 0) + QStringLiteral(" percent"); });
    scale->setHome(1, 0.02);
    m_reads.push_back(
        bindSlider(*scale, projectField(m_state, &DMGProject::backgroundImageScale, "backgroundImageScale")));

    const auto offset = [this](const NumberSpec& spec, double DMGProject::*member, const char* name) {
        return makeNumber(spec, projectField(m_state, member, name), m_reads);
    };
    NumberField* x = offset({.objectName = "layout.imageOffsetX",
                             .spokenName = Labels::imageOffsetX,
                             .prefix = "X",
                             .minimum = -2000,
                             .maximum = 2000},
                            &DMGProject::backgroundImageOffsetX, "backgroundImageOffsetX");
    NumberField* y = offset({.objectName = "layout.imageOffsetY",
                             .spokenName = Labels::imageOffsetY,
                             .prefix = "Y",
                             .minimum = -2000,
                             .maximum = 2000},
                            &DMGProject::backgroundImageOffsetY, "backgroundImageOffsetY");
    QPushButton* reset = actionButton(localized("bg_reset_adjust"), "layout.resetAdjustments",
                                      [this] { m_state.resetBackgroundImageAdjustments(); });
    return column({makeHint(localized("bg_image_active")), new FormRow(localized("bg_fit_mode"), fit),
                   new FormRow(localized("bg_scale"), scale),
                   new FormRow(localized("text_shadow_offset"), sideBySide({x, y})), reset});
}

void PictureRows::refresh()
{
    for (const auto& read : m_reads)
        read();
    const std::string& path = m_state.project().backgroundImagePath;
    const bool none = path.empty();
    const SmallPicture& picture = m_reader.read(path);
    m_nothing->setVisible(none);
    m_head->setVisible(!none && picture.isReadable());
    m_unreadable->setVisible(!none && !picture.isReadable());
    m_buttons->setVisible(!none);
    m_adjustments->setVisible(!none && picture.isReadable());
    if (!none)
        showPicture(picture);
}

void PictureRows::showPicture(const SmallPicture& picture)
{
    const std::filesystem::path path = m_state.project().backgroundImagePath;
    m_name->setText(qtPath(path.filename()));
    m_path->setPath(qtPath(path));
    m_size->setText(qtText(Labels::pixelSize).arg(picture.pixels.width()).arg(picture.pixels.height()));
    if (picture.isReadable() && picture.image.cacheKey() != m_shown) {
        m_shown = picture.image.cacheKey();
        m_thumbnail->setImage(cropped(picture.image));
    }
}

} // namespace velmora
