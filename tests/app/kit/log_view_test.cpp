#include "app/kit/log_view.h"

#include <QElapsedTimer>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

void appendLines(LogView& log, int count)
{
    for (int i = 0; i < count; ++i)
        log.append(QString("line %1").arg(i));
}

/// The milliseconds until the log shows all that was appended.
qint64 timeToShow(int count)
{
    LogView log;
    log.resize(400, 200);
    log.show();
    QElapsedTimer timer;
    timer.start();
    appendLines(log, count);
    const QString last = QString("line %1").arg(count - 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return log.toPlainText().endsWith(last); }, 20000));
    return timer.elapsed();
}

class LogViewTest : public testing::Test
{
protected:
    LogViewTest()
    {
        log.resize(400, 200);
        log.show();
    }
    void showAll(const QString& last)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return log.toPlainText().endsWith(last); }));
    }
    [[nodiscard]] bool atEnd() const { return log.verticalScrollBar()->value() == log.verticalScrollBar()->maximum(); }

    LogView log;
    QPushButton* jump = log.findChild<QPushButton*>("log.jumpToEnd");
};

TEST_F(LogViewTest, followsItsEndUntilThePersonScrollsAway)
{
    appendLines(log, 100);
    showAll("line 99");
    EXPECT_TRUE(atEnd());
    EXPECT_FALSE(jump->isVisible());

    log.verticalScrollBar()->setValue(10);
    EXPECT_FALSE(log.isFollowing());
    EXPECT_TRUE(jump->isVisible());
    log.append("another");
    showAll("another");
    EXPECT_EQ(log.verticalScrollBar()->value(), 10);

    QTest::mouseClick(jump, Qt::LeftButton);
    EXPECT_TRUE(atEnd());
    log.append("the last");
    showAll("the last");
    EXPECT_TRUE(atEnd());
    EXPECT_FALSE(jump->isVisible());
}

TEST_F(LogViewTest, keepsWhatIsReadInPlaceWhileOldLinesAreDropped)
{
    appendLines(log, LogView::shownLines);
    showAll("line 4999");
    log.verticalScrollBar()->setValue(2000);
    ASSERT_FALSE(log.isFollowing());
    for (int i = 0; i < 300; ++i)
        log.append("more");
    log.append("done");
    showAll("done");
    EXPECT_EQ(log.blockCount(), LogView::shownLines);
    EXPECT_EQ(log.verticalScrollBar()->value(), 2000 - 301);
}

TEST_F(LogViewTest, takesAFloodWithoutHoldingUpTheWindow)
{
    // Twenty times the lines may not take twenty times as long: what can no longer be seen is never laid out.
    const qint64 few = std::max<qint64>(timeToShow(5000), 20);
    const qint64 many = timeToShow(100000);
    EXPECT_LT(many, few * 6) << few << " ms for 5,000 lines, " << many << " ms for 100,000";
}

TEST_F(LogViewTest, copiesTheSelectionOrElseEverything)
{
    log.append("first\nsecond");
    showAll("second");
    EXPECT_EQ(log.copyText(), "first\nsecond");
    QTextCursor cursor = log.textCursor();
    cursor.setPosition(6);
    cursor.setPosition(12, QTextCursor::KeepAnchor);
    log.setTextCursor(cursor);
    EXPECT_EQ(log.copyText(), "second");
}

} // namespace
} // namespace velmora
