#pragma once

#include "app/app_context.h"
#include "app/build/build_outcome_text.h"
#include "app/build/build_progress.h"
#include "app/inspector/small_picture.h"

#include <QTimer>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace velmora
{

class BuildNote;
class ClippedLabel;
class LogView;
class ProgressLine;
class StepList;

/// A build from its start to its outcome: steps, log, and what to do with the image or about the failure. It follows
/// the editor state all the time, so it can be hidden and shown again while the build goes on.
class BuildSheet : public QWidget
{
    Q_OBJECT

public:
    /// `margin` is what a sheet's content leaves at its sides.
    BuildSheet(const AppContext& context, int margin, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    /// The control that has the focus when the sheet opens.
    [[nodiscard]] QWidget* firstControl() const;

signals:
    /// A build has started or ended: the sheet wants to be seen, with the focus on its first control.
    void openWanted();
    /// The sheet has done its service, or is to be out of the way.
    void closeWanted();

protected:
    bool event(QEvent* event) override;

private:
    QWidget* makeHead();
    QWidget* makeBody();
    QWidget* makeButtons();
    QPushButton* addButton(QHBoxLayout& row, const char* label, const char* name);
    void connectButtons();

    void begin();
    void reach(BuildStep step);
    void end();
    void showSuccess();
    void showFailure();
    void tick();
    void showSteps();
    void showPicture();
    void appendLog(const QString& text);
    void announce(const QString& text);
    void copyLog();
    void applyRemedy();

    AppContext m_context;
    int m_margin;
    BuildProgress m_progress{};
    BuildFailure m_failure{};
    SmallPictureReader m_icon{}; ///< the volume's
    QTimer m_clock;
    QLabel* m_picture = nullptr;
    ClippedLabel* m_title = nullptr;
    ClippedLabel* m_subtitle = nullptr;
    QLabel* m_time = nullptr;
    QLabel* m_timeCaption = nullptr;
    ProgressLine* m_bar = nullptr;
    BuildNote* m_note = nullptr;
    StepList* m_steps = nullptr;
    LogView* m_log = nullptr;
    QLabel* m_hint = nullptr;
    QPushButton* m_copy = nullptr;
    QPushButton* m_save = nullptr;
    QPushButton* m_hide = nullptr;
    QPushButton* m_openFolder = nullptr;
    QPushButton* m_close = nullptr;
    QPushButton* m_again = nullptr;
    QPushButton* m_reveal = nullptr;
};

} // namespace velmora
