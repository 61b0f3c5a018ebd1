#pragma once

#include "model/project.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace velmora
{

/// What is wrong with a document, in a sentence for a person that names the key ("items[3].x: expected a number").
class DocumentError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The project document: UTF-8 JSON, one object, keys sorted, the file extension "velmora".
namespace Document
{

inline constexpr std::string_view fileExtension = "velmora";
/// Larger documents are refused.
inline constexpr std::size_t maximumSize = std::size_t{64} * 1024 * 1024;

/// The document's bytes; the same project always gives the same bytes. Throws DocumentError, naming the field, when a
/// number is not finite.
std::string encode(const DMGProject& project);
/// Reads a document and migrates legacy icon positions. Unknown keys are ignored. Throws DocumentError.
DMGProject decode(std::string_view bytes);

} // namespace Document
} // namespace velmora
