// What is typed in the panels, the project's history, and commands that come while a field is being filled in.

#include "app/window_world.h"

#include "app/kit/number_field.h"

#include <QLineEdit>
#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

struct Typing : ::testing::Test, StillLook, WindowWorld {
    void SetUp() override
    {
        show();
        state.edit({}, [this](DMGProject& project) { project = build.typicalProject(); });
    }
    QWidget& field(int tab, const char* name)
    {
        state.setInspectorTab(tab);
        QWidget& control = the(name);
        control.setFocus(Qt::TabFocusReason);
        return control;
    }
    void undo() { press(Qt::Key_Z, Qt::ControlModifier); }
    void redo() { press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier); }
};

TEST_F(Typing, isUndoneByTheWindowWhateverFieldHasTheFocus)
{
    state.edit({}, [](DMGProject& project) { project.signingMode = SigningMode::sign; });
    const struct {
        int tab;
        const char* name;
        std::string DMGProject::*member;
    } rows[] = {
        {InspectorTab::volume, "volume.name", &DMGProject::volumeName},
        {InspectorTab::volume, "volume.identity", &DMGProject::codeSignIdentity},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        QWidget& control = field(row.tab, row.name);
        const std::string before = state.project().*row.member;
        QTest::keyClicks(&control, "One");
        const std::string one = state.project().*row.member;
        state.endTypingRun(); // a rest
        QTest::keyClicks(&control, "Two");
        ASSERT_NE(state.project().*row.member, one);
        undo();
        EXPECT_EQ(state.project().*row.member, one);
        undo();
        EXPECT_EQ(state.project().*row.member, before);
        redo();
        EXPECT_EQ(state.project().*row.member, one);
    }
}

TEST_F(Typing, ofANumberIsUndoneCommittedOrNot)
{
    auto& width = static_cast<NumberField&>(field(InspectorTab::layout, "layout.windowWidth"));
    const double before = state.project().windowWidth;
    press(Qt::Key_Up);
    EXPECT_EQ(state.project().windowWidth, before + 10);
    undo();
    EXPECT_EQ(state.project().windowWidth, before);

    press(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&width, "712");
    EXPECT_EQ(state.project().windowWidth, before);
    undo();
    EXPECT_EQ(state.project().windowWidth, before);
    EXPECT_EQ(width.value(), before);
    redo();
    EXPECT_EQ(state.project().windowWidth, 712);
}

TEST_F(Typing, isTakenOverBeforeACommandActs)
{
    QWidget& width = field(InspectorTab::layout, "layout.windowWidth");
    const auto type = [&](const char* number) {
        press(Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(&width, number);
    };
    type("712");
    panels.toSave = {folder / "Typed.velmora"};
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(state.project().windowWidth, 712);
    EXPECT_FALSE(state.isDirty());

    type("713");
    alerts.answers = {1};
    window->close();
    EXPECT_FALSE(alerts.shown.empty()) << "closing asks about it";
    EXPECT_EQ(state.project().windowWidth, 713);
}

} // namespace
} // namespace velmora::testing
