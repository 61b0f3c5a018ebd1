#pragma once

#include "app/kit/note.h"

class QPushButton;

namespace velmora
{

class ClippedLabel;

/// What a person has to know of a finished build, on a coloured ground above the log: why it failed, or what the image
/// lacks; with one button that leads to the cause.
class BuildNote : public Note
{
    Q_OBJECT

public:
    enum class Kind { error, warning };

    explicit BuildNote(QWidget* parent = nullptr);

    /// An empty `button` means none.
    void show(Kind kind, const QString& headline, const QString& detail, const QString& button = {});
    [[nodiscard]] QPushButton* button() const { return m_button; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Kind m_kind = Kind::error;
    ClippedLabel* m_headline;
    ClippedLabel* m_detail;
    QPushButton* m_button;
};

} // namespace velmora
