#pragma once

#include "app/kit/fade.h"

#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>

class QGraphicsOpacityEffect;

namespace velmora
{

/// Shows a sheet: a child of the window that covers it, with one panel in its middle. Nothing behind it can be reached
/// by mouse or Tab while it is open; the window disables its own actions on openChanged().
class SheetHost : public QWidget
{
    Q_OBJECT

public:
    /// A host that covers `window`, hidden.
    explicit SheetHost(QWidget* window);
    ~SheetHost() override;

    /// Opens a sheet with this content, in place of one that is open. The content becomes a child of the host and stays
    /// one, hidden, when the sheet closes; its size hint is the panel's, padding included (see padding()). `focus` gets
    /// the focus, or the first control that can have it.
    void open(QWidget* content, QWidget* focus = nullptr);
    /// Closes the sheet, as the end of its content does; the focus returns to where it was.
    void close();
    [[nodiscard]] bool isOpen() const { return m_open; }
    /// What the sheet shows, or null.
    [[nodiscard]] QWidget* content() const { return m_open ? m_content.data() : nullptr; }

    /// The margin that a sheet's content leaves at its sides, in device-independent pixels.
    [[nodiscard]] int padding() const;

signals:
    void openChanged(bool open);
    /// Escape was pressed and nothing in the sheet took it: the sheet's way out.
    void escapePressed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void animate(double to, int duration);
    void step(double shown);
    void finish();
    void place();
    void takeBackFocus(QWidget* now);

    QWidget* m_panel;
    QGraphicsOpacityEffect* m_opacity;
    QPointer<QWidget> m_content;
    QPointer<QWidget> m_focusBefore;
    QVariantAnimation m_animation;
    double m_shown = 0; ///< 0 hidden to 1 in place
    bool m_open = false;
};

} // namespace velmora
