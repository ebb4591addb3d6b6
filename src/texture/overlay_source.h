// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "overlay/types/video_texture_syncer.h"
#include "platform/win_types.h"

/// What the frame update needs of the object that draws the overlay. Called on the host renderer's thread.
class OverlaySource {
  public:
    /// Bracket a refresh: no other thread resizes or redraws the buffer in between.
    virtual void lockTexture() = 0;
    virtual void unlockTexture() = 0;
    /// As lockTexture, but false when the lock could not be had within `milliseconds`. What a refresh calls: an owner
    /// that can give up here is never waited for in vain by a thread that holds the lock while it takes the owner away.
    virtual bool tryLockTexture(std::uint32_t) {
        lockTexture();
        return true;
    }

    virtual bool isVisible() const = 0;
    virtual bool isPreviewMode() const = 0;
    /// Bytes of the overlay buffer: width x height x 4 of its surface.
    virtual UINT bufferLength() const = 0;
    virtual bool isDirty() const = 0;
    virtual void resetDirtyFlag() = 0;
    /// The time of the keyframe that lies on the same video frame as `duration`, else `duration`.
    virtual LONGLONG closestKeyFramePosition(LONGLONG duration, IVideoTextureSyncer *syncer) const = 0;
    /// Draws the outline of that time; the overlay buffer (BGRA, rows top to bottom) or null.
    virtual const BYTE *prepareKeyframe(LONGLONG duration, bool fromClipStart) = 0;

  protected:
    ~OverlaySource() = default;
};
