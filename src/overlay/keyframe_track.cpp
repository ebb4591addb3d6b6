// SPDX-License-Identifier: MIT
// The list of keyframes: caching, looking up, removing. Ascending durations, each at most once.

#include <algorithm>

#include "callback/python.h"
#include "overlay/orvanel.h"
#include "overlay/python_list.h"
#include "overlay/texture_lock.h"
#include "overlay/types/placement.h"
#include "support/diag_log.h"

namespace {

std::int64_t wrappingSum64(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

} // namespace

void Orvanel::resetMask(Quill::KeyFrameMaskInfo &record) {
    record.maskBuffer.clear();
    record.maskWidth = record.maskHeight = 0;
}

void Orvanel::fillFromOutline(Quill::KeyFrameMaskInfo &record, LONGLONG duration) const {
    // Room before anything changes: a record whose two vectors differ in length would be edited past its end.
    record.points.reserve(m_points.size());
    record.pointsF.reserve(m_pointsF.size());
    if (duration >= 0)
        record.duration = duration;
    DiagLogPrint("Orvanel::UpdateKeyFrameInCurrent duration=%lld", static_cast<long long>(record.duration));
    record.points = m_points;
    record.pointsF = m_pointsF;
    record.placement = m_videoRect;
    record.maskWidth = static_cast<std::uint16_t>(m_displayWidth);
    record.maskHeight = static_cast<std::uint16_t>(m_displayHeight);
    for (MPoint &point : record.points) {
        if (isControl(point) && point.handleShown == 1)
            point.handleShown = 0;
    }
}

void Orvanel::UpdateKeyFrameInCurrent(Quill::KeyFrameMaskInfo *&record, LONGLONG duration) {
    const TextureLockGuard lock(m_textureLock);
    if (record)
        fillFromOutline(*record, duration);
}

Quill::KeyFrameMaskInfo *Orvanel::GetKeyFrameMaskInfo(LONGLONG duration) {
    const TextureLockGuard lock(m_textureLock);
    auto record = std::make_unique<Quill::KeyFrameMaskInfo>();
    fillFromOutline(*record, duration);
    return record.release();
}

int Orvanel::CacheCurrentKeyframe() {
    DiagLogPrint("Orvanel::CacheCurrentKeyframe() enter\n");
    const TextureLockGuard lock(m_textureLock);
    const std::int64_t key = m_currentDuration;
    const auto newEntry = [&] {
        KeyFrame keyFrame{key, std::unique_ptr<Quill::KeyFrameMaskInfo>(GetKeyFrameMaskInfo(key))};
        // A record that is filled for a negative time keeps 0; in the list it has its entry's time all the same.
        keyFrame.record->duration = key;
        return keyFrame;
    };
    if (m_keyFrames.empty()) {
        m_keyFrames.push_back(newEntry());
        return 0;
    }
    const auto found = std::find_if(m_keyFrames.begin(), m_keyFrames.end(),
                                    [key](const KeyFrame &keyFrame) { return keyFrame.duration >= key; });
    if (found != m_keyFrames.end() && found->duration == key)
        fillFromOutline(*found->record, -1);
    else
        m_keyFrames.insert(found, newEntry());
    DiagLogPrint("Orvanel::CacheCurrentKeyframe() end\n");
    return 0;
}

int Orvanel::RemoveSpecificKeyFrame(LONGLONG duration) {
    DiagLogPrint("Orvanel::RemoveSpecificKeyFrame() enter\n");
    ECallBack_State event = ECB_MASK_UPDATE;
    {
        const TextureLockGuard lock(m_textureLock);
        const auto found = std::find_if(m_keyFrames.begin(), m_keyFrames.end(),
                                        [=](const KeyFrame &keyFrame) { return keyFrame.duration == duration; });
        if (found != m_keyFrames.end())
            m_keyFrames.erase(found);
        if (m_keyFrames.empty()) {
            ClearPointsAndKeyFrame();
            event = ECB_MASK_REMOVE;
        } else {
            markEdited();
        }
    }
    raise(event);
    DiagLogPrint("Orvanel::RemoveSpecificKeyFrame() end\n");
    return 0;
}

int Orvanel::RemoveTrialingKeyFrames(LONGLONG duration) {
    {
        const TextureLockGuard lock(m_textureLock);
        const auto first = std::find_if(m_keyFrames.begin(), m_keyFrames.end(),
                                        [=](const KeyFrame &keyFrame) { return keyFrame.duration >= duration; });
        // A position before the first keyframe keeps the whole list: hosts clear a track by other means.
        if (first == m_keyFrames.end() || duration < m_keyFrames.front().duration)
            return 0;
        m_keyFrames.erase(first, m_keyFrames.end());
        if (!m_keyFrames.empty()) {
            markEdited();
            return 0;
        }
        ClearPointsAndKeyFrame();
    }
    raise(ECB_MASK_REMOVE);
    return 0;
}

LONGLONG Orvanel::GetClosestKeyFramePos(LONGLONG duration, IVideoTextureSyncer *syncer) const {
    if (!syncer)
        return duration;
    const std::int64_t limit = wrappingSum64(duration, syncer->GetTolerance(duration));
    const LONGLONG frame = syncer->GetFrameNumber(duration);
    // The syncer is the host's and may run anything: it is asked outside of the lock, and the list is looked at anew
    // after every answer.
    for (std::size_t index = 0;; ++index) {
        const std::optional<std::int64_t> position = keyFramePosition(index);
        if (!position || *position > limit)
            return duration;
        if (syncer->GetFrameNumber(*position) == frame)
            return *position;
    }
}

std::optional<std::int64_t> Orvanel::keyFramePosition(std::size_t index) const {
    const TextureLockGuard lock(m_textureLock);
    return index < m_keyFrames.size() ? std::optional(m_keyFrames[index].duration) : std::nullopt;
}

PyObject *Orvanel::GetKeyFrameDurationList() const {
    std::vector<std::int64_t> durations;
    {
        const TextureLockGuard lock(m_textureLock);
        durations.reserve(m_keyFrames.size());
        for (const KeyFrame &keyFrame : m_keyFrames)
            durations.push_back(keyFrame.duration);
    }
    return buildList(durations, [](std::int64_t duration) { return PyLong_FromLongLong(duration); });
}

int Orvanel::DestroyAllKeyFrameMaskInfo() {
    const TextureLockGuard lock(m_textureLock);
    m_keyFrames.clear();
    return 0;
}

void Orvanel::ClearPointsAndKeyFrame() {
    const TextureLockGuard lock(m_textureLock);
    m_isMask = false;
    m_points.clear();
    m_pointsF.clear();
    m_maskDataCount = 0;
    m_maskData.clear();
    forgetSelectionAndHover();
    m_geometryChanged = true;
    DestroyAllKeyFrameMaskInfo();
    markEdited();
}
