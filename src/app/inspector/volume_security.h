#pragma once

#include "app/kit/form.h"
#include "model/project.h"

#include <functional>
#include <string>
#include <vector>

class QLineEdit;

namespace velmora
{

class AppState;
class PasswordField;

/// Whether and with which password the image is encrypted. The password is typed twice; the second time is a matter of
/// this section alone and never stored.
class EncryptionSection : public Section
{
    Q_OBJECT

public:
    explicit EncryptionSection(AppState& state);

    void refresh();

private:
    void showFaults();

    AppState& m_state;
    std::vector<std::function<void()>> m_reads{};
    PasswordField* m_password;
    QLineEdit* m_repeat;
    FormRow* m_passwordRow;
    FormRow* m_repeatRow;
    std::string m_seen{}; ///< the password that the repeated one is to match
};

/// How the image is signed.
class SigningSection : public Section
{
    Q_OBJECT

public:
    explicit SigningSection(AppState& state);

    void refresh();

private:
    FormRow* addText(const char* label, const char* objectName, std::string DMGProject::*member, const char* field,
                     const char* placeholder = "");

    AppState& m_state;
    std::vector<std::function<void()>> m_reads{};
    FormRow* m_identity;
    FormRow* m_profile;
    QLabel* m_hint;
};

} // namespace velmora
