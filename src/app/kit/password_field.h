#pragma once

#include <QLineEdit>

class QAction;
class QToolButton;

namespace velmora
{

/// A field whose text is hidden until its eye is pressed.
class PasswordField : public QLineEdit
{
    Q_OBJECT

public:
    explicit PasswordField(QWidget* parent = nullptr);

signals:
    /// The eye was pressed: whether the text can be read now.
    void shownChanged(bool shown);

private:
    void showEye();

    QAction* m_eye;
    QToolButton* m_button = nullptr;
};

} // namespace velmora
