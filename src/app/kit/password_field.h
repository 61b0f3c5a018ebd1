#pragma once

#include <QLineEdit>

class QAction;

namespace velmora
{

/// A field whose text is hidden until its eye is pressed.
class PasswordField : public QLineEdit
{
    Q_OBJECT

public:
    explicit PasswordField(QWidget* parent = nullptr);

    /// The eye's names for assistive technology and its tooltip.
    void setEyeTexts(const QString& show, const QString& hide);

signals:
    /// The eye was pressed: whether the text can be read now.
    void shownChanged(bool shown);

private:
    void showEye();

    QAction* m_eye;
    QString m_show = QStringLiteral("Show Password");
    QString m_hide = QStringLiteral("Hide Password");
};

} // namespace velmora
