#pragma once

#include <filesystem>
#include <string_view>

namespace velmora
{

/// Who may read a document that does not exist yet.
enum class DocumentAccess { ordinary, ownerOnly };

/// Writes a document in place: links are followed, and an existing file keeps its permissions. A failed write puts the
/// former content back, or removes the file when there was none. Throws FileError, which also says so when the former
/// content was lost.
void writeDocumentFile(const std::filesystem::path& file, std::string_view bytes, DocumentAccess access);

} // namespace velmora
