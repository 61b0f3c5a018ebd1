#include "editor/history.h"

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

using std::chrono::milliseconds;

/// A history of projects that differ in the volume's name.
struct Names {
    explicit Names(History::Limits limits = {}) : history(named("start"), limits) {}

    static DMGProject named(const std::string& name)
    {
        DMGProject project;
        project.volumeName = name;
        return project;
    }
    void edit(const std::string& name, const EditKey& key = {}, milliseconds pause = {})
    {
        now += pause;
        history.record(named(name), {}, {}, key, now);
    }
    /// The names that undoing leads through, the last one first.
    std::vector<std::string> undoAll()
    {
        std::vector<std::string> names;
        while (history.canUndo())
            names.push_back(history.undo().project.volumeName);
        return names;
    }

    History history;
    History::Time now{};
};

using Texts = std::vector<std::string>;

TEST(History, makesOneStepOfARunOfTyping)
{
    const EditKey name{"volumeName", {}};
    const EditKey first{"text", Uuid::random()};
    const EditKey second{"text", Uuid::random()};
    struct Edit {
        std::string name;
        EditKey key;
        int pause = 0;
    };
    const struct {
        const char* name;
        std::vector<Edit> edits;
        Texts undone;
    } cases[] = {
        {"one field", {{"a", name}, {"ab", name}, {"abc", name}}, {"start"}},
        {"without a key", {{"a", {}}, {"ab", {}}}, {"a", "start"}},
        {"another field", {{"a", name}, {"b", first}}, {"a", "start"}},
        {"the same field of another element", {{"a", first}, {"b", second}}, {"a", "start"}},
        {"another field between", {{"a", name}, {"b", first}, {"c", name}}, {"b", "a", "start"}},
        {"the longest pause", {{"a", name}, {"ab", name, 1000}, {"abc", name, 1000}}, {"start"}},
        {"a longer pause", {{"a", name}, {"ab", name, 1001}}, {"a", "start"}},
        {"back where it began", {{"x", {}}, {"xy", name}, {"x", name}}, {"start"}},
        {"on after that", {{"a", name}, {"start", name}, {"b", name}, {"bc", name}}, {"start"}},
        {"nothing changed", {{"start", {}}, {"a", {}}, {"a", {}}}, {"start"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Names names;
        for (const Edit& edit : c.edits)
            names.edit(edit.name, edit.key, milliseconds(edit.pause));
        EXPECT_EQ(names.undoAll(), c.undone);
    }
}

TEST(History, endsARunWhenItIsTold)
{
    const EditKey name{"volumeName", {}};
    Names names;
    names.edit("a", name);
    names.history.endRun();
    names.edit("ab", name);
    names.history.undo();
    names.edit("ac", name); // must not swallow the step before
    EXPECT_EQ(names.undoAll(), (Texts{"a", "start"}));
}

TEST(History, knowsTheSavedState)
{
    Names names;
    History& history = names.history;
    names.edit("a", {"volumeName", {}});
    EXPECT_FALSE(history.isAtSaved());
    history.markSaved();
    names.edit("ab", {"volumeName", {}}); // typing goes on: the saved state must stay reachable
    EXPECT_FALSE(history.isAtSaved());
    EXPECT_EQ(history.undo().project.volumeName, "a");
    EXPECT_TRUE(history.isAtSaved());
    history.undo();
    EXPECT_FALSE(history.isAtSaved());
    names.edit("b"); // the saved state can no longer be reached
    history.undo();
    EXPECT_FALSE(history.isAtSaved());
    EXPECT_EQ(history.redo().project.volumeName, "b");
    EXPECT_FALSE(history.isAtSaved());
    EXPECT_FALSE(history.canRedo());
}

TEST(History, givesBackTheSelectionsOfTheTime)
{
    const Selections none;
    const Selections a{.item = Uuid::random()};
    const Selections b{.text = Uuid::random()};
    Names names;
    names.history.record(Names::named("1"), none, a, {}, {});
    names.history.record(Names::named("2"), b, none, {}, {}); // the person selected b meanwhile
    EXPECT_EQ(names.history.undo().selections, b);
    EXPECT_EQ(names.history.undo().selections, none);
    EXPECT_EQ(names.history.redo().selections, a);
    EXPECT_EQ(names.history.redo().selections, none);
}

TEST(History, forgetsTheOldestStepsBeyondItsLimits)
{
    const std::size_t one = sizeof(DMGProject);
    const struct {
        const char* name;
        History::Limits limits;
        std::size_t textLength;
        Texts undone;
        bool savedIsKept;
    } cases[] = {
        {"as many as there are", {.steps = 3}, 0, {"2", "1", "start"}, true},
        {"one fewer", {.steps = 2}, 0, {"2", "1"}, false},
        {"by size", {.bytes = 3 * one + 100}, 0, {"2", "1"}, false},
        {"one step always", {.bytes = 1}, 100000, {"2"}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Names names(c.limits);
        for (const char* name : {"1", "2", "3"}) {
            DMGProject project = Names::named(name);
            project.licenseText.resize(c.textLength);
            names.history.record(project, {}, {}, {}, {});
        }
        EXPECT_EQ(names.undoAll(), c.undone);
        EXPECT_EQ(names.history.isAtSaved(), c.savedIsKept);
    }
}

TEST(History, countsOnlyTheBytesThatItStillHolds)
{
    Names names({.bytes = 10 * sizeof(DMGProject)});
    const EditKey text{"licenseText", {}};
    DMGProject project = Names::named("start");
    names.edit("first");
    for (std::size_t length = 1; length < 3000; ++length) { // one long run
        project.licenseText.resize(length);
        names.history.record(project, {}, {}, text, {});
    }
    EXPECT_EQ(names.undoAll(), (Texts{"first", "start"}));
}

TEST(History, takesBackAnAbandonedRun)
{
    const EditKey drag{"drag", {}};
    Names names;
    names.edit("a");
    EXPECT_FALSE(names.history.abandonRun(drag));
    names.edit("b", drag);
    names.edit("c", drag);
    const auto before = names.history.abandonRun(drag);
    ASSERT_TRUE(before);
    EXPECT_EQ(before->project.volumeName, "a");
    EXPECT_FALSE(names.history.canRedo());
    EXPECT_EQ(names.undoAll(), Texts{"start"});
}

} // namespace
} // namespace velmora
