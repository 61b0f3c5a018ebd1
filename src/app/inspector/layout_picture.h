#pragma once

#include "app/inspector/small_picture.h"

#include <QWidget>

#include <functional>
#include <vector>

class QLabel;

namespace velmora
{

class AppState;
class CheckerThumbnail;
class ClippedLabel;
class PathLabel;

/// The background picture: what it is, how it fills the window. Says so when there is none or it cannot be opened.
class PictureRows : public QWidget
{
    Q_OBJECT

public:
    /// `reader` is kept by the caller.
    PictureRows(AppState& state, SmallPictureReader& reader);

    void refresh();

private:
    QWidget* makeNothing();
    QWidget* makeHead();
    QWidget* makeUnreadable();
    QWidget* makeAdjustments();
    void showPicture(const SmallPicture& picture);

    AppState& m_state;
    SmallPictureReader& m_reader;
    std::vector<std::function<void()>> m_reads{};
    // What the makers below fill in.
    CheckerThumbnail* m_thumbnail = nullptr;
    ClippedLabel* m_name = nullptr;
    QLabel* m_size = nullptr;
    PathLabel* m_path = nullptr;
    QWidget* m_nothing;
    QWidget* m_head;
    QWidget* m_unreadable;
    QWidget* m_buttons;
    QWidget* m_adjustments;
    qint64 m_shown = 0; ///< the key of the picture in the thumbnail
};

} // namespace velmora
