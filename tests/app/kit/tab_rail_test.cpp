#include "app/kit/tab_rail.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

TEST(TabRail, choosesWithTheArrowKeysAndTellsOnlyOfThePersonsChoices)
{
    TabRail rail;
    for (const char* name : {"layout", "volume", "arrange"})
        rail.addTab(name, name);
    rail.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&rail));
    QSignalSpy chosen(&rail, &TabRail::currentChosen);
    rail.setCurrentIndex(2);
    rail.setCurrentIndex(7);
    EXPECT_EQ(rail.currentIndex(), 2);
    EXPECT_EQ(chosen.count(), 0);

    rail.tab(2)->setFocus();
    QTest::keyClick(rail.tab(2), Qt::Key_Down); // round to the first
    EXPECT_EQ(rail.currentIndex(), 0);
    EXPECT_TRUE(rail.tab(0)->hasFocus());
    rail.tab(1)->setEnabled(false);
    QTest::keyClick(rail.tab(0), Qt::Key_Down); // over the disabled one
    EXPECT_EQ(rail.currentIndex(), 2);
    QTest::mouseClick(rail.tab(0), Qt::LeftButton);
    QTest::mouseClick(rail.tab(0), Qt::LeftButton);
    EXPECT_EQ(rail.currentIndex(), 0);
    EXPECT_EQ(chosen.count(), 3) << "choosing the chosen one again is no choice";

    int stops = 0;
    for (int i = 0; i < rail.count(); ++i)
        stops += rail.tab(i)->focusPolicy() & Qt::TabFocus ? 1 : 0;
    EXPECT_EQ(stops, 1) << "the Tab key stops once";
}

} // namespace
} // namespace velmora
