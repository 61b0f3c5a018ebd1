#include "model/enums.h"

#include <algorithm>
#include <array>

namespace velmora
{
namespace
{

/// One case: what a document stores, what a person reads, and what the image tool calls it.
template <typename E>
struct Row {
    E value;
    std::string_view raw;
    std::string_view name;
    std::string_view toolName{};
};

/// The rows of an enumeration, in the order of its cases.
template <typename E>
constexpr std::array<Row<E>, 0> rows{};

template <>
constexpr auto rows<DMGFormat> = std::to_array<Row<DMGFormat>>({
    {DMGFormat::compressed, "UDZO", "Compressed (zlib · UDZO)"},
    {DMGFormat::compressedLZFSE, "ULFO", "Compressed (LZFSE · ULFO)"},
    {DMGFormat::readOnly, "UDRO", "Read-only (UDRO)"},
    {DMGFormat::readWrite, "UDRW", "Read/Write (UDRW)"},
});

template <>
constexpr auto rows<FilesystemKind> = std::to_array<Row<FilesystemKind>>({
    {FilesystemKind::hfs, "HFS+", "HFS+", "HFS+"},
    {FilesystemKind::apfs, "APFS", "APFS", "APFS"},
});

template <>
constexpr auto rows<SigningMode> = std::to_array<Row<SigningMode>>({
    {SigningMode::none, "Don't Code Sign or Notarize", "Don't Code Sign or Notarize"},
    {SigningMode::sign, "Code Sign", "Code Sign"},
    {SigningMode::signAndNotarize, "Code Sign & Notarize", "Code Sign & Notarize"},
});

template <>
constexpr auto rows<ImageEncryption> = std::to_array<Row<ImageEncryption>>({
    {ImageEncryption::none, "None", "None"},
    {ImageEncryption::aes128, "AES 128-bit", "AES 128-bit", "AES-128"},
    {ImageEncryption::aes256, "AES 256-bit", "AES 256-bit", "AES-256"},
});

template <>
constexpr auto rows<BackgroundKind> = std::to_array<Row<BackgroundKind>>({
    {BackgroundKind::gradient, "gradient", "Gradient Fill"},
    {BackgroundKind::color, "color", "Solid Color"},
    {BackgroundKind::image, "image", "Image"},
});

template <>
constexpr auto rows<BackgroundImageFit> = std::to_array<Row<BackgroundImageFit>>({
    {BackgroundImageFit::fill, "fill", "Fill (crop)"},
    {BackgroundImageFit::fit, "fit", "Fit (letterbox)"},
    {BackgroundImageFit::stretch, "stretch", "Stretch"},
});

template <>
constexpr auto rows<TextHorizontalAlignment> = std::to_array<Row<TextHorizontalAlignment>>({
    {TextHorizontalAlignment::left, "left", "left"},
    {TextHorizontalAlignment::center, "center", "center"},
    {TextHorizontalAlignment::right, "right", "right"},
    {TextHorizontalAlignment::justified, "justified", "justified"},
});

template <>
constexpr auto rows<TextVerticalAlignment> = std::to_array<Row<TextVerticalAlignment>>({
    {TextVerticalAlignment::top, "top", "top"},
    {TextVerticalAlignment::middle, "middle", "middle"},
    {TextVerticalAlignment::bottom, "bottom", "bottom"},
});

template <typename E>
constexpr auto casesOf()
{
    std::array<E, rows<E>.size()> cases{};
    for (std::size_t i = 0; i < cases.size(); ++i)
        cases[i] = rows<E>[i].value;
    return cases;
}

template <typename E>
constexpr auto cases = casesOf<E>();

template <typename E>
const Row<E>& rowOf(E value)
{
    return rows<E>.at(static_cast<std::size_t>(value));
}

} // namespace

template <typename E>
std::string_view rawValue(E value)
{
    return rowOf(value).raw;
}

template <typename E>
std::optional<E> fromRawValue(std::string_view raw)
{
    const auto row = std::find_if(rows<E>.begin(), rows<E>.end(), [raw](const Row<E>& r) { return r.raw == raw; });
    return row == rows<E>.end() ? std::nullopt : std::optional<E>(row->value);
}

template <typename E>
std::string_view displayName(E value)
{
    return rowOf(value).name;
}

template <typename E>
std::span<const E> allCases()
{
    return cases<E>;
}

template std::string_view rawValue(DMGFormat);
template std::string_view rawValue(FilesystemKind);
template std::string_view rawValue(SigningMode);
template std::string_view rawValue(ImageEncryption);
template std::string_view rawValue(BackgroundKind);
template std::string_view rawValue(BackgroundImageFit);
template std::string_view rawValue(TextHorizontalAlignment);
template std::string_view rawValue(TextVerticalAlignment);

template std::optional<DMGFormat> fromRawValue(std::string_view);
template std::optional<FilesystemKind> fromRawValue(std::string_view);
template std::optional<SigningMode> fromRawValue(std::string_view);
template std::optional<ImageEncryption> fromRawValue(std::string_view);
template std::optional<BackgroundKind> fromRawValue(std::string_view);
template std::optional<BackgroundImageFit> fromRawValue(std::string_view);
template std::optional<TextHorizontalAlignment> fromRawValue(std::string_view);
template std::optional<TextVerticalAlignment> fromRawValue(std::string_view);

template std::string_view displayName(DMGFormat);
template std::string_view displayName(FilesystemKind);
template std::string_view displayName(SigningMode);
template std::string_view displayName(ImageEncryption);
template std::string_view displayName(BackgroundKind);
template std::string_view displayName(BackgroundImageFit);
template std::string_view displayName(TextHorizontalAlignment);
template std::string_view displayName(TextVerticalAlignment);

template std::span<const DMGFormat> allCases();
template std::span<const FilesystemKind> allCases();
template std::span<const SigningMode> allCases();
template std::span<const ImageEncryption> allCases();
template std::span<const BackgroundKind> allCases();
template std::span<const BackgroundImageFit> allCases();
template std::span<const TextHorizontalAlignment> allCases();
template std::span<const TextVerticalAlignment> allCases();

std::string_view hdiutilName(FilesystemKind kind)
{
    return rowOf(kind).toolName;
}

std::optional<std::string_view> hdiutilValue(ImageEncryption encryption)
{
    const std::string_view name = rowOf(encryption).toolName;
    return name.empty() ? std::nullopt : std::optional(name);
}

bool signs(SigningMode mode)
{
    return mode != SigningMode::none;
}

bool notarizes(SigningMode mode)
{
    return mode == SigningMode::signAndNotarize;
}

} // namespace velmora
