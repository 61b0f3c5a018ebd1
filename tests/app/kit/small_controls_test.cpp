#include "app/kit/checker_thumbnail.h"
#include "app/kit/color_well.h"
#include "app/kit/path_label.h"
#include "app/kit/segmented_control.h"
#include "app/kit/switch.h"

#include <QApplication>
#include <QClipboard>
#include <QColorDialog>
#include <QSignalBlocker>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

TEST(ColorWell, reportsEveryColourAndReturnsToTheFirstOnCancel)
{
    ColorWell well;
    well.setColor(QColor(10, 20, 30));
    well.show();
    QSignalSpy edits(&well, &ColorWell::colorEdited);
    QTest::mouseClick(&well, Qt::LeftButton);
    auto* panel = well.findChild<QColorDialog*>();
    ASSERT_NE(panel, nullptr);
    EXPECT_TRUE(panel->testOption(QColorDialog::ShowAlphaChannel));
    EXPECT_EQ(panel->currentColor(), QColor(10, 20, 30));
    panel->setCurrentColor(QColor(200, 100, 50, 128));
    EXPECT_EQ(well.color(), QColor(200, 100, 50, 128));
    panel->reject();
    EXPECT_EQ(well.color(), QColor(10, 20, 30));
    EXPECT_EQ(edits.last().at(0).value<QColor>(), QColor(10, 20, 30));
    const auto count = edits.count();
    well.setColor(Qt::red);
    EXPECT_EQ(edits.count(), count);
}

TEST(CheckerThumbnail, knowsWhichPicturesNeedADarkGround)
{
    QImage halfWhite(40, 40, QImage::Format_ARGB32);
    halfWhite.fill(Qt::transparent);
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 40; ++x)
            halfWhite.setPixelColor(x, y, Qt::white);
    }
    const auto filled = [](const QColor& color) {
        QImage image(40, 40, QImage::Format_ARGB32);
        image.fill(color);
        return image;
    };
    EXPECT_TRUE(CheckerThumbnail::isLight(halfWhite)) << "what is transparent does not count";
    EXPECT_FALSE(CheckerThumbnail::isLight(filled(QColor(26, 107, 235))));
    EXPECT_TRUE(CheckerThumbnail::isLight(filled(QColor(175, 175, 175))));
    EXPECT_FALSE(CheckerThumbnail::isLight(filled(Qt::transparent)));
    EXPECT_FALSE(CheckerThumbnail::isLight({}));
}

TEST(PathLabel, copiesThePathWithoutWhatItIsWrappedWith)
{
    const QString path = "/Users/mara/Projects/Larkspur/Documents/Larkspur.app";
    PathLabel label;
    label.setPath(path);
    EXPECT_GT(label.heightForWidth(120), label.heightForWidth(1000));
    label.selectAll();
    label.copy();
    EXPECT_EQ(QApplication::clipboard()->text(), path);
}

TEST(SegmentedControl, givesALongLabelItsRoom)
{
    SegmentedControl segments;
    for (const char* name : {"A", "A much longer label", "B"})
        segments.addSegment(name);
    for (const int width : {segments.minimumSizeHint().width(), segments.sizeHint().width()}) {
        SCOPED_TRACE(width);
        segments.resize(width, 24);
        segments.show();
        int right = 2;
        for (int i = 0; i < segments.count(); ++i) {
            EXPECT_EQ(segments.segment(i)->x(), right) << "side by side";
            EXPECT_GE(segments.segment(i)->width(), segments.segment(i)->sizeHint().width() - 1);
            right = segments.segment(i)->geometry().right() + 1;
        }
        EXPECT_EQ(right, width - 2);
    }
    QSignalSpy chosen(&segments, &SegmentedControl::currentChosen);
    segments.setCurrentIndex(2);
    EXPECT_EQ(chosen.count(), 0);
    QTest::keyClick(segments.segment(2), Qt::Key_Right);
    EXPECT_EQ(segments.currentIndex(), 0);
    EXPECT_EQ(chosen.count(), 1);
}

TEST(Switch, showsItsStateAlsoWhenItsSignalsWereHeldBack)
{
    Switch toggle;
    toggle.resize(toggle.sizeHint());
    const QColor off = toggle.grab().toImage().pixelColor(16, 2);
    {
        const QSignalBlocker quiet(&toggle);
        toggle.setChecked(true);
    }
    EXPECT_NE(toggle.grab().toImage().pixelColor(16, 2), off);
}

} // namespace
} // namespace velmora
