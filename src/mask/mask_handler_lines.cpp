// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>

#include "mask/line_points.h"
#include "mask/mask_handler.h"
#include "mask/no_throw.h"
#include "support/diag_log.h"

namespace Quill {

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
    const SlopeLine line(first, second);
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
    return withoutThrowing([&] { appendLinePoints(first, second, *points); });
}

} // namespace Quill
