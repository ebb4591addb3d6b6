// SPDX-License-Identifier: MIT
#include "hostkit/frame_format.h"

#include "hostkit/error.h"
#include "hostkit/scale.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
}

namespace hostkit {
namespace {

/// The shares of red and of blue in Y'.
struct MatrixShares {
    AVColorSpace matrix;
    double kr, kb;
};
constexpr MatrixShares kMatrixShares[] = {
    {AVCOL_SPC_FCC, 0.30, 0.11},         {AVCOL_SPC_BT470BG, 0.299, 0.114},      {AVCOL_SPC_SMPTE170M, 0.299, 0.114},
    {AVCOL_SPC_SMPTE240M, 0.212, 0.087}, {AVCOL_SPC_BT2020_NCL, 0.2627, 0.0593}, {AVCOL_SPC_BT2020_CL, 0.2627, 0.0593}};

const AVPixFmtDescriptor &describe(int pixelFormat) {
    const AVPixFmtDescriptor *const descriptor = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(pixelFormat));
    if (descriptor == nullptr)
        throw MediaError("the clip's pixel format is unknown");
    return *descriptor;
}

bool isRgb(const AVPixFmtDescriptor &format) {
    return (format.flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL)) != 0;
}

/// The old formats that say "full range" by their name are left out: the range is a tag of its own.
bool isPlanarYuv(const AVPixFmtDescriptor &format) {
    const std::string name = format.name;
    constexpr std::uint64_t kOther = AV_PIX_FMT_FLAG_ALPHA | AV_PIX_FMT_FLAG_FLOAT | AV_PIX_FMT_FLAG_HWACCEL |
                                     AV_PIX_FMT_FLAG_BITSTREAM | AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL;
    const bool isNative = format.comp[0].depth <= 8 || (format.flags & AV_PIX_FMT_FLAG_BE) == 0;
    return format.nb_components == 3 && (format.flags & kOther) == 0 && isNative && format.comp[1].plane == 1 &&
           format.comp[2].plane == 2 && format.comp[0].shift == 0 && !name.starts_with("yuvj") &&
           format.log2_chroma_w <= 1 && format.log2_chroma_h <= 1;
}

/// The planar format with that sampling and the least depth that is enough, or the greatest there is; -1 for none.
template <typename Accept>
int findPlanar(int shiftX, int shiftY, int depth, Accept isAccepted) {
    int best = -1;
    int bestDepth = 0;
    for (const AVPixFmtDescriptor *format = av_pix_fmt_desc_next(nullptr); format;
         format = av_pix_fmt_desc_next(format)) {
        const int id = av_pix_fmt_desc_get_id(format);
        const int own = format->comp[0].depth;
        if (!isPlanarYuv(*format) || format->log2_chroma_w != shiftX || format->log2_chroma_h != shiftY ||
            !isAccepted(id))
            continue;
        const bool isBetter = bestDepth >= depth ? own >= depth && own < bestDepth : own > bestDepth;
        if (best < 0 || isBetter) {
            best = id;
            bestDepth = own;
        }
    }
    return best;
}

} // namespace

int FrameFormat::depth() const {
    return describe(pixelFormat).comp[0].depth;
}

bool FrameFormat::isInterlaced() const {
    return fieldOrder > AV_FIELD_PROGRESSIVE;
}

bool FrameFormat::isFullRange() const {
    return range == AVCOL_RANGE_JPEG;
}

int FrameFormat::actualMatrix() const {
    return matrix == AVCOL_SPC_UNSPECIFIED || matrix == AVCOL_SPC_RGB ? assumedMatrix(height) : matrix;
}

std::string FrameFormat::text() const {
    const AVPixFmtDescriptor &format = describe(pixelFormat);
    const char *const sampling = format.log2_chroma_w == 0 ? (format.log2_chroma_h == 0 ? "4:4:4" : "4:4:0")
                                                           : (format.log2_chroma_h == 0 ? "4:2:2" : "4:2:0");
    return std::to_string(format.comp[0].depth) + "-bit " + sampling;
}

int workingFormat(int pixelFormat, bool transposed) {
    const AVPixFmtDescriptor &format = describe(pixelFormat);
    // Coarser samplings than 4:2:0 go into the next finer one; grey has no colour to keep.
    const bool isGrey = format.nb_components < 3 && !isRgb(format);
    int shiftX = isRgb(format) ? 0 : isGrey || format.log2_chroma_w >= 1 ? 1 : 0;
    int shiftY = isRgb(format) ? 0 : isGrey || format.log2_chroma_h >= 1 ? 1 : 0;
    // Encoders know no colour samples that stand for two rows of one column.
    if (transposed && shiftX != shiftY)
        shiftX = shiftY = 0;
    if (isPlanarYuv(format) && format.log2_chroma_w == shiftX && format.log2_chroma_h == shiftY)
        return pixelFormat;
    const int depth = (format.flags & AV_PIX_FMT_FLAG_PAL) != 0 ? 8 : format.comp[0].depth;
    return findPlanar(shiftX, shiftY, depth, [](int) { return true; });
}

int encodableFormat(int workingFormat, const int *offered) {
    const AVPixFmtDescriptor &format = describe(workingFormat);
    const auto isOffered = [offered](int id) {
        for (const int *each = offered; each != nullptr && *each != AV_PIX_FMT_NONE; ++each)
            if (*each == id)
                return true;
        return false;
    };
    const int depth = format.comp[0].depth;
    if (const int same = findPlanar(format.log2_chroma_w, format.log2_chroma_h, depth, isOffered); same >= 0)
        return same;
    if (const int finest = findPlanar(0, 0, depth, isOffered); finest >= 0)
        return finest;
    return AV_PIX_FMT_YUV420P;
}

bool hasAlpha(int pixelFormat) {
    return (describe(pixelFormat).flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
}

bool isRgb(int pixelFormat) {
    return isRgb(describe(pixelFormat));
}

Planes planesOf(AVFrame &frame, const FrameFormat &format) {
    const AVPixFmtDescriptor &descriptor = describe(format.pixelFormat);
    Planes planes;
    for (int i = 0; i < 3; ++i) {
        planes.data[i] = frame.data[i];
        planes.stride[i] = frame.linesize[i];
    }
    planes.width = frame.width;
    planes.height = frame.height;
    planes.shiftX = descriptor.log2_chroma_w;
    planes.shiftY = descriptor.log2_chroma_h;
    planes.depth = descriptor.comp[0].depth;
    planes.interlaced = format.isInterlaced() && frame.height % 4 == 0;
    YuvCoding &coding = planes.coding;
    // BT.709's shares are what is there already, and what a matrix without such shares gets.
    for (const MatrixShares &each : kMatrixShares)
        if (each.matrix == format.actualMatrix())
            coding.kr = each.kr, coding.kb = each.kb;
    coding.fullRange = format.isFullRange();
    coding.transfer = format.transfer;
    coding.primaries = format.primaries;
    return planes;
}

} // namespace hostkit
