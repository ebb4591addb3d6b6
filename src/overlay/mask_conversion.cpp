// SPDX-License-Identifier: MIT
// The outline as a mask: stored into the keyframe track, or handed to Python as runs.

#include <optional>

#include "callback/pending_error.h"
#include "callback/python.h"
#include "overlay/orvanel.h"
#include "overlay/python_values.h"
#include "overlay/texture_lock.h"
#include "overlay/types/placement.h"
#include "support/diag_log.h"

namespace {

constexpr const char *kTooShortText = "[Convert2Mask] Error! point size is not enough!!!";

/// The outline in pixels of a mask of that size. Coordinates are truncated without the half that display placement
/// adds.
std::vector<MPoint> maskPoints(const std::vector<MPointF> &pointsF, int width, int height) {
    std::vector<MPoint> points;
    points.reserve(pointsF.size());
    for (const MPointF &point : pointsF)
        points.push_back({point.type, truncateToInt32(static_cast<float>(width) * point.x),
                          truncateToInt32(static_cast<float>(height) * point.y), point.curveIn, point.curveOut, 0});
    return points;
}

} // namespace

HRESULT Orvanel::Convert2Mask(bool refreshAll) {
    const TextureLockGuard lock(m_textureLock);
    DiagLogPrint("Orvanel::Convert2Mask() enter\n");
    if (m_points.size() < kFewestMaskPoints) {
        DiagLogPrint(kTooShortText);
        return E_FAIL;
    }
    DiagLogPrint("[Convert2Mask] MaskDataLen=%d(short), BufferSize=(%d,%d)", static_cast<int>(m_maskData.size()),
                 static_cast<int>(m_displayWidth), static_cast<int>(m_displayHeight));
    HRESULT result = S_OK;
    if (refreshAll && !m_keyFrames.empty()) {
        fillAllFromOutline();
        result = 1;
    } else {
        CacheCurrentKeyframe();
    }
    m_isMask = true;
    m_geometryChanged = true;
    m_updateRect = {0, 0, static_cast<std::int32_t>(m_displayWidth), static_cast<std::int32_t>(m_displayHeight)};
    markWholeSurfaceDirty();
    DiagLogPrint("Orvanel::Convert2Mask() end\n");
    return result;
}

PyObject *Orvanel::Convert2SelectionLineUS(PyObject *size) const {
    DiagLogPrint("Orvanel::Convert2SelectionLineUS() enter\n");
    std::vector<MPointF> outline;
    {
        const TextureLockGuard lock(m_textureLock);
        outline = m_pointsF;
    }
    if (outline.size() < kFewestMaskPoints) {
        DiagLogPrint(kTooShortText);
        // Without a reference of its own: hosts have been built around this count. Module initialisation provides for
        // it.
        return Py_None;
    }
    int width = 0;
    int height = 0;
    parseIntPair(size, width, height);
    // A malformed size leaves 0 x 0, and the interpreter's error for the caller to meet, who gets the list all the
    // same. The list is built without it.
    std::optional<PendingError> malformed;
    if (PyErr_Occurred())
        malformed.emplace();
    const std::vector<MPoint> points = maskPoints(outline, width, height);
    std::vector<Quill::MaskRunF> runs;
    const HRESULT result = ConvertPoints2MaskUS(points.data(), static_cast<int>(points.size()), 0, 0, width, height,
                                                false, nullptr, &runs);
    DiagLogPrint("[Orvanel::Convert2SelectionLineUS] ConvertPoints2MaskUS result = %d", static_cast<int>(result));
    PyObject *const list = result == E_OUTOFMEMORY ? PyErr_NoMemory() : buildRunList(runs);
    DiagLogPrint("Orvanel::Convert2SelectionLineUS() end\n");
    return list;
}
