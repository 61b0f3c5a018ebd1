#pragma once

#include <optional>
#include <span>
#include <string_view>

/// The closed choices of a project. Each case has one raw value: the text that a document stores. All texts stand in
/// one table in enums.cpp; `allCases<E>()` lists the cases in the order in which a person is offered them.
namespace velmora
{

enum class DMGFormat { compressed, compressedLZFSE, readOnly, readWrite };
enum class FilesystemKind { hfs, apfs };
enum class SigningMode { none, sign, signAndNotarize };
enum class ImageEncryption { none, aes128, aes256 };
enum class BackgroundKind { gradient, color, image };
enum class BackgroundImageFit { fill, fit, stretch };
enum class TextHorizontalAlignment { left, center, right, justified };
enum class TextVerticalAlignment { top, middle, bottom };

/// The stored text of a case ("UDZO", "HFS+", "Code Sign & Notarize", …).
template <typename E>
std::string_view rawValue(E value);
/// The case with this stored text, or nothing; the comparison is exact.
template <typename E>
std::optional<E> fromRawValue(std::string_view raw);
/// The name shown to a person ("Compressed (zlib · UDZO)", …); for the text alignments the raw value.
template <typename E>
std::string_view displayName(E value);
/// All cases in order.
template <typename E>
std::span<const E> allCases();

/// The name of the file system in the image tool's arguments.
std::string_view hdiutilName(FilesystemKind kind);
/// The name of the encryption in the image tool's arguments; nothing for `none`.
std::optional<std::string_view> hdiutilValue(ImageEncryption encryption);
/// Whether the mode signs the finished image.
bool signs(SigningMode mode);
/// Whether the mode also submits the image to the notary service.
bool notarizes(SigningMode mode);

} // namespace velmora
