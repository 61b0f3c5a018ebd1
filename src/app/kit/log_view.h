#pragma once

#include <QPlainTextEdit>
#include <QTimer>

#include <vector>

class QPushButton;

namespace velmora
{

enum class LogLine { message, command, warning, error, success };

/// A read-only log in the fixed font. It follows its end until the person scrolls away; a capsule in the corner leads
/// back. It keeps the last 5,000 lines. Lines are shown in batches, so that a flood of them does not hold up the
/// window.
class LogView : public QPlainTextEdit
{
    Q_OBJECT

public:
    static constexpr int shownLines = 5000;

    explicit LogView(QWidget* parent = nullptr);

    /// Adds lines at the end; line breaks within `text` begin new lines of the same kind.
    void append(const QString& text, LogLine kind = LogLine::message);
    /// Removes all lines and follows the end again.
    void clearLog();
    /// What copying takes: the selection, or all that is shown.
    [[nodiscard]] QString copyText() const;
    [[nodiscard]] bool isFollowing() const { return m_following; }
    void jumpToEnd();
    /// The capsule's label.
    void setJumpLabel(const QString& label);

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Line {
        QString text{};
        LogLine kind = LogLine::message;
    };

    void flush();
    void insertPending();
    void restoreColors();
    void scrolled();
    void placeJump();

    std::vector<Line> m_pending; ///< never more than is shown
    QTimer m_flush;
    QPushButton* m_jump;
    bool m_following = true;
    bool m_inserting = false;
};

} // namespace velmora
