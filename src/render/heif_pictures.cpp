#include "render/heif_pictures.h"

#include <QColorSpace>
#include <QtEndian>

#include <libheif/heif.h>

#include <memory>

namespace velmora
{
namespace
{

struct HeifDeleter {
    void operator()(heif_context* context) const { heif_context_free(context); }
    void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
    void operator()(heif_image* image) const { heif_image_release(image); }
    void operator()(heif_color_profile_nclx* profile) const { heif_nclx_color_profile_free(profile); }
};
template <typename T>
using HeifPtr = std::unique_ptr<T, HeifDeleter>;

// Larger blocks are no camera data.
constexpr std::size_t largestBlock = 16 << 20;

QColorSpace colorSpaceOf(const heif_image_handle* handle)
{
    const std::size_t size = heif_image_handle_get_raw_color_profile_size(handle);
    if (size > 0 && size <= largestBlock) {
        QByteArray profile(static_cast<qsizetype>(size), '\0');
        if (heif_image_handle_get_raw_color_profile(handle, profile.data()).code == heif_error_Ok)
            return QColorSpace::fromIccProfile(profile);
    }
    heif_color_profile_nclx* raw = nullptr;
    if (heif_image_handle_get_nclx_color_profile(handle, &raw).code != heif_error_Ok)
        return {};
    const HeifPtr<heif_color_profile_nclx> nclx{raw};
    // Without a profile of its own a wide-gamut picture has these primaries with the usual transfer curve.
    return nclx->color_primaries == heif_color_primaries_SMPTE_EG_432_1 ? QColorSpace(QColorSpace::DisplayP3)
                                                                        : QColorSpace();
}

QByteArray exifOf(const heif_image_handle* handle)
{
    heif_item_id id = 0;
    if (heif_image_handle_get_list_of_metadata_block_IDs(handle, "Exif", &id, 1) != 1)
        return {};
    const std::size_t size = heif_image_handle_get_metadata_size(handle, id);
    if (size < 4 || size > largestBlock)
        return {};
    QByteArray block(static_cast<qsizetype>(size), '\0');
    if (heif_image_handle_get_metadata(handle, id, block.data()).code != heif_error_Ok)
        return {};
    const quint64 start = 4 + quint64{qFromBigEndian<quint32>(block.constData())};
    return start < size ? block.mid(static_cast<qsizetype>(start)) : QByteArray();
}

} // namespace

HeifPicture decodeHeif(const QByteArray& bytes, qint64 pixelLimit)
{
    const HeifPtr<heif_context> context{heif_context_alloc()};
    if (!context || heif_context_read_from_memory_without_copy(context.get(), bytes.constData(),
                                                               static_cast<std::size_t>(bytes.size()), nullptr)
                            .code != heif_error_Ok)
        return {};
    heif_image_handle* rawHandle = nullptr;
    if (heif_context_get_primary_image_handle(context.get(), &rawHandle).code != heif_error_Ok)
        return {};
    const HeifPtr<heif_image_handle> handle{rawHandle};
    const qint64 width = heif_image_handle_get_width(handle.get());
    const qint64 height = heif_image_handle_get_height(handle.get());
    if (width <= 0 || height <= 0 || width > pixelLimit / height)
        return {};

    heif_image* rawImage = nullptr;
    if (heif_decode_image(handle.get(), &rawImage, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, nullptr).code !=
        heif_error_Ok)
        return {};
    const HeifPtr<heif_image> image{rawImage};
    int stride = 0;
    const std::uint8_t* pixels = heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &stride);
    const int decodedWidth = heif_image_get_width(image.get(), heif_channel_interleaved);
    const int decodedHeight = heif_image_get_height(image.get(), heif_channel_interleaved);
    if (!pixels || decodedWidth <= 0 || decodedHeight <= 0 || stride < decodedWidth * 4)
        return {};

    const auto format = !heif_image_handle_has_alpha_channel(handle.get())       ? QImage::Format_RGBX8888
                        : heif_image_handle_is_premultiplied_alpha(handle.get()) ? QImage::Format_RGBA8888_Premultiplied
                                                                                 : QImage::Format_RGBA8888;
    HeifPicture picture{QImage(pixels, decodedWidth, decodedHeight, stride, format).copy(), exifOf(handle.get())};
    picture.pixels.setColorSpace(colorSpaceOf(handle.get()));
    return picture;
}

} // namespace velmora
