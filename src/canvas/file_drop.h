#pragma once

#include <QWidget>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

class QMimeData;

namespace velmora
{

/// The part of the canvas that takes files: an invisible widget over the drawn window. A drag that a widget has once
/// taken or refused stays so until it leaves the widget, hence one of its own; what is dropped beside it goes to the
/// windows below. Mouse and wheel pass through to the canvas.
class DropSurface : public QWidget
{
    Q_OBJECT

public:
    explicit DropSurface(QWidget* canvas);

    /// Leaves files of this extension to the windows below.
    void leaveToOthers(std::string_view extension) { m_left = extension; }

    /// The first file of a drag; nothing when it carries none.
    static std::optional<std::filesystem::path> firstFile(const QMimeData& data);

signals:
    void targetedChanged(bool targeted);
    /// A file was dropped at a point of the canvas widget.
    void dropped(const std::filesystem::path& file, QPointF canvasPoint);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    std::string m_left{};
};

} // namespace velmora
