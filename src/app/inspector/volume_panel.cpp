#include "app/inspector/fields.h"
#include "app/inspector/panel.h"
#include "app/kit/form.h"
#include "app/kit/number_field.h"
#include "app/kit/password_field.h"
#include "app/kit/segmented_control.h"
#include "app/text.h"
#include "l10n/labels.h"
#include "model/enums.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

namespace velmora
{
namespace
{

class VolumePanel : public InspectorPanel
{
public:
    explicit VolumePanel(const AppContext& context) : InspectorPanel(context)
    {
        addName();
        addFormat();
        addEncryption();
        addSigning();
    }

private:
    AppState& state() { return m_context.state; }

    QLineEdit* text(QLineEdit* field, const char* name, std::string DMGProject::*member, const char* key)
    {
        field->setObjectName(QLatin1String(name));
        onRefresh(bindText(*field, projectField(state(), member, key)));
        return field;
    }

    /// A pop-up for an enumeration of the project.
    template <typename E>
    QComboBox* choice(const char* name, const QString& spoken, E DMGProject::*member)
    {
        auto* box = new QComboBox;
        box->setObjectName(QLatin1String(name));
        box->setAccessibleName(spoken);
        for (const E each : allCases<E>())
            box->addItem(qtText(displayName(each)));
        connect(box, &QComboBox::activated, this, [this, member](int index) {
            state().edit({}, [=](DMGProject& p) { p.*member = static_cast<E>(index); });
        });
        onRefresh([this, box, member] { box->setCurrentIndex(static_cast<int>(state().project().*member)); });
        return box;
    }

    void addName()
    {
        Section* section = addSection(localized("section.volume_name"));
        FormRow* row = section->addRow(qtText(Labels::name),
                                       text(new QLineEdit, "volume.name", &DMGProject::volumeName, "volumeName"));
        onRefresh([this, row] {
            const bool blank = qtText(state().project().volumeName).trimmed().isEmpty();
            row->setError(blank ? qtText(Labels::volumeNeedsName) : QString());
        });
        auto* icon = new QPushButton(qtText(Labels::choose));
        icon->setObjectName(QStringLiteral("volume.chooseIcon"));
        connect(icon, &QPushButton::clicked, this, [this] { state().pickVolumeIcon(); });
        section->addRow(qtText(Labels::icon), icon);
        onRefresh([this, icon] {
            const std::filesystem::path path = state().project().volumeIconPath;
            icon->setToolTip(path.empty() ? qtText(Labels::standardIcon) : qtPath(path.filename()).toHtmlEscaped());
        });
    }

    void addFormat()
    {
        Section* section = addSection(localized("section.volume_format"));
        section->addRow(choice("volume.format", localized("section.volume_format"), &DMGProject::format));
        auto* fileSystem = new SegmentedControl;
        fileSystem->setObjectName(QStringLiteral("volume.filesystem"));
        for (const FilesystemKind each : allCases<FilesystemKind>())
            fileSystem->addSegment(qtText(displayName(each)));
        onRefresh(
            bindSegments(*fileSystem, {state(), [](const DMGProject& p) { return static_cast<int>(p.filesystem); },
                                       [](DMGProject& p, int i) { p.filesystem = static_cast<FilesystemKind>(i); },
                                       [] { return EditKey{}; }}));
        section->addRow(qtText(Labels::fileSystem), fileSystem);
        auto* sizing = new SegmentedControl;
        sizing->setObjectName(QStringLiteral("volume.imageSize"));
        sizing->addSegment(qtText(Labels::automatic));
        sizing->addSegment(qtText(Labels::manual));
        onRefresh(bindSegments(*sizing, {state(), [](const DMGProject& p) { return p.imageSizeAutomatic ? 0 : 1; },
                                         [](DMGProject& p, int i) { p.imageSizeAutomatic = i == 0; },
                                         [] { return EditKey{}; }}));
        section->addRow(qtText(Labels::imageSize), sizing);
        auto* size = new NumberField;
        onRefresh(bindNumber(
            *size,
            {.objectName = "volume.manualSize",
             .spokenName = "Image size",
             .minimum = 1,
             .maximum = 1e6,
             .step = 10,
             .unit = "MB",
             .decimals = 0},
            {state(), [](const DMGProject& p) { return static_cast<double>(p.manualSizeMB); },
             [](DMGProject& p, double mb) { p.manualSizeMB = static_cast<std::int64_t>(std::clamp(mb, -9e15, 9e15)); },
             [] { return EditKey{.field = "manualSizeMB"}; }}));
        QWidget* sizeRow = section->addRow({}, size);
        onRefresh([this, sizeRow] { sizeRow->setVisible(!state().project().imageSizeAutomatic); });
        auto* internet = new QCheckBox(qtText(Labels::internetEnabled));
        internet->setObjectName(QStringLiteral("volume.internetEnabled"));
        onRefresh(
            bindCheck(*internet, {state(), [](const DMGProject& p) { return p.internetEnabled; },
                                  [](DMGProject& p, bool on) { p.internetEnabled = on; }, [] { return EditKey{}; }}));
        section->addRow({}, internet);
    }

    void addEncryption()
    {
        Section* section = addSection(qtText(Labels::encryption));
        section->addRow(choice("volume.encryption", qtText(Labels::encryption), &DMGProject::encryption));
        FormRow* row =
            section->addRow(qtText(Labels::password), text(new PasswordField, "volume.password",
                                                           &DMGProject::encryptionPassword, "encryptionPassword"));
        onRefresh([this, row] {
            const DMGProject& project = state().project();
            row->setVisible(project.encryption != ImageEncryption::none);
            row->setError(project.encryptionPassword.empty() ? qtText(Labels::enterPassword) : QString());
        });
    }

    void addSigning()
    {
        Section* section = addSection(qtText(Labels::signing));
        section->addRow(choice("volume.signing", qtText(Labels::signing), &DMGProject::signingMode));
        FormRow* identity =
            section->addRow(qtText(Labels::identity),
                            text(new QLineEdit, "volume.identity", &DMGProject::codeSignIdentity, "codeSignIdentity"));
        FormRow* profile = section->addRow(qtText(Labels::profile), text(new QLineEdit, "volume.profile",
                                                                         &DMGProject::notaryProfile, "notaryProfile"));
        onRefresh([this, identity, profile] {
            const DMGProject& project = state().project();
            identity->setVisible(signs(project.signingMode));
            identity->setError(project.codeSignIdentity.empty() ? qtText(Labels::enterIdentity) : QString());
            profile->setVisible(notarizes(project.signingMode));
            profile->setError(project.notaryProfile.empty() ? qtText(Labels::enterProfile) : QString());
        });
    }
};

} // namespace

InspectorPanel* makeVolumePanel(const AppContext& context)
{
    return new VolumePanel(context);
}

} // namespace velmora
