// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "mask/mask_handler.h"
#include "mask/no_throw.h"
#include "overlay/types/placement.h"
#include "support/diag_log.h"

namespace Quill {
namespace {

/// Single-precision epsilon: coordinates closer than this count as not moved.
constexpr float kSamePosition = 1.1920929e-7F;

std::int64_t wrappingDifference(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}

/// Position of `duration` between the two keyframes: 0 at the first, 1 at the second, whatever it is outside, and
/// infinite or NaN when both stand at the same time. The processor divides, always: a compiler that knew the zeros
/// would put a NaN of the other sign in, and the sign is seen in saved points.
double timeRatio(std::int64_t duration, std::int64_t first, std::int64_t second) {
    const volatile auto passed = static_cast<double>(wrappingDifference(duration, first));
    const volatile auto whole = static_cast<double>(wrappingDifference(second, first));
    return passed / whole;
}

/// Difference in single precision, product in double, sum in single again.
float interpolate(float a, float b, double t) {
    return a + static_cast<float>(static_cast<double>(b - a) * t);
}

bool samePosition(const MPointF &a, const MPointF &b) {
    return std::fabs(a.x - b.x) < kSamePosition && std::fabs(a.y - b.y) < kSamePosition;
}

/// Moves the destination's points to the time position. Flags come from `key1` alone; handles of normalised points are
/// hidden. Works when the destination is one of the keyframes.
void interpolatePoints(const KeyFrameMaskInfo &key1, const KeyFrameMaskInfo &key2, KeyFrameMaskInfo &dest) {
    const std::size_t count = key1.pointsF.size();
    // Points that the second keyframe lacks stay where the first has them.
    const std::size_t common = std::min(count, key2.pointsF.size());
    const double t = timeRatio(dest.duration, key1.duration, key2.duration);
    // Both lists or none: they stay as long as one another when memory runs out.
    dest.pointsF.reserve(count);
    dest.points.resize(count);
    dest.pointsF.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        MPointF point = key1.pointsF[i];
        point.handleShown = 0;
        if (i < common && !samePosition(point, key2.pointsF[i])) {
            point.x = interpolate(point.x, key2.pointsF[i].x, t);
            point.y = interpolate(point.y, key2.pointsF[i].y, t);
        }
        dest.pointsF[i] = point;
        MPoint &pixel = dest.points[i];
        const std::uint32_t handleShown = pixel.handleShown;
        pixel = placePoint(point, dest.placement);
        pixel.handleShown = handleShown;
    }
}

/// Puts the row list of the record's outline into its mask buffer, low byte first.
void makeRecordMask(KeyFrameMaskInfo &record) {
    RowListMask mask{record.maskWidth, record.maskHeight, {}};
    const HRESULT result =
        MaskHandler::ConvertPoints2Mask(record.points.data(), static_cast<int>(record.points.size()), &mask);
    // Too few points leave a mask as it was; no points at all are an empty mask.
    if (FAILED(result) && !record.points.empty())
        return;
    record.maskBuffer.resize(2 * mask.rows.size());
    auto out = record.maskBuffer.begin();
    for (const std::uint16_t value : mask.rows) {
        *out++ = static_cast<std::uint8_t>(value & 0xFF);
        *out++ = static_cast<std::uint8_t>(value >> 8);
    }
}

} // namespace

HRESULT MaskHandler::CalcKeyFrame(const KeyFrameMaskInfo &key1, const KeyFrameMaskInfo &key2, KeyFrameMaskInfo &dest,
                                  bool makeMask) {
    DiagLogPrint("[CalcKeyFrame] Key1-duration=%lld, Key2-duration=%lld, Dest-duration=%lld, point size=%d",
                 static_cast<long long>(key1.duration), static_cast<long long>(key2.duration),
                 static_cast<long long>(dest.duration), static_cast<int>(key1.pointsF.size()));
    // Callers have never been told anything but success: what there is no memory for stays as it was.
    withoutThrowing([&] {
        interpolatePoints(key1, key2, dest);
        if (makeMask)
            makeRecordMask(dest);
    });
    return S_OK;
}

} // namespace Quill
