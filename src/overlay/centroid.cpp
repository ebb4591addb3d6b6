// SPDX-License-Identifier: MIT
#include "overlay/centroid.h"

#include <algorithm>

#include "callback/python.h"
#include "overlay/orvanel.h"
#include "overlay/texture_lock.h"

HRESULT calculateCentroid(const std::vector<MPointF> *points, Centroid *centroid) {
    if (!points || points->empty() || !centroid)
        return E_FAIL;
    *centroid = {};
    if (points->size() < 2)
        return S_OK;
    const auto centre = [points](float MPointF::*axis) {
        float least = points->front().*axis;
        float greatest = least;
        for (const MPointF &point : *points) {
            least = std::min(least, point.*axis);
            greatest = std::max(greatest, point.*axis);
        }
        return least + (greatest - least) * 0.5F;
    };
    *centroid = {centre(&MPointF::x), centre(&MPointF::y)};
    return S_OK;
}

void Orvanel::UpdateCentroid() {
    const TextureLockGuard lock(m_textureLock);
    if (m_points.empty())
        return;
    Centroid centroid;
    if (FAILED(calculateCentroid(&m_pointsF, &centroid)))
        return;
    const std::lock_guard hoverLock(m_hoverLock);
    m_centroid = centroid;
}

PyObject *Orvanel::GetCentroidUS() {
    m_textureLock.refuseWhatAForkLeft();
    Centroid centroid;
    bool shown = false;
    {
        const std::lock_guard lock(m_hoverLock);
        shown = m_isMask && m_onKeyFrame;
        centroid = m_centroid;
    }
    if (!shown) {
        Py_INCREF(Py_None);
        return Py_None;
    }
    return Py_BuildValue("ff", static_cast<double>(centroid.x), static_cast<double>(centroid.y));
}
