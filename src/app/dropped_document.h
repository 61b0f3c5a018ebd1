#pragma once

#include <filesystem>
#include <optional>

class QMimeData;

namespace velmora
{

/// The project document among what is dragged: the one local file, named as documents are. Nothing otherwise.
std::optional<std::filesystem::path> droppedDocument(const QMimeData* data);

} // namespace velmora
