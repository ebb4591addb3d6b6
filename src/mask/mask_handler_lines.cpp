// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>

#include "mask/mask_handler.h"
#include "mask/no_throw.h"
#include "overlay/types/placement.h"
#include "support/diag_log.h"

// Straight lines in slope-intercept form, single precision: one sweep over x, one over y, no clipping. The two sweeps
// together leave no gap at any slope; where they meet a point comes twice, and consumers take the list as it is.

namespace Quill {
namespace {

/// y = k x + b, computed from the second point.
struct Line {
    float k;
    float b;
    std::int32_t firstX;

    Line(const MPoint &first, const MPoint &second) : k(0), firstX(first.x) {
        // The difference is taken in 64 bits: the ends of a line may lie further apart than 32 bits hold.
        if (first.x != second.x)
            k = (static_cast<float>(second.y) - static_cast<float>(first.y)) /
                static_cast<float>(std::int64_t{second.x} - first.x);
        b = static_cast<float>(second.y) - static_cast<float>(second.x) * k;
    }

    std::int32_t yAt(std::int32_t x) const { return roundHalfUp(k * static_cast<float>(x) + b); }
    std::int32_t xAt(std::int32_t y) const { return k != 0 ? roundHalfUp((static_cast<float>(y) - b) / k) : firstX; }

  private:
    /// Adds a half, then truncates: halves go up for positive values and toward zero for negative ones.
    static std::int32_t roundHalfUp(float value) { return truncateToInt32(static_cast<double>(value) + 0.5); }
};

/// Inclusive bounds of one sweep.
struct Sweep {
    std::int64_t first;
    std::int64_t last;

    Sweep(std::int32_t a, std::int32_t b, std::int64_t low, std::int64_t high)
        : first(std::max<std::int64_t>(std::min(a, b), low)), last(std::min<std::int64_t>(std::max(a, b), high)) {}

    template <typename Visit>
    void forEach(Visit visit) const {
        for (std::int64_t value = first; value <= last; ++value)
            visit(static_cast<std::int32_t>(value));
    }
};

/// Points further from the origin than this are not listed: no surface reaches there, and a coordinate born from NaN
/// would otherwise ask for as many points as 32 bits can count.
constexpr std::int64_t kListedCoordinate = 131072;

void listLine(const MPoint &first, const MPoint &second, std::vector<MPoint> &points) {
    if (first.x == second.x && first.y == second.y) {
        points.push_back(first);
        return;
    }
    const Line line(first, second);
    const auto add = [&points](std::int32_t x, std::int32_t y) {
        MPoint point;
        point.x = x;
        point.y = y;
        points.push_back(point);
    };
    const Sweep columns(first.x, second.x, -kListedCoordinate, kListedCoordinate);
    const Sweep rows(first.y, second.y, -kListedCoordinate, kListedCoordinate);
    columns.forEach([&](std::int32_t x) { add(x, line.yAt(x)); });
    rows.forEach([&](std::int32_t y) { add(line.xAt(y), y); });
}

} // namespace

HRESULT MaskHandler::m_fnClear(std::uint32_t *buffer, int, int height, int pitchBytes, const std::uint32_t *value) {
    if (!buffer) {
        DiagLogPrint("Quill::MaskHandler::m_fnClear Null Pointer : buffer\n");
        return E_POINTER;
    }
    if (!value)
        return E_POINTER;
    // A pitch below one pixel fills nothing; a negative one would not be a size to copy.
    const int pixels = pitchBytes / 4;
    if (pixels <= 0)
        return S_OK;
    std::fill_n(buffer, pixels, *value);
    for (int row = 1; row < height; ++row) // a pitch that is no multiple of 4 makes rows overlap by its remainder
        std::memmove(buffer + static_cast<std::ptrdiff_t>(row) * pixels, buffer, static_cast<std::size_t>(pitchBytes));
    return S_OK;
}

HRESULT MaskHandler::m_fnDrawLine(const MPoint &first, const MPoint &second, std::uint32_t *buffer,
                                  const int *pitchPixels, const std::uint32_t *value) {
    if (!buffer) {
        DiagLogPrint("Quill::MaskHandler::m_fnDrawLine Null Pointer : buffer\n");
        return E_POINTER;
    }
    if (!pitchPixels || !value)
        return E_POINTER;
    if (first.x == second.x && first.y == second.y)
        return S_OK;
    const Line line(first, second);
    // Both ends lie in the buffer, so it reaches from row 0 to the lower end's row. Single precision can put a pixel of
    // a steep line beyond its ends; what that would write outside the buffer is left out.
    const std::int64_t lastRow = std::max(first.y, second.y);
    const std::int64_t lastColumn = std::int64_t{*pitchPixels} - 1;
    const auto put = [&](std::int32_t x, std::int32_t y) {
        if (x >= 0 && x <= lastColumn && y >= 0 && y <= lastRow)
            buffer[static_cast<std::ptrdiff_t>(*pitchPixels) * y + x] = *value;
    };
    Sweep(first.x, second.x, 0, lastColumn).forEach([&](std::int32_t x) { put(x, line.yAt(x)); });
    Sweep(first.y, second.y, 0, lastRow).forEach([&](std::int32_t y) { put(line.xAt(y), y); });
    return S_OK;
}

HRESULT MaskHandler::m_fnGetLinePoints(const MPoint &first, const MPoint &second, int, std::vector<MPoint> *points) {
    if (!points) {
        DiagLogPrint("Quill::MaskHandler::m_fnGetLinePoints Null Pointer : points\n");
        return E_POINTER;
    }
    return withoutThrowing([&] { listLine(first, second, *points); });
}

} // namespace Quill
