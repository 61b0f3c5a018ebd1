// Layout scripts: parsed, carried out to every possible end, and stored as the Finder stores a layout.

#include "diskimage/finder/layout_script.h"
#include "diskimage/finder/ds_store.h"
#include "support/target.h"

#include <algorithm>

using namespace velmora;
using namespace velmora::diskimage;
using namespace velmora::diskimage::finder;

namespace
{

void store(const WindowLayout& layout)
{
    AliasTarget background;
    background.volumeName = "Disk";
    background.path = {"picture.tiff"};
    fuzz::attempt([&] { return writeDsStore(layoutRecords(layout, background)); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = textOf({data, size});
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n') +
                                                std::count(text.begin(), text.end(), '\r')) +
                       1;
    LayoutScript script;
    try {
        script = parseLayoutScript(text);
    } catch (const LayoutScriptError& error) {
        fuzz::expect(error.line() >= 1 && error.line() <= lines, "an error names a line of the script");
        return 0;
    }
    const LayoutRun whole = runLayoutScript(script, [](const ScriptObject&) { return true; });
    fuzz::expect(!whole.missing && whole.layout == script.layout, "a script that misses nothing gives its layout");
    store(whole.layout);
    constexpr std::size_t most = 20;
    for (std::size_t there = 0; there < most; ++there) {
        std::size_t asked = 0;
        const LayoutRun run = runLayoutScript(script, [&](const ScriptObject&) { return asked++ < there; });
        fuzz::expect(run.missing.has_value() == (asked > there), "a script ends at the first object that is missing");
        if (!run.missing)
            break;
        store(run.layout);
    }
    return 0;
}
