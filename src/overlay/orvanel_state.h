// SPDX-License-Identifier: MIT
#pragma once

// What an Orvanel consists of; orvanel.h tells which lock guards what.

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "overlay/centroid.h"
#include "overlay/line_samples.h"
#include "overlay/mark_sizes.h"
#include "overlay/texture_lock.h"
#include "overlay/types/keyframe_mask_info.h"
#include "overlay/types/outline_points.h"
#include "overlay/types/overlay_canvas.h"
#include "platform/com_pointer.h"

class EventQueue;
class FrameSource;
class PyMapWrapper;
struct WorkerBlock;

/// A feather or feather-shift record; its values belong to the host.
struct FeatherRecord {
    std::int64_t duration = 0;
    std::int32_t first = 0;
    std::int32_t second = 2;

    friend bool operator==(const FeatherRecord &, const FeatherRecord &) = default;
};

class OrvanelState {
  protected:
    struct KeyFrame {
        std::int64_t duration;
        std::unique_ptr<Quill::KeyFrameMaskInfo> record; ///< never null
    };

    std::vector<MPoint> m_points;
    std::vector<MPointF> m_pointsF;
    LineSamples m_lineSamples; ///< one list a segment, for hovering
    PixelRect m_videoRect;     ///< where the video picture lies on the display surface
    std::vector<KeyFrame> m_keyFrames;
    std::uint32_t m_maskDataCount = 0;
    std::vector<std::uint16_t> m_maskData;
    std::uint32_t m_displayWidth = 0;
    std::uint32_t m_displayHeight = 0;
    std::uint32_t m_stride = 0;                ///< bytes
    std::atomic<std::uint32_t> m_bufferLen{0}; ///< bytes
    PixelRect m_updateRect;
    HoverPoint m_hover; ///< written under both locks, so that holding either is enough to read it
    std::vector<unsigned int> m_selected;
    MPoint m_press;   ///< the rubber band's origin
    PixelRect m_band; ///< the rubber band, zero when none
    std::atomic<bool> m_dirty{false};
    std::atomic<bool> m_isMask{false}; ///< the outline is closed and converted
    std::atomic<bool> m_inverse{false};
    std::atomic<bool> m_hide{false};
    std::atomic<bool> m_mouseDown{false};
    std::atomic<bool> m_geometryChanged{true}; ///< m_lineSamples is out of date
    std::atomic<bool> m_pointsMoved{false};    ///< a press landed on something that can be dragged
    std::atomic<bool> m_dragged{false};        ///< the current drag has moved points
    std::atomic<bool> m_newMask{false};
    std::atomic<bool> m_onKeyFrame{true}; ///< written under m_hoverLock
    mutable std::mutex m_hoverLock;       ///< m_hover, m_onKeyFrame, m_centroid
    bool m_hoverCentralPoint = false;     ///< guarded by m_stateLock
    mutable std::mutex m_stateLock;
    std::atomic<bool> m_visible{true};
    std::atomic<bool> m_previewMode{false};
    std::vector<FeatherRecord> m_feathers;
    std::vector<FeatherRecord> m_featherShifts;
    PixelRect m_dirtyRect;
    Centroid m_centroid; ///< guarded by m_hoverLock
    platform::ComPointer<OverlayCanvas> m_canvas;
    std::vector<MPoint> m_canvasPoints;              ///< the copy of m_points that the canvas gets; kept for its memory
    mutable TextureLock m_textureLock;               ///< the outline, the keyframes, the canvas and its buffer
    EventQueue *m_eventQueue = nullptr;              ///< collects while Interactive runs; guarded by m_textureLock
    std::atomic<std::int64_t> m_dirtyIndex{-1};      ///< the keyframe on the surface; -1: draw from the live outline
    std::atomic<std::int64_t> m_currentDuration{-1}; ///< the position last prepared
    std::unique_ptr<FrameSource> m_frameSource;
    platform::ComPointer<PyMapWrapper> m_mapWrapper; ///< exchanged under m_textureLock
    unsigned m_mapMadeIn = 0;                        ///< platform::forkCount() then; likewise
    std::array<std::int64_t, 4> m_videoInfo{};

    /// Shared with the worker thread, which may outlive the object by one delivery.
    std::shared_ptr<WorkerBlock> m_worker;
    std::thread::id m_workerId; ///< also after the thread has ended

    int m_hostUses = 0; ///< of the object, by threads that hold the texture or wait for it; the interpreter's lock
    std::vector<std::function<void()>> m_atDestruction; ///< likewise

    MarkSizes m_markSizes;
    float m_sizeScaler = 1.0F;
    std::atomic<bool> m_shiftPressed{false};
    MPoint m_savedHandle; ///< copy of the opposite handle taken at a press
};
