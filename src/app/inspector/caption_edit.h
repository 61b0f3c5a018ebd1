#pragma once

#include <QPlainTextEdit>

namespace velmora
{

/// A field for a few lines of text: as tall as three lines, growing with its text to six.
class CaptionEdit : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit CaptionEdit(QWidget* parent = nullptr);

    /// Takes on a text without a signal of edited(); the same text leaves cursor and selection where they are.
    void setText(const QString& text);

signals:
    void edited(const QString& text);
    /// The focus left.
    void editingFinished();

protected:
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void fitHeight();

    bool m_taking = false;
};

} // namespace velmora
