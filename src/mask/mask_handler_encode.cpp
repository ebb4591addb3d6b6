// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>

#include "mask/encode.h"
#include "mask/mask_handler.h"
#include "mask/no_throw.h"
#include "mask/outline_figure.h"
#include "support/diag_log.h"

// The arguments, the trace and the caller's sequence; the work is in encode.cpp.

namespace Quill {
namespace {

/// Room that an emptied output gets: two entries a row, for as many rows as run records can name.
std::size_t reservedEntries(int height) {
    constexpr int kMaxRows = 65536;
    return 2 * static_cast<std::size_t>(std::clamp(height, 0, kMaxRows));
}

/// A kilobyte at a time: for larger pieces memcpy turns to the processor's string instruction, which on some processors
/// takes several times as long when source and destination are aligned differently.
template <typename Value>
void copyValues(const PodBuffer<Value> &values, Value *out) {
    constexpr std::size_t kPiece = 1024 / sizeof(Value);
    const std::size_t count = values.size();
    std::size_t done = 0;
    for (; done + kPiece <= count; done += kPiece)
        std::memcpy(out + done, values.data() + done, kPiece * sizeof(Value));
    if (done < count)
        std::memcpy(out + done, values.data() + done, (count - done) * sizeof(Value));
}

/// Runs one encoder, which returns its output in scratch memory, and copies that to the caller's sequence. Nothing is
/// thrown: when memory runs out the sequence is left empty.
template <typename Value, typename Encode>
HRESULT deliver(int height, std::vector<Value> &output, Encode encode) {
    // Whichever way the runs are found, the encoders count as callers of the fill.
    DiagLogPrint("Quill::MaskHandler::m_fnFillBezierCurveMask() enter\n");
    DiagLogPrint("Quill::MaskHandler::m_fnFillBezierCurveMask() end\n");
    const HRESULT result = withoutThrowing([&] {
        const BorrowedScratch scratch;
        const PodBuffer<Value> &values = encode(EncodeContext{*scratch, defaultEncodeRoute(), maskEngine()});
        output.reserve(reservedEntries(height));
        output.resize(values.size()); // no clear before: it would have every value initialised again
        copyValues(values, output.data());
    });
    if (FAILED(result))
        output.clear();
    return result;
}

} // namespace

HRESULT MaskHandler::ConvertPoints2Mask(const MPoint *points, int count, int width, int height, bool invert,
                                        const std::uint8_t *exclusion, std::vector<MaskRun> *runs) {
    DiagLogPrint("Quill::MaskHandler::ConvertPoints2Mask() enter\n");
    if (count < kMinOutlinePoints || !points || !runs)
        return E_FAIL;
    const EncodeJob job{points, count, width, height, invert, exclusion};
    const HRESULT result = deliver(
        height, *runs, [&](const EncodeContext &context) -> const auto & { return encodeRuns(context, job); });
    DiagLogPrint("Quill::MaskHandler::ConvertPoints2Mask() end\n");
    return result;
}

HRESULT MaskHandler::ConvertPoints2Mask(const MPoint *points, int count, RowListMask *mask) {
    DiagLogPrint("Quill::MaskHandler::ConvertPoints2Mask() enter\n");
    if (count < kMinOutlinePoints || !points || !mask)
        return E_FAIL;
    const EncodeJob job{points, count, mask->width, mask->height};
    const HRESULT result = deliver(
        mask->height,
        mask->rows, [&](const EncodeContext &context) -> const auto & { return encodeRowList(context, job); });
    DiagLogPrint("Quill::MaskHandler::ConvertPoints2Mask() end\n");
    return result;
}

HRESULT MaskHandler::ConvertPoints2MaskUS(const MPoint *points, int count, int originX, int originY, int width,
                                          int height, bool invert, const std::uint8_t *exclusion,
                                          std::vector<MaskRunF> *runs) {
    DiagLogPrint("Quill::MaskHandler::ConvertPoints2MaskUS() enter\n");
    if (count < kMinOutlinePoints || !points || !runs)
        return E_FAIL;
    const EncodeJob job{points, count, width, height, invert, exclusion};
    const HRESULT result = deliver(
        height, *runs, [&](const EncodeContext &context) -> const auto & {
            return encodeFractions(context, job, originX, originY);
        });
    DiagLogPrint("Quill::MaskHandler::ConvertPoints2MaskUS() end\n");
    return result;
}

} // namespace Quill
