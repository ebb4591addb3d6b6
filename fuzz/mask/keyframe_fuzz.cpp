// SPDX-License-Identifier: MIT
// Interpolation between any two records, the destination one of them now and then.
//
// Input: flags (bit 0 make a mask, bits 1-2 what the destination is), three durations, a placement, mask size (one byte
// each), the count of the second record's points (one byte), then raw points, the first record's first.

#include <cmath>

#include "byte_reader.h"
#include "mask/mask_handler.h"

namespace {

std::vector<MPointF> takePointsF(fuzz::ByteReader &bytes, std::size_t limit) {
    std::vector<MPointF> points;
    while (!bytes.empty() && points.size() < limit) {
        MPointF point;
        point.type = bytes.take<std::uint8_t>();
        point.x = bytes.take<float>();
        point.y = bytes.take<float>();
        point.handleShown = 1;
        points.push_back(point);
    }
    return points;
}

bool sameOrBothNaN(float a, float b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::ByteReader bytes(data, size);
    const auto flags = bytes.take<std::uint8_t>();
    Quill::KeyFrameMaskInfo key1;
    Quill::KeyFrameMaskInfo key2;
    Quill::KeyFrameMaskInfo fresh;
    key1.duration = bytes.take<std::int64_t>();
    key2.duration = bytes.take<std::int64_t>();
    fresh.duration = bytes.take<std::int64_t>();
    fresh.placement = bytes.take<PixelRect>();
    fresh.maskWidth = bytes.take<std::uint8_t>();
    fresh.maskHeight = bytes.take<std::uint8_t>();
    key2.pointsF = takePointsF(bytes, bytes.take<std::uint8_t>());
    key1.pointsF = takePointsF(bytes, 4096);
    const std::vector<MPointF> first = key1.pointsF;

    const int target = flags >> 1 & 3;
    Quill::KeyFrameMaskInfo &dest = target == 1 ? key1 : target == 2 ? key2 : fresh;
    const std::size_t common = std::min(first.size(), key2.pointsF.size());
    fuzz::require(Quill::MaskHandler::CalcKeyFrame(key1, key2, dest, (flags & 1) != 0) == S_OK);
    fuzz::require(dest.pointsF.size() == first.size() && dest.points.size() == first.size());
    for (std::size_t i = 0; i < first.size(); ++i) {
        fuzz::require(dest.pointsF[i].type == first[i].type && dest.pointsF[i].handleShown == 0);
        if (i >= common)
            fuzz::require(sameOrBothNaN(dest.pointsF[i].x, first[i].x) && sameOrBothNaN(dest.pointsF[i].y, first[i].y));
    }
    if (first.size() >= 9 && (flags & 1) != 0)
        fuzz::require(dest.maskBuffer.size() >= 2 * std::size_t{dest.maskHeight});
    return 0;
}
