#include "render/fonts.h"

#include "platform/folders.h"

#include <QFontDatabase>
#include <QFontInfo>

#include <fontconfig/fontconfig.h>

#include <map>
#include <memory>
#include <mutex>
#include <string_view>

namespace velmora::Fonts
{
namespace
{

struct Face {
    QString family{};
    QString style{};
};

/// A family that the bundled one stands in for.
struct ReplacedFamily {
    std::string_view prefix; ///< of its PostScript names
    const char* name;
    LineMetrics lines;
};

// The numbers are the fonts' own: Helvetica Neue has ascender 952, descender 213 and line gap 28 of 1000 units,
// Helvetica 1577 and 471 of 2048 and no gap.
constexpr ReplacedFamily replacedFamilies[] = {
    {"HelveticaNeue", "Helvetica Neue", {0.952, 0.213, 0.028}},
    {"Helvetica", "Helvetica", {0.770, 0.230, 0}},
};

constexpr const char* bundledFiles[] = {"texgyreheros-regular.otf", "texgyreheros-bold.otf", "texgyreheros-italic.otf",
                                        "texgyreheros-bolditalic.otf"};

// Longer names are no PostScript names.
constexpr std::size_t longestName = 255;

struct FontconfigDeleter {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
    void operator()(FcObjectSet* set) const { FcObjectSetDestroy(set); }
    void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
};

std::string_view textOf(const FcPattern* pattern, const char* key)
{
    FcChar8* text = nullptr;
    if (FcPatternGetString(pattern, key, 0, &text) != FcResultMatch)
        return {};
    return reinterpret_cast<const char*>(text); // fontconfig's texts are unsigned characters
}

QString toQString(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// Fontconfig compares PostScript names without regard to case and blanks, so its answers are compared again. Type 1
/// twins of a font lack the tables that the text engine needs.
std::optional<Face> faceNamed(const std::string& name)
{
    const std::unique_ptr<FcPattern, FontconfigDeleter> pattern{FcPatternCreate()};
    FcPatternAddString(pattern.get(), FC_POSTSCRIPT_NAME, reinterpret_cast<const FcChar8*>(name.c_str()));
    const std::unique_ptr<FcObjectSet, FontconfigDeleter> wanted{
        FcObjectSetBuild(FC_FAMILY, FC_STYLE, FC_POSTSCRIPT_NAME, FC_FONTFORMAT, nullptr)};
    const std::unique_ptr<FcFontSet, FontconfigDeleter> found{FcFontList(nullptr, pattern.get(), wanted.get())};
    for (int i = 0; found && i < found->nfont; ++i) {
        const FcPattern* font = found->fonts[i];
        if (textOf(font, FC_POSTSCRIPT_NAME) == name && textOf(font, FC_FONTFORMAT) != "Type 1")
            return Face{toQString(textOf(font, FC_FAMILY)), toQString(textOf(font, FC_STYLE))};
    }
    return std::nullopt;
}

bool machineHasFonts()
{
    const FcFontSet* fonts = FcConfigGetFonts(nullptr, FcSetSystem);
    return fonts && fonts->nfont > 0;
}

void loadBundledFonts()
{
    const auto resources = Folders::resources();
    if (!resources)
        return;
    for (const char* file : bundledFiles)
        QFontDatabase::addApplicationFont(QString::fromStdString((*resources / "fonts" / file).string()));
}

QFont prepared(QFont font)
{
    // Hinting moves outlines to whole pixels, so that text would differ between resolutions and machines.
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    font.setPixelSize(referencePixels);
    return font;
}

QFont fontOf(const Face& face)
{
    return prepared(QFontDatabase::font(face.family, face.style, 12));
}

/// The bundled face for a name of a replaced family. Styles beyond the four faces get the nearest one.
std::optional<Resolved> standIn(std::string_view name)
{
    for (const ReplacedFamily& family : replacedFamilies) {
        if (name.substr(0, family.prefix.size()) != family.prefix)
            continue;
        std::string_view style = name.substr(family.prefix.size());
        if (!style.empty() && style[0] != '-')
            continue;
        style.remove_prefix(style.empty() ? 0 : 1);
        const bool bold = style.find("Bold") != style.npos;
        const bool italic = style.find("Italic") != style.npos || style.find("Oblique") != style.npos;
        const auto face = faceNamed(bold ? (italic ? "TeXGyreHeros-BoldItalic" : "TeXGyreHeros-Bold")
                                         : (italic ? "TeXGyreHeros-Italic" : "TeXGyreHeros-Regular"));
        if (!face)
            return std::nullopt;
        const bool equal = style.empty() || style == "Bold" || style == "Italic" || style == "BoldItalic" ||
                           style == "Oblique" || style == "BoldOblique";
        return Resolved{fontOf(*face), QString::fromLatin1(family.name), family.lines, equal};
    }
    return std::nullopt;
}

Resolved systemFont()
{
    if (!machineHasFonts()) {
        if (const auto face = faceNamed("TeXGyreHeros-Regular"))
            return {fontOf(*face), face->family, std::nullopt, false};
    }
    const QFont font = prepared(QFontDatabase::systemFont(QFontDatabase::GeneralFont));
    return {font, QFontInfo(font).family(), std::nullopt, false};
}

Resolved lookUp(const std::string& name)
{
    if (!name.empty() && name.find('\0') == name.npos) {
        if (const auto face = faceNamed(name))
            return {fontOf(*face), face->family, std::nullopt, true};
        if (auto resolved = standIn(name))
            return *resolved;
    }
    return systemFont();
}

} // namespace

Resolved resolve(const std::string& name)
{
    static std::mutex mutex;
    static std::map<std::string, Resolved> answers;
    static std::once_flag loaded;
    std::call_once(loaded, loadBundledFonts);
    if (name.size() > longestName)
        return systemFont();
    const std::lock_guard lock(mutex);
    const auto known = answers.find(name);
    return known != answers.end() ? known->second : answers.emplace(name, lookUp(name)).first->second;
}

} // namespace velmora::Fonts
