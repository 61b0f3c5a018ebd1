#pragma once

#include <QFont>

#include <optional>
#include <string>

namespace velmora
{

/// The PostScript name by which projects refer to the face that Qt takes for `font`, read from the font file's "name"
/// table (OpenType, "name"). Nothing for fonts without one. Needs a QGuiApplication.
std::optional<std::string> postScriptName(const QFont& font);

/// The same from the table's bytes, which may be damaged.
std::optional<std::string> postScriptNameFromTable(const std::string& table);

} // namespace velmora
