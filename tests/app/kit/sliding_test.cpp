#include "app/kit/angle_dial.h"
#include "app/kit/value_slider.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

TEST(SliderScale, givesEveryDoublingTheSamePartOfTheTrack)
{
    const SliderScale sizes{16, 512, 4, SliderScale::Kind::logarithmic};
    double expected = 0;
    for (const double size : {16, 32, 64, 128, 256, 512}) {
        SCOPED_TRACE(size);
        EXPECT_NEAR(sizes.fractionOf(size), expected, 1e-12);
        EXPECT_EQ(sizes.valueAt(expected), size);
        expected += 0.2;
    }
    EXPECT_EQ(sizes.valueAt(0.47), 80) << "the nearest whole step";
    EXPECT_EQ(sizes.fractionOf(-5), 0);
    EXPECT_EQ(sizes.fractionOf(9000), 1);
    EXPECT_EQ(sizes.stepped(9000, 1), 9000);
    EXPECT_EQ(sizes.stepped(9000, -1), 512);
    EXPECT_EQ(SliderScale({0.25, 3, 0.05}).valueAt(0.275), 1.0) << "without the dust of binary fractions";
}

class ValueSliderTest : public testing::Test
{
protected:
    ValueSliderTest()
    {
        slider.setHome(1, 0.02);
        slider.setText([](double value) { return QString("%1%").arg(value * 100); });
        slider.resize(300, 24);
        slider.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&slider));
    }

    ValueSlider slider{SliderScale{0.25, 3, 0.01}};
    QSignalSpy edits{&slider, &ValueSlider::valueEdited};
    QSignalSpy finished{&slider, &ValueSlider::editingFinished};
};

TEST_F(ValueSliderTest, reportsEveryMovementAndOneEnd)
{
    QTest::mousePress(&slider, Qt::LeftButton, {}, {120, 12});
    QTest::mouseMove(&slider, {140, 12});
    QTest::mouseMove(&slider, {160, 12});
    EXPECT_GE(edits.count(), 3);
    EXPECT_EQ(finished.count(), 0);
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, {160, 12});
    EXPECT_EQ(finished.count(), 1);
    QTest::mouseMove(&slider, {-500, 12});
    EXPECT_GT(slider.value(), 0.25) << "the button is up";
    QTest::mousePress(&slider, Qt::LeftButton, {}, {100, 12});
    QTest::mouseMove(&slider, {-500, 12});
    EXPECT_EQ(slider.value(), 0.25);
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, {-500, 12});
}

TEST_F(ValueSliderTest, comesToRestAtHomeAndReturnsThereOnADoubleClick)
{
    // Whatever the pixel, nothing within 2 % of home but home itself can be dragged to.
    bool cameHome = false;
    QTest::mousePress(&slider, Qt::LeftButton, {}, {30, 12});
    for (int x = 30; x < 150; ++x) {
        QTest::mouseMove(&slider, {x, 12});
        cameHome = cameHome || slider.value() == 1;
        EXPECT_TRUE(slider.value() == 1 || std::abs(slider.value() - 1) > 0.02) << slider.value();
    }
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, {150, 12});
    EXPECT_TRUE(cameHome);
    ASSERT_NE(slider.value(), 1);
    QTest::mouseDClick(&slider, Qt::LeftButton, {}, {60, 12});
    EXPECT_EQ(slider.value(), 1);
}

TEST_F(ValueSliderTest, showsAValueBeyondTheRangeAsItIsAndLeavesItBySteps)
{
    slider.setValue(7);
    EXPECT_EQ(slider.spokenValue(), "700%");
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(slider.value(), 7);
    QTest::keyClick(&slider, Qt::Key_Left);
    EXPECT_EQ(slider.value(), 3);
    EXPECT_EQ(edits.count(), 1);
    EXPECT_EQ(finished.count(), 1);
}

TEST_F(ValueSliderTest, keepsItsRingAsThePersonBeganWhenItsWindowComesBack)
{
    const auto picture = [this] { return slider.grab().toImage(); };
    const auto switchWindows = [this] {
        QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
        QCoreApplication::sendEvent(&slider, &away);
        QFocusEvent back(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
        QCoreApplication::sendEvent(&slider, &back);
    };
    slider.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&slider));
    slider.setFocus(Qt::MouseFocusReason);
    const QImage plain = picture();
    switchWindows();
    EXPECT_EQ(picture(), plain);
    QTest::keyClick(&slider, Qt::Key_Right);
    QTest::keyClick(&slider, Qt::Key_Left);
    const QImage ringed = picture();
    EXPECT_NE(ringed, plain);
    switchWindows();
    EXPECT_EQ(picture(), ringed);
}

TEST(AngleDial, pointsWhereTheMouseIsAndTurnsRound)
{
    AngleDial dial;
    dial.resize(40, 40);
    dial.show();
    QSignalSpy edits(&dial, &AngleDial::angleEdited);
    const struct {
        QPoint at;
        Qt::KeyboardModifiers modifiers;
        double angle;
    } cases[] = {
        {{39, 20}, {}, 0},   {{20, 2}, {}, 90},   {{2, 20}, {}, 180},
        {{20, 38}, {}, 270}, {{36, 36}, {}, 315}, {{38, 17}, Qt::ShiftModifier, 15},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.angle);
        dial.setAngle(200);
        QTest::mouseClick(&dial, Qt::LeftButton, c.modifiers, c.at);
        // A pixel's middle lies half a point beside the direction that is meant.
        EXPECT_NEAR(std::remainder(dial.angle() - c.angle, 360), 0, c.modifiers ? 1e-9 : 3);
        EXPECT_EQ(dial.angle(), std::floor(dial.angle())) << "whole degrees";
    }
    dial.setAngle(0);
    QTest::keyClick(&dial, Qt::Key_Left);
    EXPECT_EQ(dial.angle(), 359);
    QTest::keyClick(&dial, Qt::Key_PageUp);
    EXPECT_EQ(dial.angle(), 14);
    dial.setAngle(360);
    QTest::keyClick(&dial, Qt::Key_Up);
    EXPECT_EQ(dial.angle(), 1);
    const int before = static_cast<int>(edits.count());
    dial.setAngle(77.5);
    EXPECT_EQ(edits.count(), before);
}

} // namespace
} // namespace velmora
