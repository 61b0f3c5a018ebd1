#pragma once

#include <QImage>
#include <QWidget>

namespace velmora
{

/// A small picture on the checker, in the middle of its frame and never enlarged. In the light theme a light picture
/// gets the dark checker, so that it can be seen.
class CheckerThumbnail : public QWidget
{
    Q_OBJECT

public:
    /// `size` in points.
    explicit CheckerThumbnail(const QSize& size, QWidget* parent = nullptr);

    /// A null image leaves the sign alone, or nothing.
    void setImage(const QImage& image);
    /// An icon of the family that stands where there is no picture; empty for none.
    void setSign(const QString& icon);
    /// The space between frame and picture, in points.
    void setInset(double inset);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

    /// Whether what can be seen of a picture is lighter than 45 % on average.
    static bool isLight(const QImage& image);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QSize m_size;
    QImage m_image;
    QImage m_scaled; ///< for the present size and ratio
    QString m_sign;
    double m_inset = 0;
    bool m_light = false;
};

/// Draws the checker in its frame, dark under a light picture; for tiles that paint themselves.
void drawCheckerFrame(QPainter& painter, const QRectF& rect, bool lightPicture, const QWidget* widget);

} // namespace velmora
