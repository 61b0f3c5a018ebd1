#include "app/kit/sheet_host.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

class SheetHostTest : public testing::Test
{
protected:
    SheetHostTest()
    {
        window.resize(600, 400);
        auto* column = new QVBoxLayout(&window);
        column->addWidget(&behind);
        auto* row = new QVBoxLayout(&content);
        row->addWidget(&first);
        row->addWidget(&second);
        second.setDefault(true);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        behind.setFocus();
    }
    ~SheetHostTest() override
    {
        // They live on the stack: no parent may delete them.
        behind.setParent(nullptr);
        content.setParent(nullptr);
        first.setParent(nullptr);
        second.setParent(nullptr);
    }

    QWidget window;
    QPushButton behind{"Behind"};
    QWidget content;
    QLineEdit first;
    QPushButton second{"OK"};
    SheetHost host{&window};
};

TEST_F(SheetHostTest, keepsTheFocusInsideAndGivesItBack)
{
    host.open(&content);
    EXPECT_TRUE(first.hasFocus());
    for (int i = 0; i < 5; ++i) {
        SCOPED_TRACE(i);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, i % 2 ? Qt::ShiftModifier : Qt::NoModifier);
        EXPECT_TRUE(content.isAncestorOf(QApplication::focusWidget()));
    }
    behind.setFocus();
    EXPECT_TRUE(content.isAncestorOf(QApplication::focusWidget())) << "the program moved the focus behind the sheet";
    host.close();
    EXPECT_TRUE(behind.hasFocus());
    EXPECT_TRUE(QTest::qWaitFor([&] { return host.isHidden(); }));
}

TEST_F(SheetHostTest, letsNoClickThrough)
{
    int clicks = 0;
    QObject::connect(&behind, &QPushButton::clicked, [&] { ++clicks; });
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, behind.geometry().center());
    ASSERT_EQ(clicks, 1) << "the button can be clicked at all";
    host.open(&content);
    // Beside the panel, where only the cover is.
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, {behind.x() + 5, behind.geometry().center().y()});
    EXPECT_EQ(clicks, 1);
}

TEST_F(SheetHostTest, pressesItsDefaultButtonOnReturnAndAsksToLeaveOnEscape)
{
    int presses = 0;
    int escapes = 0;
    QObject::connect(&second, &QPushButton::clicked, [&] { ++presses; });
    QObject::connect(&host, &SheetHost::escapePressed, [&] { ++escapes; });
    host.open(&content);
    QTest::keyClick(&first, Qt::Key_Return);
    EXPECT_EQ(presses, 1);
    second.setEnabled(false);
    QTest::keyClick(&first, Qt::Key_Return);
    EXPECT_EQ(presses, 1);
    QTest::keyClick(&first, Qt::Key_Escape);
    EXPECT_EQ(escapes, 1);
    EXPECT_TRUE(host.isOpen()) << "what leads out is for the sheet's owner to decide";
}

TEST_F(SheetHostTest, closesWithItsContent)
{
    auto* passing = new QPushButton("Passing");
    host.open(passing);
    delete passing;
    EXPECT_FALSE(host.isOpen());
    EXPECT_TRUE(behind.hasFocus());
    host.open(&content);
    host.open(new QPushButton("Another"));
    EXPECT_TRUE(content.isHidden());
    EXPECT_TRUE(host.isOpen());
}

} // namespace
} // namespace velmora
