#include "platform/video/frame_scaler.h"

#include <cmath>

#include "base/aspect_fill.h"
#include "platform/video/codec_error.h"

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

namespace platform::video {

namespace {

/// From here on a film that does not say what its colours mean has those of HD television.
constexpr int highDefinitionHeight = 720;

/// Cuts the edges off that a view of `size` does not show, in steps that the colour planes have.
int crop(AVFrame& frame, base::PixelSize size) {
    const AVPixFmtDescriptor* const format =
        ::av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    if (format == nullptr) {
        return AVERROR(EINVAL);
    }
    const AVRational aspect = frame.sample_aspect_ratio;
    const base::Rect part = base::aspectFillCrop(
        {frame.width, frame.height}, aspect.num > 0 && aspect.den > 0 ? av_q2d(aspect) : 1, size);
    const auto cut = [](double length, int shift) {
        const double step = 1 << shift;
        return static_cast<std::size_t>(std::floor(length / step) * step);
    };
    // As much on both sides. Something is left, since no part is thinner than half a step.
    frame.crop_left = frame.crop_right = cut(part.minX(), format->log2_chroma_w);
    frame.crop_top = frame.crop_bottom = cut(part.minY(), format->log2_chroma_h);
    return ::av_frame_apply_cropping(&frame, AV_FRAME_CROP_UNALIGNED);
}

int colorsOf(const AVFrame& frame) {
    if (frame.colorspace != AVCOL_SPC_UNSPECIFIED && frame.colorspace != AVCOL_SPC_RGB) {
        return frame.colorspace;
    }
    return frame.height >= highDefinitionHeight ? SWS_CS_ITU709 : SWS_CS_ITU601;
}

void setColors(SwsContext* context, int colors, int isFullRange) {
    constexpr int one = 1 << 16;
    ::sws_setColorspaceDetails(context, ::sws_getCoefficients(colors), isFullRange,
                               ::sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, one, one);
}

}  // namespace

FrameScaler::~FrameScaler() {
    ::sws_freeContext(context_);
}

base::Status FrameScaler::scale(AVFrame& frame, base::PixelSize size, std::uint8_t* pixels,
                                std::size_t bytesPerRow) {
    // Before the cut, which changes the height.
    const int colors = colorsOf(frame);
    if (const int result = crop(frame, size); result < 0) {
        return codecError(result);
    }
    context_ = ::sws_getCachedContext(
        context_, frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), size.width,
        size.height, AV_PIX_FMT_BGRA, SWS_BILINEAR, nullptr, nullptr, nullptr);
    if (context_ == nullptr) {
        return base::Error{base::ErrorKind::invalid, "The video's pictures cannot be scaled."};
    }
    setColors(context_, colors, frame.color_range == AVCOL_RANGE_JPEG ? 1 : 0);
    std::uint8_t* const planes[4] = {pixels, nullptr, nullptr, nullptr};
    const int lengths[4] = {static_cast<int>(bytesPerRow), 0, 0, 0};
    const int rows =
        ::sws_scale(context_, frame.data, frame.linesize, 0, frame.height, planes, lengths);
    return rows == size.height ? base::Status(base::Nothing{})
                               : base::Status(codecError(rows < 0 ? rows : AVERROR(EINVAL)));
}

}  // namespace platform::video
