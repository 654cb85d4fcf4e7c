// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/picture/HeifDecoder.h"

#include "platform/ForeignCall.h"
#include "platform/files/FileNameCodec.h"
#include "platform/picture/JpegDecoder.h"

#include <libheif/heif.h>

#include <algorithm>
#include <memory>
#include <mutex>

namespace lumaro::platform {

namespace {

struct ContextFree
{
    void operator()(heif_context* c) const { heif_context_free(c); }
};
struct HandleFree
{
    void operator()(heif_image_handle* h) const { heif_image_handle_release(h); }
};
struct ImageFree
{
    void operator()(heif_image* i) const { heif_image_release(i); }
};
using Context = std::unique_ptr<heif_context, ContextFree>;
using Handle = std::unique_ptr<heif_image_handle, HandleFree>;
using Image = std::unique_ptr<heif_image, ImageFree>;

// libheif's own bound on either side of a picture; a file's declared size never raises it.
constexpr qint64 kLibheifSideLimit = 32768;
// A stream that makes several times the pixels its item declares is damaged (a strip declared 32×9056 came
// out 16416×6144), and scaling what it made down would be the dearest part of reading it.
constexpr qint64 kLargestGrowth = 4;

// The declared size with a coding block of padding on either side, which a stream may carry.
qint64 paddedDeclaredPixels(const heif_image_handle* handle)
{
    return (heif_image_handle_get_width(handle) + qint64(64)) *
           (heif_image_handle_get_height(handle) + qint64(64));
}

// A thumbnail whose long side reaches `maxSide`, if the file has one.
Handle bigEnoughThumbnail(heif_image_handle* primary, int maxSide)
{
    const int count = heif_image_handle_get_number_of_thumbnails(primary);
    if (count <= 0)
        return nullptr;
    std::vector<heif_item_id> ids(std::size_t(count), 0);
    heif_image_handle_get_list_of_thumbnail_IDs(primary, ids.data(), count);
    for (const heif_item_id id : ids) {
        heif_image_handle* thumb = nullptr;
        if (heif_image_handle_get_thumbnail(primary, id, &thumb).code != heif_error_Ok)
            continue;
        Handle owned(thumb);
        if (std::max(heif_image_handle_get_width(thumb), heif_image_handle_get_height(thumb)) >= maxSide)
            return owned;
    }
    return nullptr;
}

std::optional<QImage> decodeFile(const QString& path, int maxSide, bool allowThumbnail, bool* usedThumbnail,
                                 QString* error)
{
    const auto fail = [error](const heif_error& e) -> std::optional<QImage> {
        if (error)
            *error = QString::fromUtf8(e.message);
        return std::nullopt;
    };
    Context context(heif_context_alloc());
    heif_error status =
        heif_context_read_from_file(context.get(), FileNameCodec::encode(path).constData(), nullptr);
    if (status.code != heif_error_Ok)
        return fail(status);
    heif_image_handle* primaryRaw = nullptr;
    status = heif_context_get_primary_image_handle(context.get(), &primaryRaw);
    if (status.code != heif_error_Ok)
        return fail(status);
    Handle primary(primaryRaw);
    // The coded stream may make a far bigger picture than the file declares (a 32×24 item decoding at
    // 16416×6144 took half a minute): libheif is held to the coded size the file declares, with room for
    // coding-block padding, and never above its own limit.
    const int declaredSide = std::max(
        {heif_image_handle_get_ispe_width(primary.get()), heif_image_handle_get_ispe_height(primary.get()),
         heif_image_handle_get_width(primary.get()), heif_image_handle_get_height(primary.get())});
    heif_context_set_maximum_image_size_limit(
        context.get(), int(std::min<qint64>(kLibheifSideLimit, qint64(declaredSide) + 256)));
    Handle thumbnail = allowThumbnail && maxSide > 0 ? bigEnoughThumbnail(primary.get(), maxSide) : nullptr;
    if (usedThumbnail)
        *usedThumbnail = bool(thumbnail);
    heif_image* decodedRaw = nullptr;
    status = heif_decode_image(thumbnail ? thumbnail.get() : primary.get(), &decodedRaw, heif_colorspace_RGB,
                               heif_chroma_interleaved_RGBA, nullptr);
    if (status.code != heif_error_Ok)
        return fail(status);
    Image decoded(decodedRaw);
    int stride = 0;
    const uint8_t* pixels = heif_image_get_plane_readonly(decoded.get(), heif_channel_interleaved, &stride);
    const int width = heif_image_get_width(decoded.get(), heif_channel_interleaved);
    const int height = heif_image_get_height(decoded.get(), heif_channel_interleaved);
    if (!pixels || width <= 0 || height <= 0)
        return fail(heif_error{heif_error_Decoder_plugin_error, heif_suberror_Unspecified, "no pixels"});
    const heif_image_handle* source = thumbnail ? thumbnail.get() : primary.get();
    if (qint64(width) * height > kLargestGrowth * paddedDeclaredPixels(source))
        return fail(heif_error{heif_error_Invalid_input, heif_suberror_Unspecified,
                               "the picture decodes to far more pixels than it declares"});
    const QImage view(pixels, width, height, stride, QImage::Format_RGBA8888);
    QImage fitted = fitWithin(view, maxSide);
    // Unscaled, the picture still reads libheif's pixels, which go with `decoded`.
    return fitted.constBits() == pixels ? view.copy() : fitted;
}

} // namespace

std::optional<QImage> HeifDecoder::decode(const QString& path, int maxSide, bool allowThumbnail,
                                          bool* usedThumbnail, QString* error)
{
    static std::once_flag once;
    std::call_once(once, [] { heif_init(nullptr); });
    return guardedForeignCall([&] { return decodeFile(path, maxSide, allowThumbnail, usedThumbnail, error); },
                              [&](const QString& reason) -> std::optional<QImage> {
                                  if (error)
                                      *error = reason;
                                  return std::nullopt;
                              });
}

} // namespace lumaro::platform
