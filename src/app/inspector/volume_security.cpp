#include "app/inspector/volume_security.h"

#include "app/inspector/fields.h"
#include "app/kit/password_field.h"
#include "app/text.h"
#include "l10n/labels.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

namespace velmora
{
EncryptionSection::EncryptionSection(AppState& state)
    : Section(qtText(Labels::encryption)), m_state(state), m_password(new PasswordField), m_repeat(new QLineEdit)
{
    addRow(makePopUp("volume.encryption", qtText(Labels::encryption), m_state, &DMGProject::encryption, m_reads));

    m_password->setObjectName(QStringLiteral("volume.password"));
    m_repeat->setObjectName(QStringLiteral("volume.passwordRepeat"));
    m_repeat->setEchoMode(QLineEdit::Password);
    m_passwordRow = addRow(qtText(Labels::password), m_password);
    m_repeatRow = addRow(qtText(Labels::repeat), m_repeat);
    // Before the project hears of it, so that refresh() can tell typing from every other change.
    connect(m_password, &QLineEdit::textEdited, this, [this](const QString& text) { m_seen = text.toStdString(); });
    m_reads.push_back(
        bindText(*m_password, projectField(m_state, &DMGProject::encryptionPassword, "encryptionPassword")));
    connect(m_password, &QLineEdit::editingFinished, this, &EncryptionSection::showFaults);
    connect(m_password, &PasswordField::shownChanged, m_repeat,
            [this](bool shown) { m_repeat->setEchoMode(shown ? QLineEdit::Normal : QLineEdit::Password); });
    connect(m_repeat, &QLineEdit::textEdited, this, &EncryptionSection::showFaults);
}

void EncryptionSection::refresh()
{
    for (const auto& read : m_reads)
        read();
    const DMGProject& project = m_state.project();
    if (project.encryptionPassword != m_seen) {
        // From a document, or a step back: nobody has to prove that it was meant.
        m_seen = project.encryptionPassword;
        m_repeat->setText(qtText(m_seen));
    }
    const bool encrypts = project.encryption != ImageEncryption::none;
    m_passwordRow->setVisible(encrypts);
    m_repeatRow->setVisible(encrypts);
    showFaults();
}

void EncryptionSection::showFaults()
{
    const std::string& password = m_state.project().encryptionPassword;
    m_passwordRow->setError(password.empty() ? qtText(Labels::enterPassword) : QString());
    // Whoever is still at the first field has not come to the second yet.
    const bool early = m_repeat->text().isEmpty() && m_password->hasFocus();
    const bool differ = !early && m_repeat->text().toStdString() != password;
    m_repeatRow->setError(differ ? qtText(Labels::passwordsDiffer) : QString());
}

SigningSection::SigningSection(AppState& state) : Section(qtText(Labels::signing)), m_state(state)
{
    addRow(makePopUp("volume.signing", qtText(Labels::signing), m_state, &DMGProject::signingMode, m_reads));
    m_identity = addText(Labels::identity, "volume.identity", &DMGProject::codeSignIdentity, "codeSignIdentity",
                         Labels::identityPlaceholder);
    m_profile = addText(Labels::profile, "volume.profile", &DMGProject::notaryProfile, "notaryProfile");
    m_hint = addHint({});
}

FormRow* SigningSection::addText(const char* label, const char* objectName, std::string DMGProject::*member,
                                 const char* field, const char* placeholder)
{
    auto* edit = new QLineEdit;
    edit->setObjectName(QLatin1String(objectName));
    edit->setPlaceholderText(qtText(placeholder));
    m_reads.push_back(bindText(*edit, projectField(m_state, member, field)));
    return addRow(qtText(label), edit);
}

void SigningSection::refresh()
{
    for (const auto& read : m_reads)
        read();
    const DMGProject& project = m_state.project();
    const SigningMode mode = project.signingMode;
    m_identity->setVisible(signs(mode));
    m_identity->setError(project.codeSignIdentity.empty() ? qtText(Labels::enterIdentity) : QString());
    m_profile->setVisible(notarizes(mode));
    m_profile->setError(project.notaryProfile.empty() ? qtText(Labels::enterProfile) : QString());
    m_hint->setText(qtText(notarizes(mode) ? Labels::signedAndNotarized
                           : signs(mode)   ? Labels::signedOnly
                                           : Labels::unsignedImage));
}

} // namespace velmora
