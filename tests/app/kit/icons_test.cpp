#include "app/kit/icons.h"

#include <QImage>

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

struct Ink {
    int opaque = 0;  ///< pixels of the ink's own colour
    int toned = 0;   ///< pixels of the tone's colour, whatever their opacity
    int foreign = 0; ///< opaque pixels of neither
};

Ink inkOf(const QPixmap& picture, const QColor& ink, const QColor& tone)
{
    Ink result;
    const QImage image = picture.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (color.alpha() > 250)
                ++(color.rgb() == ink.rgb() ? result.opaque : result.foreign);
            else if (color.alpha() > 20 && color.red() > 200 && tone.red() > 200)
                ++result.toned;
        }
    }
    return result;
}

TEST(Icons, areDrawnInTheColoursThatAreAskedFor)
{
    const QColor ink(0, 0, 255);
    QColor tone(255, 0, 0);
    tone.setAlphaF(0.5F);
    const QStringList names = iconNames();
    EXPECT_GE(names.size(), 35);
    for (const QString& name : names) {
        SCOPED_TRACE(name.toStdString());
        const QPixmap picture = iconPixmap(name, 24, 2, {ink, Qt::transparent});
        EXPECT_EQ(picture.size(), QSize(48, 48));
        const Ink plain = inkOf(picture, ink, Qt::transparent);
        EXPECT_GT(plain.opaque, 25);
        EXPECT_EQ(plain.foreign, 0) << "a colour that is neither ink nor tone";
    }
    EXPECT_GT(inkOf(iconPixmap("add-files", 24, 2, {ink, tone}), ink, tone).toned, 200);
    EXPECT_EQ(inkOf(iconPixmap("add-files", 24, 2, {ink, Qt::transparent}), ink, tone).toned, 0);
}

TEST(Icons, keepTheirLinesOnWholePixels)
{
    // The window's upper edge is a line of one and a half points from 3 to 4.5: at two pixels a point it is three whole
    // rows, and nothing of it is left above and below.
    const QImage image = iconPixmap("contents", 24, 2, {Qt::black, Qt::transparent}).toImage();
    const int column = image.width() / 2;
    for (int y = 0; y < 14; ++y) {
        SCOPED_TRACE(y);
        EXPECT_EQ(qAlpha(image.pixel(column, y)), y >= 6 && y < 9 ? 255 : 0);
    }
}

TEST(Icons, areNothingUnderAnUnknownName)
{
    EXPECT_TRUE(iconPixmap("no-such-icon", 24, 1, {Qt::black, Qt::red}).isNull());
    EXPECT_TRUE(iconPixmap("../velmora", 24, 0, {Qt::black, Qt::red}).isNull());
    EXPECT_TRUE(toolIcon("no-such-icon").isNull());
    EXPECT_FALSE(programIconPixmap(16, 1).isNull());
}

} // namespace
} // namespace velmora
