// SPDX-License-Identifier: MIT
// Showing the outline of a time position: a stored keyframe, one interpolated between two, or nothing.

#include <new>

#include "overlay/keyframe_between.h"
#include "overlay/orvanel.h"
#include "overlay/texture_lock.h"
#include "overlay/types/placement.h"
#include "overlay/worker.h"
#include "support/diag_log.h"

BYTE *Orvanel::PrepareKeyframe(LONGLONG duration, BOOL fromClipStart) {
    const TextureLockGuard lock(m_textureLock);
    DiagLogPrint("Orvanel::PrepareKeyframe keyframe duration=%lld count=%d", static_cast<long long>(duration),
                 static_cast<int>(m_keyFrames.size()));
    // Unsigned, since positions of hosts may be anything and wrap at 64 bits.
    const auto offset = static_cast<std::uint64_t>(m_videoInfo[2]) - static_cast<std::uint64_t>(m_videoInfo[0]);
    const std::int64_t target =
        fromClipStart ? static_cast<std::int64_t>(static_cast<std::uint64_t>(duration) + offset) : duration;
    m_currentDuration = target;
    if (m_keyFrames.empty() || !m_isMask) {
        ReDraw();
        setOnKeyFrame(true);
        return QueryBuffer();
    }
    if (target >= m_videoInfo[3]) {
        clearSurface();
        setOnKeyFrame(false);
        m_dirtyIndex = -1;
        return QueryBuffer();
    }
    setOnKeyFrame(showKeyFrameAt(target));
    DiagLogPrint("Orvanel::PrepareKeyframe() end\n");
    return QueryBuffer();
}

void Orvanel::setOnKeyFrame(bool shown) {
    const std::lock_guard lock(m_hoverLock);
    m_onKeyFrame = shown;
}

bool Orvanel::showKeyFrameAt(std::int64_t target) {
    const auto show = [this](const KeyFrame &keyFrame) {
        // What is on the surface already need not be drawn again.
        if (m_dirtyIndex != keyFrame.duration) {
            DrawExistKeyFrame(keyFrame.record.get());
            m_dirtyIndex = keyFrame.duration;
        }
        return true;
    };
    std::size_t position = 0;
    for (; position < m_keyFrames.size() && m_keyFrames[position].duration <= target; ++position) {
        if (m_keyFrames[position].duration == target)
            return show(m_keyFrames[position]);
    }
    if (position > 0 && position < m_keyFrames.size()) {
        DrawSpecificKeyFrame(m_keyFrames[position - 1].record.get(), m_keyFrames[position].record.get(), target);
        m_dirtyIndex = -1;
        return true;
    }
    // The last keyframe stays on screen after its time, unless the host hides it and there are others.
    if (position > 0 && (m_keyFrames.size() == 1 || !m_hide))
        return show(m_keyFrames.back());
    clearSurface();
    m_dirtyIndex = -1;
    return false;
}

void Orvanel::UpdateKeyFrameInSize(Quill::KeyFrameMaskInfo *record) {
    const TextureLockGuard lock(m_textureLock);
    // A record of the host's whose two vectors differ in length is always placed, which makes them alike.
    if (!record || (record->placement == m_videoRect && record->maskBuffer.size() > 1 &&
                    record->points.size() == record->pointsF.size()))
        return;
    DiagLogPrint("Orvanel::UpdateKeyFrameInSize duration=%lld", static_cast<long long>(record->duration));
    record->points.resize(record->pointsF.size());
    record->placement = m_videoRect;
    for (std::size_t index = 0; index < record->points.size(); ++index) {
        const std::uint32_t handleShown = record->points[index].handleShown;
        record->points[index] = placePoint(record->pointsF[index], m_videoRect);
        record->points[index].handleShown = handleShown;
    }
    record->maskWidth = static_cast<std::uint16_t>(m_displayWidth);
    record->maskHeight = static_cast<std::uint16_t>(m_displayHeight);
}

void Orvanel::adoptRecord(const Quill::KeyFrameMaskInfo &record) {
    m_geometryChanged = true;
    // Shown handles survive by index.
    std::vector<std::size_t> shown;
    for (std::size_t index = 0; index < m_points.size(); ++index) {
        if (m_points[index].handleShown == 1)
            shown.push_back(index);
    }
    // Room for both before either changes, so that they stay equally long.
    m_points.reserve(record.points.size());
    m_pointsF.reserve(record.pointsF.size());
    m_points = record.points;
    m_pointsF = record.pointsF;
    for (const std::size_t index : shown) {
        if (index < m_points.size())
            m_points[index].handleShown = 1;
    }
    wakeWorker();
    if (m_previewMode)
        return;
    // A keyframe is a closed outline whatever the mask flag of the moment says.
    drawCurrentPicture(true);
    markWholeSurfaceDirty();
}

int Orvanel::DrawExistKeyFrame(Quill::KeyFrameMaskInfo *record) {
    const TextureLockGuard lock(m_textureLock);
    DiagLogPrint("Orvanel::DrawExistKeyFrame() enter\n");
    // No record, nothing to show: hosts pass on what they were handed, which may be nothing.
    if (!record)
        return 0;
    DiagLogPrint("[DrawExistKeyFrame] duration=%lld", static_cast<long long>(record->duration));
    UpdateKeyFrameInSize(record);
    adoptRecord(*record);
    DiagLogPrint("Orvanel::DrawExistKeyFrame() end\n");
    return 0;
}

int Orvanel::DrawSpecificKeyFrame(Quill::KeyFrameMaskInfo *first, Quill::KeyFrameMaskInfo *second, LONGLONG duration) {
    const TextureLockGuard lock(m_textureLock);
    DiagLogPrint("Orvanel::DrawSpecificKeyFrame() enter\n");
    if (!first || !second)
        return 0;
    UpdateKeyFrameInSize(first);
    UpdateKeyFrameInSize(second);
    m_isMask = true;
    Quill::KeyFrameMaskInfo shown;
    shown.duration = duration;
    shown.placement = m_videoRect;
    shown.maskWidth = static_cast<std::uint16_t>(m_displayWidth);
    shown.maskHeight = static_cast<std::uint16_t>(m_displayHeight);
    const bool inOrder = first->duration < second->duration;
    fillBetween(inOrder ? *first : *second, inOrder ? *second : *first, shown);
    adoptRecord(shown);
    DiagLogPrint("Orvanel::DrawSpecificKeyFrame() end\n");
    return 0;
}
