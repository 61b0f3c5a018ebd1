// The script's form is fixed: two nested blocks that name the Finder and the disk, and in them statements, each of
// which equals one of the forms below word by word. In a form "#" stands for a whole number, "$" for a text and "?" for
// true or false.

#include "diskimage/finder/layout_script.h"

#include "diskimage/finder/layout_script_tokens.h"
#include "diskimage/hfs/names.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <map>
#include <span>

namespace velmora::diskimage::finder
{
namespace
{

using Kind = ScriptToken::Kind;

[[noreturn]] void fail(std::size_t line, const std::string& what)
{
    throw LayoutScriptError(line, what);
}

/// The values that a statement has at its form's places, in order.
struct Values {
    std::vector<std::int32_t> numbers;
    std::vector<std::string> texts;
    std::vector<bool> flags;
};

std::int32_t numberOf(const ScriptToken& token)
{
    std::int32_t value = 0;
    const char* end = token.text.data() + token.text.size();
    const auto [stop, error] = std::from_chars(token.text.data(), end, value);
    if (error != std::errc() || stop != end)
        fail(token.line, "the number " + token.text.substr(0, 40) + " is out of range");
    return value;
}

/// Whether a line is of this form. `values` is meaningful when it is.
bool matches(const ScriptLine& line, std::string_view form, Values& values)
{
    values = {};
    std::size_t index = 0;
    while (!form.empty()) {
        const std::string_view part = form.substr(0, form.find(' '));
        form.remove_prefix(std::min(part.size() + 1, form.size()));
        if (index == line.size())
            return false;
        const ScriptToken& token = line[index++];
        if (part == "#" && token.kind == Kind::number)
            values.numbers.push_back(numberOf(token));
        else if (part == "$" && token.kind == Kind::string)
            values.texts.push_back(token.text);
        else if (part == "?" && token.kind == Kind::word && (token.text == "true" || token.text == "false"))
            values.flags.push_back(token.text == "true");
        else if (token.text != part || (token.kind != Kind::word && token.kind != Kind::symbol))
            return false;
    }
    return index == line.size();
}

/// A name as the Finder shows it in POSIX form: each system's separator is an ordinary character in the other's names.
std::string posixNameOf(std::string_view shown, std::size_t line)
{
    std::string name(shown);
    std::replace(name.begin(), name.end(), '/', ':');
    try {
        (void)hfs::storedName(name);
    } catch (const DiskImageError& error) {
        fail(line, error.what());
    }
    return name;
}

/// A file's path on the volume, its parts separated by ":", as a POSIX path below the root.
std::string posixPath(std::string_view path, std::size_t line)
{
    std::string result;
    for (;;) {
        const std::string_view part = path.substr(0, path.find(':'));
        result += "/" + posixNameOf(part, line);
        if (part.size() == path.size())
            return result;
        path.remove_prefix(part.size() + 1);
    }
}

LayoutStatement setting(std::function<void(WindowLayout&)> apply)
{
    return {std::nullopt, std::move(apply)};
}

LayoutStatement nothing(const Values&, std::size_t)
{
    return setting([](WindowLayout&) {});
}

template <bool WindowLayout::*Field>
LayoutStatement flag(const Values& values, std::size_t)
{
    return setting([value = values.flags[0]](WindowLayout& layout) { layout.*Field = value; });
}

template <double WindowLayout::*Field>
LayoutStatement size(const Values& values, std::size_t line)
{
    if (values.numbers[0] < 1)
        fail(line, "a size must be at least 1");
    return setting([value = values.numbers[0]](WindowLayout& layout) { layout.*Field = value; });
}

template <bool Bottom>
LayoutStatement labelPosition(const Values&, std::size_t)
{
    return setting([](WindowLayout& layout) { layout.labelOnBottom = Bottom; });
}

LayoutStatement notArranged(const Values&, std::size_t)
{
    return setting([](WindowLayout& layout) { layout.arrangeBy = "none"; });
}

LayoutStatement snapToGrid(const Values&, std::size_t)
{
    return setting([](WindowLayout& layout) { layout.arrangeBy = "grid"; });
}

LayoutStatement sidebarWidth(const Values& values, std::size_t line)
{
    if (values.numbers[0] < 0)
        fail(line, "the width of the sidebar must not be negative");
    return setting([width = values.numbers[0]](WindowLayout& layout) { layout.sidebarWidth = width; });
}

LayoutStatement bounds(const Values& values, std::size_t line)
{
    const auto& n = values.numbers;
    if (n[2] <= n[0] || n[3] <= n[1])
        fail(line, "the bounds, in the order left, top, right, bottom, enclose nothing");
    return setting([n](WindowLayout& layout) {
        layout.left = n[0];
        layout.top = n[1];
        layout.right = n[2];
        layout.bottom = n[3];
    });
}

LayoutStatement background(const Values& values, std::size_t line)
{
    const std::string path = posixPath(values.texts[0], line);
    return {ScriptObject{ScriptObject::Kind::picture, path, line},
            [path](WindowLayout& layout) { layout.backgroundPath = path; }};
}

LayoutStatement position(const Values& values, std::size_t line)
{
    const ItemPosition item{posixNameOf(values.texts[0], line), values.numbers[0], values.numbers[1]};
    return {ScriptObject{ScriptObject::Kind::item, item.name, line},
            [item](WindowLayout& layout) { layout.positions.push_back(item); }};
}

struct StatementForm {
    std::string_view form;
    LayoutStatement (*make)(const Values& values, std::size_t line);
};

constexpr std::string_view optionsForm = "set theViewOptions to the icon view options of container window";

/// What only acts on the Finder's own window leaves no trace in a layout.
constexpr StatementForm statementForms[] = {
    {"open", nothing},
    {"close", nothing},
    {"update without registering applications", nothing},
    {"delay #", nothing},
    {"set current view of container window to icon view", nothing},
    {optionsForm, nothing},
    {"set toolbar visible of container window to ?", flag<&WindowLayout::showToolbar>},
    {"set statusbar visible of container window to ?", flag<&WindowLayout::showStatusBar>},
    {"set sidebar width of container window to #", sidebarWidth},
    {"set the bounds of container window to { # , # , # , # }", bounds},
    {"set arrangement of theViewOptions to not arranged", notArranged},
    {"set arrangement of theViewOptions to snap to grid", snapToGrid},
    {"set icon size of theViewOptions to #", size<&WindowLayout::iconSize>},
    {"set text size of theViewOptions to #", size<&WindowLayout::textSize>},
    {"set label position of theViewOptions to bottom", labelPosition<true>},
    {"set label position of theViewOptions to right", labelPosition<false>},
    {"set shows icon preview of theViewOptions to ?", flag<&WindowLayout::showIconPreview>},
    {"set shows item info of theViewOptions to ?", flag<&WindowLayout::showItemInfo>},
    {"set background picture of theViewOptions to file $", background},
    {"set position of item $ of container window to { # , # }", position},
};

/// A line as a message quotes it.
std::string quoted(const ScriptLine& line)
{
    constexpr std::size_t longest = 80;
    std::string text;
    for (const ScriptToken& token : line)
        text += (text.empty() ? "" : " ") + (token.kind == Kind::string ? "\"" + token.text + "\"" : token.text);
    if (text.size() > longest) {
        std::size_t end = longest;
        while ((static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
            --end;
        text = text.substr(0, end) + "…";
    }
    return text;
}

bool isEndTell(const ScriptLine& line)
{
    Values values;
    return matches(line, "end tell", values);
}

class Parser
{
public:
    explicit Parser(std::string_view script) : m_lines(scriptLines(script)) {}

    LayoutScript parse()
    {
        LayoutScript script;
        Values values;
        if (!matches(next("tell application \"Finder\""), "tell application $", values) || values.texts[0] != "Finder")
            fail(m_line, "the script must begin with: tell application \"Finder\"");
        if (!matches(next("tell disk"), "tell disk $", values))
            fail(m_line, "a disk must be chosen first: tell disk \"NAME\"");
        script.diskName = values.texts[0];
        if (script.diskName.empty())
            fail(m_line, "the disk's name is empty");
        for (const ScriptLine* line = &next("end tell"); !isEndTell(*line); line = &next("end tell"))
            script.statements.push_back(statement(*line));
        if (!isEndTell(next("end tell")))
            fail(m_line, "a statement stands outside of the disk's block; \"end tell\" is due");
        if (m_index < m_lines.size())
            fail(m_lines[m_index][0].line, "something follows the end of the script");
        script.layout = runLayoutScript(script, [](const ScriptObject&) { return true; }).layout;
        return script;
    }

private:
    const ScriptLine& next(const std::string& due)
    {
        if (m_index == m_lines.size())
            fail(m_lines.empty() ? 1 : m_lines.back().back().line, "the script ends where this is due: " + due);
        m_line = m_lines[m_index][0].line;
        return m_lines[m_index++];
    }

    LayoutStatement statement(const ScriptLine& line)
    {
        Values values;
        for (const StatementForm& form : statementForms) {
            if (!matches(line, form.form, values))
                continue;
            if (form.form == optionsForm)
                m_hasOptions = true;
            else if (form.form.find("theViewOptions") != std::string_view::npos && !m_hasOptions)
                fail(m_line, "theViewOptions is used before it is set");
            return form.make(values, m_line);
        }
        fail(m_line, "this is no statement of a window's layout: " + quoted(line));
    }

    std::vector<ScriptLine> m_lines;
    std::size_t m_index = 0;
    std::size_t m_line = 0;
    bool m_hasOptions = false;
};

/// Leaves one position for each name, the last one given.
void keepLastPositions(std::vector<ItemPosition>& positions)
{
    const auto sortsBefore = [](const std::u16string& a, const std::u16string& b) {
        return hfs::compareNames(a, b) < 0;
    };
    std::map<std::u16string, std::size_t, decltype(sortsBefore)> places(sortsBefore);
    std::vector<ItemPosition> kept;
    for (ItemPosition& item : positions) {
        const auto [entry, isNew] = places.try_emplace(hfs::storedName(item.name), kept.size());
        if (isNew)
            kept.push_back(std::move(item));
        else
            kept[entry->second] = std::move(item);
    }
    positions = std::move(kept);
}

} // namespace

LayoutScriptError::LayoutScriptError(std::size_t line, const std::string& what)
    : DiskImageError("line " + std::to_string(line) + ": " + what), m_line(line)
{
}

LayoutScript parseLayoutScript(std::string_view script)
{
    return Parser(script).parse();
}

LayoutRun runLayoutScript(const LayoutScript& script, const std::function<bool(const ScriptObject&)>& exists)
{
    LayoutRun run;
    for (const LayoutStatement& statement : script.statements) {
        if (statement.object && !exists(*statement.object)) {
            run.missing = statement.object;
            break;
        }
        statement.apply(run.layout);
    }
    keepLastPositions(run.layout.positions);
    return run;
}

} // namespace velmora::diskimage::finder
