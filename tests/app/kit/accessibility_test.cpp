#include "app/kit/accessibility.h"
#include "app/kit/angle_dial.h"
#include "app/kit/form.h"
#include "app/kit/note_banner.h"
#include "app/kit/segmented_control.h"
#include "app/kit/step_list.h"
#include "app/kit/switch.h"
#include "app/kit/tab_rail.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

QAccessibleInterface* accessible(QObject* object)
{
    installAccessibility();
    return QAccessible::queryAccessibleInterface(object);
}

TEST(Accessibility, knowsTheControlsAsWhatTheyAre)
{
    installAccessibility(); // before the first control, as in the program: interfaces are kept
    TabRail rail;
    ToolButton* tab = rail.addTab("layout", "Layout");
    ToolButton tool("build", "Build");
    SegmentedControl segments;
    segments.addSegment("Automatic");
    segments.addSegment("Manual");
    Switch toggle;
    AngleDial dial;
    NoteBanner note;
    const struct {
        QWidget* widget;
        QAccessible::Role role;
    } cases[] = {
        {&rail, QAccessible::PageTabList},  {tab, QAccessible::PageTab},
        {&tool, QAccessible::Button},       {segments.segment(1), QAccessible::RadioButton},
        {&toggle, QAccessible::CheckBox},   {&dial, QAccessible::Slider},
        {&note, QAccessible::AlertMessage},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.widget->metaObject()->className());
        EXPECT_EQ(accessible(c.widget)->role(), c.role);
    }
    EXPECT_EQ(accessible(&tool)->text(QAccessible::Name), "Build");
    EXPECT_TRUE(accessible(tab)->state().selected);
}

TEST(Accessibility, pressesAndAdjustsAsAPersonWould)
{
    installAccessibility();
    SegmentedControl segments;
    segments.addSegment("Automatic");
    segments.addSegment("Manual");
    QSignalSpy chosen(&segments, &SegmentedControl::currentChosen);
    QAccessibleInterface* manual = accessible(segments.segment(1));
    manual->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(segments.currentIndex(), 1);
    EXPECT_EQ(chosen.count(), 1);
    EXPECT_TRUE(manual->state().checked);

    AngleDial dial;
    dial.setSpokenText([](double angle) { return QString("%1 degrees").arg(angle); });
    QSignalSpy turned(&dial, &AngleDial::angleEdited);
    QAccessibleInterface* slider = accessible(&dial);
    slider->valueInterface()->setCurrentValue(1000);
    EXPECT_EQ(dial.angle(), 360);
    EXPECT_EQ(turned.count(), 1);
    EXPECT_EQ(slider->text(QAccessible::Value), "360 degrees");
}

TEST(Accessibility, namesEveryStepWithItsState)
{
    installAccessibility();
    StepList list;
    list.setSteps(
        {{"Create", StepState::done, "0:06", "done"}, {"Convert", StepState::running, "0:07", "running, 7 seconds"}});
    QAccessibleInterface* steps = accessible(&list);
    ASSERT_EQ(steps->childCount(), 2);
    EXPECT_EQ(steps->child(1)->text(QAccessible::Name), "Convert, running, 7 seconds");
    EXPECT_EQ(steps->indexOfChild(steps->child(1)), 1);
    EXPECT_EQ(steps->child(2), nullptr);
    QAccessibleInterface* second = steps->child(1);
    list.setSteps({{"Create", StepState::waiting, "", ""}});
    EXPECT_FALSE(second->isValid()) << "asked about a step that is gone";
    EXPECT_EQ(second->text(QAccessible::Name), "");
}

TEST(Accessibility, tellsANoteWheneverItComesIntoView)
{
    QWidget window;
    auto* panel = new QWidget(&window);
    auto* note = new NoteBanner(panel);
    const QSignalSpy told(note, &Note::announced);
    note->hide();
    window.show();
    note->setText("The file is missing.");
    EXPECT_EQ(told.count(), 0) << "nobody sees it";
    note->show();
    EXPECT_EQ(told.count(), 1);
    note->setText("Another file is missing.");
    EXPECT_EQ(told.count(), 2);
    panel->hide();
    note->setText("A third one is missing.");
    EXPECT_EQ(told.count(), 2);
    panel->show();
    EXPECT_EQ(told.count(), 3);
}

TEST(Accessibility, namesAControlAfterItsLabel)
{
    auto* named = new Switch;
    named->setAccessibleName("Window width");
    auto* unnamed = new Switch;
    const FormRow first("Size", named);
    const FormRow second("&Icon size:", unnamed);
    EXPECT_EQ(named->accessibleName(), "Window width");
    EXPECT_EQ(unnamed->accessibleName(), "Icon size");
    EXPECT_EQ(accessibleNameFor(QString::fromUtf8("Choose…")), "Choose");
}

} // namespace
} // namespace velmora
