#include "app/kit/number_field.h"

#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <cmath>

namespace velmora
{
namespace
{

TEST(NumberField, understandsWhatAPersonTypes)
{
    const struct {
        const char* text;
        std::optional<double> number;
    } cases[] = {
        {"600", 600},
        {" 12.5 ", 12.5},
        {"12,5", 12.5},
        {"−12", -12},
        {"-0.25", -0.25},
        {"80 pt", 80},
        {"80PT", 80},
        {"1e3", 1000},
        {"", std::nullopt},
        {"12x", std::nullopt},
        {"1,000.5", std::nullopt},
        {"1,2,3", std::nullopt},
        {"nan", std::nullopt},
        {"inf", std::nullopt},
        {"1e999", std::nullopt},
        {"pt", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(NumberField::parse(QString::fromUtf8(c.text), "pt"), c.number);
    }
}

TEST(NumberField, showsNumbersShortAndWithATrueMinus)
{
    EXPECT_EQ(NumberField::format(600, 2), "600");
    EXPECT_EQ(NumberField::format(-12.344, 2), QString::fromUtf8("−12.34"));
    EXPECT_EQ(NumberField::format(-0.001, 2), "0");
    EXPECT_EQ(NumberField::format(1234567.5, 2), "1234567.5");
    EXPECT_EQ(NumberField::format(0.5, 2, NumberField::Digits::always), "0.50");
    EXPECT_EQ(NumberField::format(1e300, 2), "1e+300");
}

class NumberFieldTest : public testing::Test
{
protected:
    NumberFieldTest()
    {
        auto* column = new QVBoxLayout(&window);
        column->addWidget(field);
        column->addWidget(other);
        field->setRange(0, 100, 10);
        field->setValue(12.3456);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        field->setFocus();
    }
    void type(const char* text)
    {
        field->selectAll();
        QTest::keyClicks(field, QString::fromUtf8(text));
    }

    QWidget window;
    NumberField* field = new NumberField;
    QLineEdit* other = new QLineEdit;
    QSignalSpy edits{field, &NumberField::valueEdited};
};

TEST_F(NumberFieldTest, keepsTheFullValueUntilTheTextIsChanged)
{
    EXPECT_EQ(field->text(), "12.35");
    other->setFocus();
    EXPECT_EQ(field->value(), 12.3456);
    field->setFocus();
    type("12.35");
    other->setFocus();
    EXPECT_EQ(field->value(), 12.3456) << "the same text typed again is no change";
    EXPECT_EQ(edits.count(), 0);
}

TEST_F(NumberFieldTest, takesATypedNumberAsItIsAndStepsWithinTheRange)
{
    type("250.5");
    EXPECT_EQ(edits.count(), 0) << "typing is not committing";
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(field->value(), 250.5);
    QTest::keyClick(field, Qt::Key_Up);
    EXPECT_EQ(field->value(), 250.5) << "a step up may not lead down into the range";
    QTest::keyClick(field, Qt::Key_Down);
    EXPECT_EQ(field->value(), 100);
    QTest::keyClick(field, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(field->value(), 0);
    QTest::keyClick(field, Qt::Key_Up);
    QTest::keyClick(field, Qt::Key_Up);
    EXPECT_EQ(field->value(), 20);
    EXPECT_EQ(edits.count(), 5);

    field->setRange(0, 1, 0.05);
    field->setValue(0.1);
    for (int i = 0; i < 4; ++i)
        QTest::keyClick(field, Qt::Key_Up);
    EXPECT_EQ(field->value(), 0.3) << "not 0.30000000000000004";
}

TEST_F(NumberFieldTest, goesOnAtTheOtherEndWhereItWraps)
{
    field->setRange(0, 360, 1);
    field->setWrapping(true);
    field->setValue(0);
    QTest::keyClick(field, Qt::Key_Down);
    EXPECT_EQ(field->value(), 359);
    QTest::keyClick(field, Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(field->value(), 9);
    field->setValue(360);
    QTest::keyClick(field, Qt::Key_Up);
    EXPECT_EQ(field->value(), 1);
}

TEST_F(NumberFieldTest, marksWhatIsNoNumberAndGivesItUpWhenTheFocusLeaves)
{
    type("12x");
    EXPECT_TRUE(field->isWrong());
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(field->text(), "12x") << "there to be mended";
    other->setFocus();
    EXPECT_FALSE(field->isWrong());
    EXPECT_EQ(field->text(), "12.35");

    field->setFocus();
    type("77");
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_EQ(field->text(), "12.35");
    other->setFocus();
    EXPECT_EQ(field->value(), 12.3456);
    EXPECT_EQ(edits.count(), 0);
}

TEST_F(NumberFieldTest, leavesTypedTextAloneWhenItIsRefreshed)
{
    type("4");
    field->setValue(99);
    EXPECT_EQ(field->text(), "4");
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_EQ(field->text(), "99");
    field->setValue(98);
    EXPECT_EQ(field->text(), "98") << "with the focus, but nothing typed";
    EXPECT_EQ(edits.count(), 0);
}

TEST_F(NumberFieldTest, followsTheWheelOnlyWithTheFocus)
{
    const auto wheel = [&] {
        const QPointF middle = QRectF(field->rect()).center();
        QWheelEvent event(middle, field->mapToGlobal(middle), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(field, &event);
    };
    field->setValue(50);
    other->setFocus();
    wheel();
    EXPECT_EQ(field->value(), 50);
    field->setFocus();
    wheel();
    EXPECT_EQ(field->value(), 60);
}

} // namespace
} // namespace velmora
