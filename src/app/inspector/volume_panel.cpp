#include "app/build/drive_picture.h"
#include "app/clipped_label.h"
#include "app/inspector/action_button.h"
#include "app/inspector/fields.h"
#include "app/inspector/panel.h"
#include "app/inspector/small_picture.h"
#include "app/inspector/volume_security.h"
#include "app/kit/checker_thumbnail.h"
#include "app/kit/form.h"
#include "app/kit/number_field.h"
#include "app/kit/plain_labels.h"
#include "app/kit/segmented_control.h"
#include "app/text.h"
#include "l10n/labels.h"
#include "model/enums.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace velmora
{
namespace
{

constexpr int iconSide = 48; // points, of the thumbnail
constexpr double largestMB = 1e6;
constexpr double largestStored = 9e15; // what a double holds exactly

/// The volume: its name and icon, the image's format, encryption and signature.
class VolumePanel : public InspectorPanel
{
public:
    explicit VolumePanel(const AppContext& context) : InspectorPanel(context)
    {
        addName();
        addFormat();
        auto* encryption = new EncryptionSection(state());
        insertSection(encryption);
        auto* signing = new SigningSection(state());
        insertSection(signing);
        onRefresh([encryption, signing] {
            encryption->refresh();
            signing->refresh();
        });
    }

private:
    AppState& state() { return m_context.state; }

    void addName()
    {
        Section* section = addSection(localized("section.volume_name"));
        auto* name = new QLineEdit;
        name->setObjectName(QStringLiteral("volume.name"));
        onRefresh(bindText(*name, projectField(state(), &DMGProject::volumeName, "volumeName")));
        FormRow* row = section->addRow(qtText(Labels::name), name);
        onRefresh([this, row] {
            const bool blank = qtText(state().project().volumeName).trimmed().isEmpty();
            row->setError(blank ? qtText(Labels::volumeNeedsName) : QString());
        });
        addIcon(*section);
    }

    void addIcon(Section& section)
    {
        auto* thumbnail = new CheckerThumbnail({iconSide, iconSide});
        auto* choose = actionButton(qtText(Labels::choose), "volume.chooseIcon", [this] { state().pickVolumeIcon(); });
        choose->setAccessibleName(qtText(Labels::chooseVolumeIcon));
        auto* remove = actionButton(localized("toolbar.remove"), "volume.removeIcon", [this] {
            state().edit({}, [](DMGProject& project) { project.volumeIconPath.clear(); });
        });
        remove->setAccessibleName(qtText(Labels::removeVolumeIcon));
        auto* name = new ClippedLabel(Type::hint, 1, QPalette::PlaceholderText);
        name->setObjectName(QStringLiteral("volume.iconName"));
        auto* controls = new QVBoxLayout;
        controls->setSpacing(lookOf(this).length(4));
        controls->addWidget(choose);
        controls->addWidget(remove);
        controls->addWidget(name);
        controls->addStretch(1);
        auto* holder = new QWidget;
        auto* row = new QHBoxLayout(holder);
        row->setContentsMargins({});
        row->setSpacing(lookOf(this).length(12));
        row->addWidget(thumbnail, 0, Qt::AlignTop);
        row->addLayout(controls, 1);
        FormRow* iconRow = section.addRow(qtText(Labels::icon), holder);
        onRefresh([=, this] {
            const std::string& path = state().project().volumeIconPath;
            remove->setVisible(!path.empty());
            name->setText(path.empty() ? qtText(Labels::standardIcon) : qtPath(std::filesystem::path(path).filename()));
            const SmallPicture& picture = m_icon.read(path);
            const bool broken = !path.empty() && !picture.isReadable();
            iconRow->setError(broken ? qtText(Labels::iconUnreadable) : QString());
            thumbnail->setSign(broken ? QStringLiteral("warning") : QString());
            thumbnail->setImage(path.empty() ? drive() : picture.image);
        });
    }

    /// What the volume looks like without an icon of its own.
    QImage drive()
    {
        if (m_drive.isNull())
            m_drive = drivePicture(iconSide, 2).toImage();
        return m_drive;
    }

    void addFormat()
    {
        Section* section = addSection(localized("section.volume_format"));
        section->addRow(
            makePopUp("volume.format", localized("section.volume_format"), state(), &DMGProject::format, reads()));

        auto* fileSystem = new SegmentedControl;
        fileSystem->setObjectName(QStringLiteral("volume.filesystem"));
        for (const FilesystemKind each : allCases<FilesystemKind>())
            fileSystem->addSegment(qtText(displayName(each)));
        onRefresh(bindSegments(*fileSystem, choiceField<int>(state(), &DMGProject::filesystem)));
        section->addRow(qtText(Labels::fileSystem), fileSystem);
        addSize(*section);

        auto* internet = new QCheckBox(qtText(Labels::internetEnabled));
        internet->setObjectName(QStringLiteral("volume.internetEnabled"));
        internet->setAccessibleDescription(qtText(Labels::internetEnabledWorth));
        onRefresh(bindCheck(*internet, choiceField<bool>(state(), &DMGProject::internetEnabled)));
        auto* worth = makeHint(qtText(Labels::internetEnabledWorth));
        auto* holder = new QWidget;
        auto* column = new QVBoxLayout(holder);
        column->setContentsMargins({});
        column->setSpacing(lookOf(this).length(2));
        column->addWidget(internet);
        column->addWidget(worth);
        section->addRow({}, holder);
    }

    void addSize(Section& section)
    {
        auto* sizing = new SegmentedControl;
        sizing->setObjectName(QStringLiteral("volume.imageSize"));
        sizing->addSegment(qtText(Labels::automatic));
        sizing->addSegment(qtText(Labels::manual));
        onRefresh(bindSegments(*sizing, twoWayField(state(), &DMGProject::imageSizeAutomatic)));
        section.addRow(qtText(Labels::imageSize), sizing);
        const auto megabytes = [](const DMGProject& p) { return static_cast<double>(p.manualSizeMB); };
        const auto store = [](DMGProject& p, double typed) {
            p.manualSizeMB = static_cast<std::int64_t>(std::clamp(typed, -largestStored, largestStored));
        };
        NumberField* size =
            makeNumber({.objectName = "volume.manualSize",
                        .spokenName = Labels::imageSize,
                        .minimum = 1,
                        .maximum = largestMB,
                        .step = 10,
                        .unit = "MB",
                        .decimals = 0},
                       {state(), megabytes, store, [] { return EditKey{.field = "manualSizeMB"}; }}, reads());
        size->setAccessibleDescription(QStringLiteral("megabytes"));
        size->setFixedWidth(lookOf(this).length(measure::halfControl));
        FormRow* row = section.addRow({}, atLeft({size}));
        onRefresh([this, row] { row->setVisible(!state().project().imageSizeAutomatic); });
    }

    SmallPictureReader m_icon{};
    QImage m_drive{};
};

} // namespace

InspectorPanel* makeVolumePanel(const AppContext& context)
{
    return new VolumePanel(context);
}

} // namespace velmora
