// SPDX-License-Identifier: MIT
#pragma once

// Points to pixels, points to runs, keyframe interpolation. Stateless; every routine works on its arguments alone.
// Outline point arrays hold three slots an anchor: the anchor, then the two control points of the segment that leaves
// it. Results are S_OK, E_POINTER (null buffer or list) or E_FAIL (too few points).

#include <cstdint>
#include <vector>

#include "overlay/types/keyframe_mask_info.h"
#include "overlay/types/outline_points.h"
#include "platform/win_types.h"

namespace Quill {

/// One horizontal run of mask pixels.
struct MaskRun {
    std::uint16_t column = 0; ///< first column
    std::uint16_t row = 0;
    std::uint16_t length = 0; ///< pixels

    friend bool operator==(const MaskRun &, const MaskRun &) = default;
};

/// The same run as fractions: column and length of the mask's width, row of its height.
struct MaskRunF {
    float x = 0;
    float y = 0;
    float length = 0;

    friend bool operator==(const MaskRunF &, const MaskRunF &) = default;
};

/// A mask as row lists: for each row a count, then that many values, the (first, last) columns of the row's runs.
struct RowListMask {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint16_t> rows;
};

/// One inner list of points a segment, the closing segment last.
using SegmentSamples = std::vector<std::vector<MPoint>>;

class MaskHandler {
  public:
    static HRESULT m_fnClear(std::uint32_t *buffer, int width, int height, int pitchBytes, const std::uint32_t *value);
    static HRESULT m_fnDrawLine(const MPoint &first, const MPoint &second, std::uint32_t *buffer,
                                const int *pitchPixels, const std::uint32_t *value);
    /// Lists the points whose x, in the first sweep, or y, in the second, is at most 131072 from 0 (see line_points.h).
    static HRESULT m_fnGetLinePoints(const MPoint &first, const MPoint &second, int ignored,
                                     std::vector<MPoint> *points);
    static HRESULT m_fnDrawPolygonMask(const MPoint *points, int count, int width, int height, int stride,
                                       std::uint8_t **buffer);
    static HRESULT m_fnFillBezierCurveMask(const MPoint *points, int count, int width, int height, int stride,
                                           std::uint8_t **buffer, bool dump);

    static HRESULT ConvertPoints2Mask(const MPoint *points, int count, int width, int height, bool invert,
                                      const std::uint8_t *exclusion, std::vector<MaskRun> *runs);
    static HRESULT ConvertPoints2Mask(const MPoint *points, int count, RowListMask *mask);
    static HRESULT ConvertPoints2MaskUS(const MPoint *points, int count, int originX, int originY, int width,
                                        int height, bool invert, const std::uint8_t *exclusion,
                                        std::vector<MaskRunF> *runs);

    static HRESULT GenAllPoints(const MPoint *points, int count, int density, int ignored, SegmentSamples *segments);

    static HRESULT CalcKeyFrame(const KeyFrameMaskInfo &key1, const KeyFrameMaskInfo &key2, KeyFrameMaskInfo &dest,
                                bool makeMask);
};

} // namespace Quill
