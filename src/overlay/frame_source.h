// SPDX-License-Identifier: MIT
#pragma once

#include "texture/overlay_source.h"

class Orvanel;

/// The overlay object as the texture map sees it. The calls arrive on the host renderer's thread.
class FrameSource final : public OverlaySource {
  public:
    explicit FrameSource(Orvanel &owner) : m_owner(owner) {}

    void lockTexture() override;
    void unlockTexture() override;
    bool tryLockTexture(std::uint32_t milliseconds) override;
    bool isVisible() const override;
    bool isPreviewMode() const override;
    UINT bufferLength() const override;
    bool isDirty() const override;
    void resetDirtyFlag() override;
    LONGLONG closestKeyFramePosition(LONGLONG duration, IVideoTextureSyncer *syncer) const override;
    const BYTE *prepareKeyframe(LONGLONG duration, bool fromClipStart) override;

  private:
    Orvanel &m_owner;
};
