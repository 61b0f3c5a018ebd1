#pragma once

#include "app/kit/look.h"

#include <QWidget>

namespace velmora
{

/// A text on at most so many lines, with an ellipsis where it does not fit; the whole of it is the tooltip then. It is
/// shown as it stands and asks for no width of its own.
class ClippedLabel : public QWidget
{
    Q_OBJECT

public:
    /// One line is shortened in its middle, so that both ends of a path are seen; several at their end.
    ClippedLabel(Type type, int lines, QPalette::ColorRole role, QWidget* parent = nullptr);

    void setText(const QString& text);
    [[nodiscard]] const QString& text() const { return m_text; }

    [[nodiscard]] bool hasHeightForWidth() const override { return m_lines > 1; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] QStringList linesFor(int width) const;
    void updateToolTip();

    Type m_type;
    int m_lines;
    QString m_text{};
};

} // namespace velmora
