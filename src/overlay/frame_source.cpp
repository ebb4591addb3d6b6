// SPDX-License-Identifier: MIT
#include "overlay/frame_source.h"

#include "overlay/orvanel.h"

void FrameSource::lockTexture() {
    while (!m_owner.TryLockForRefresh(1000)) {
    }
}
void FrameSource::unlockTexture() {
    m_owner.UnlockAfterRefresh();
}
bool FrameSource::tryLockTexture(std::uint32_t milliseconds) {
    return m_owner.TryLockForRefresh(milliseconds);
}
bool FrameSource::isVisible() const {
    return m_owner.IsVisible() != 0;
}
bool FrameSource::isPreviewMode() const {
    return m_owner.IsPreviewMode() != 0;
}
UINT FrameSource::bufferLength() const {
    return m_owner.GetBufferLen();
}
bool FrameSource::isDirty() const {
    return m_owner.IsDirty();
}
void FrameSource::resetDirtyFlag() {
    m_owner.ResetDirtyFlag();
}

LONGLONG FrameSource::closestKeyFramePosition(LONGLONG duration, IVideoTextureSyncer *syncer) const {
    return m_owner.GetClosestKeyFramePos(duration, syncer);
}

const BYTE *FrameSource::prepareKeyframe(LONGLONG duration, bool fromClipStart) {
    return m_owner.PrepareKeyframe(duration, fromClipStart ? 1 : 0);
}
