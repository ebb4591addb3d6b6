// SPDX-License-Identifier: MIT
// Deleting points of the live outline and of every keyframe.

#include "overlay/orvanel.h"
#include "overlay/texture_lock.h"

HRESULT Orvanel::DeleteFocusPoint() {
    ECallBack_State event = ECB_POINT_REMOVE;
    {
        const TextureLockGuard lock(m_textureLock);
        if (m_selected.empty())
            return E_FAIL;
        if (m_selected.size() == 1 && m_selected[0] < m_points.size() && isControl(m_points[m_selected[0]]))
            return E_FAIL;
        if (m_selected.size() == countAnchors(m_points)) {
            ClearPointsAndKeyFrame();
            event = ECB_MASK_REMOVE;
        } else {
            removeAnchors(liveChain(), m_selected);
            for (const KeyFrame &keyFrame : m_keyFrames) {
                removeAnchors(chainOf(*keyFrame.record), m_selected);
                resetMask(*keyFrame.record);
            }
            m_geometryChanged = true;
            if (m_points.size() < kFewestMaskPoints) {
                m_isMask = false;
                DestroyAllKeyFrameMaskInfo();
                m_newMask = false;
            }
            forgetSelectionAndHover();
            Convert2Mask(false);
            markEdited();
        }
    }
    raise(event);
    return S_OK;
}

int Orvanel::DeleteLastPoint() {
    ECallBack_State event = ECB_POINT_REMOVE;
    {
        const TextureLockGuard lock(m_textureLock);
        if (m_points.empty())
            return 1;
        if (m_points.size() == 1) {
            // The point stays: the host clears the outline when it hears that the mask has gone.
            event = ECB_MASK_REMOVE;
        } else {
            m_geometryChanged = true;
            removeLastAnchor(liveChain());
            forgetSelectionAndHover();
            markEdited();
        }
    }
    raise(event);
    return 0;
}

int Orvanel::DeleteAllPoints() {
    ClearPointsAndKeyFrame();
    raise(ECB_MASK_REMOVE);
    return 0;
}
