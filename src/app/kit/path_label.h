#pragma once

#include <QTextEdit>

namespace velmora
{

/// A path as text that can be selected, wrapped behind its separators. Copying gives the path, less zero-width spaces
/// of its own: those are what wraps it.
class PathLabel : public QTextEdit
{
    Q_OBJECT

public:
    explicit PathLabel(QWidget* parent = nullptr);

    void setPath(const QString& path);
    [[nodiscard]] QString path() const { return m_path; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;
    void wheelEvent(QWheelEvent* event) override;

private:
    QString m_path;
};

} // namespace velmora
