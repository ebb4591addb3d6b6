// SPDX-License-Identifier: MIT
// The list of keyframes: caching, looking up, removing. Ascending durations, each at most once.

#include <algorithm>

#include "callback/py_locks.h"
#include "callback/python.h"
#include "overlay/orvanel.h"
#include "overlay/python_list.h"
#include "overlay/texture_lock.h"
#include "overlay/types/placement.h"
#include "overlay/worth_letting_go.h"
#include "platform/block_copy.h"
#include "support/diag_log.h"

namespace {

/// A point of a record, in pixels and in fractions.
constexpr std::size_t kPointBytes = sizeof(MPoint) + sizeof(MPointF);

/// One of several copies, so many bytes altogether. There is room for it.
template <typename Point>
void copyPoints(std::vector<Point> &to, const std::vector<Point> &from, std::size_t altogether) {
    to.resize(from.size());
    platform::copyBlock(to.data(), from.data(), from.size() * sizeof(Point), altogether);
}

std::int64_t wrappingSum64(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

} // namespace

void Orvanel::resetMask(Quill::KeyFrameMaskInfo &record) {
    record.maskBuffer.clear();
    record.maskWidth = record.maskHeight = 0;
}

void Orvanel::stampRecord(Quill::KeyFrameMaskInfo &record, LONGLONG duration) const {
    // Room before anything changes: a record whose two vectors differ in length would be edited past its end.
    record.points.reserve(m_points.size());
    record.pointsF.reserve(m_pointsF.size());
    if (duration >= 0)
        record.duration = duration;
    DiagLogPrint("Orvanel::UpdateKeyFrameInCurrent duration=%lld", static_cast<long long>(record.duration));
    record.placement = m_videoRect;
    record.maskWidth = static_cast<std::uint16_t>(m_displayWidth);
    record.maskHeight = static_cast<std::uint16_t>(m_displayHeight);
}

void Orvanel::fillFromOutline(Quill::KeyFrameMaskInfo &record, LONGLONG duration) const {
    stampRecord(record, duration);
    record.points = m_points;
    record.pointsF = m_pointsF;
    for (MPoint &point : record.points) {
        if (isControl(point) && point.handleShown == 1)
            point.handleShown = 0;
    }
}

/// The others become copies of the first, twice as fast as if each were filled. Where that is much, other threads get
/// on meanwhile: what they see without the lock has to change before or afterwards.
void Orvanel::fillAllFromOutline() {
    const std::size_t bytes = m_keyFrames.size() * m_points.size() * kPointBytes;
    const PyAllowThreads allowThreads(bytes >= kBytesWorthLettingGo);
    const Quill::KeyFrameMaskInfo &first = *m_keyFrames.front().record;
    for (const KeyFrame &keyFrame : m_keyFrames) {
        Quill::KeyFrameMaskInfo &record = *keyFrame.record;
        if (&record == &first) {
            fillFromOutline(record, -1);
            continue;
        }
        stampRecord(record, -1);
        copyPoints(record.points, first.points, bytes);
        copyPoints(record.pointsF, first.pointsF, bytes);
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
        if (first != m_keyFrames.begin()) {
            markEdited();
            truncate(m_keyFrames, static_cast<std::size_t>(first - m_keyFrames.begin()));
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
    truncate(m_keyFrames, 0);
    return 0;
}

/// Others get on while much is freed.
void Orvanel::truncate(std::vector<KeyFrame> &keyFrames, std::size_t count) {
    const auto end = keyFrames.begin() + static_cast<std::ptrdiff_t>(count);
    std::size_t points = 0;
    for (auto keyFrame = end; keyFrame != keyFrames.end(); ++keyFrame)
        points += keyFrame->record->points.size();
    const PyAllowThreads allowThreads(points * kPointBytes >= kBytesWorthLettingGo);
    keyFrames.erase(end, keyFrames.end());
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
    // Last, since it may let others see what does not need the lock.
    markEdited();
    DestroyAllKeyFrameMaskInfo();
}
