// SPDX-License-Identifier: MIT
#pragma once

// Rendering a clip: its frames are read, graded and encoded by threads that each work on another frame, while the
// caller supplies what the overlay's module knows of one frame after the other.
//
//     reader ──┬─▶ mask and grade ──▶ graded video
//     caller ──┘         └──────────▶ overlay, second video, contact sheet
//
// Between two threads there is never more than a few frames.

#include <atomic>
#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "hostkit/bounded_queue.h"
#include "hostkit/contact_sheet.h"
#include "hostkit/frame_clock.h"
#include "hostkit/frame_pool.h"
#include "hostkit/grade.h"
#include "hostkit/mask.h"
#include "hostkit/preview_renderer.h"
#include "hostkit/video_reader.h"
#include "hostkit/video_writer.h"

namespace hostkit {

/// Where results go, and how. Paths are complete file names but for the masks, whose folder it is.
struct RenderJob {
    std::string gradedPath;
    std::string overlayPath;
    std::string maskFolder;
    std::string codec = "h264";
    int featherPixels = 0;
    int featherPasses = 1;
    bool inverted = false;
};

/// All of it is called on one thread, which never works on a frame itself.
class RenderPipeline {
  public:
    /// Begins to read. `reader` has to be at its first frame; it and `sheet` are used on other threads until close().
    /// Frames have to come at `positions` (units of FrameClock), if any are given: see clipDiffers(). Throws MediaError
    /// when the results cannot be written.
    RenderPipeline(VideoReader &reader, const FrameClock &clock, const std::vector<long long> &positions,
                   const Grade &grade, const RenderJob &job, ContactSheet &sheet);
    RenderPipeline(const RenderPipeline &) = delete;
    RenderPipeline &operator=(const RenderPipeline &) = delete;
    ~RenderPipeline();

    /// Hands over the next frame's mask, and the overlay that `renderer` has been given last. A frame with a label goes
    /// onto the contact sheet. Waits while frames pile up. Throws what made a thread fail; the pipeline has stopped
    /// then.
    void submit(const std::vector<MaskRun> &runs, bool covered, const PreviewRenderer &renderer,
                const std::string &label, bool highlighted);
    /// Waits for the results to be complete, but not longer than that; true when they are. Throws as submit() does.
    bool finish(double seconds);
    /// Ends all threads, wherever they are. Results that are not complete stay incomplete. Idempotent.
    void close();

    /// Frames of the graded video so far.
    long long framesDone() const { return framesDone_; }
    /// Whether it failed because the decoder gave other frames than `positions` say.
    bool clipDiffers() const { return clipDiffers_; }
    /// What of the clip the results do not have; complete after finish().
    std::vector<std::string> notKept() const;
    /// Seconds that a stage has worked: "read", "mask", "grade", "encode", "composite" or "contact sheet".
    double seconds(const std::string &stage) const;

  private:
    struct Order {
        std::vector<MaskRun> runs;
        bool covered = false;
        software_d3d9::SharedPicture overlay;
        std::string label;
        bool highlighted = false;
    };
    struct Overlaid {
        SharedFrame frame;
        Order order;
        Mask mask; ///< for the contact sheet only
    };
    enum Stage { kRead, kMask, kGrade, kEncode, kComposite, kSheet, kStages };

    void start(std::function<void()> work);
    void fail(std::exception_ptr error);
    void rethrow();
    template <typename Work>
    void timed(Stage stage, Work work);
    void readFrames();
    void checkPosition(std::size_t frame, bool isThere);
    void gradeFrames();
    void encodeGraded();
    void encodeOverlaid();
    void addToSheet(const AVFrame &bare, const AVFrame &overlaid, const Overlaid &item);

    VideoReader &reader_;
    const FrameClock clock_;
    const std::vector<long long> positions_;
    const Grade grade_;
    const RenderJob job_;
    ContactSheet &sheet_;
    const FrameFormat format_;
    VideoWriter graded_;
    VideoWriter overlaid_;

    BoundedQueue<SharedFrame> read_;
    BoundedQueue<Order> orders_;
    BoundedQueue<SharedFrame> toGraded_;
    BoundedQueue<Overlaid> toOverlaid_;

    mutable std::mutex mutex_; ///< guards what follows up to working_
    std::condition_variable ended_;
    std::exception_ptr error_;
    double seconds_[kStages] = {};
    int working_ = 0; ///< threads that have not ended
    std::atomic<long long> framesDone_{0};
    std::atomic<bool> clipDiffers_{false};
    std::vector<std::thread> threads_;
};

} // namespace hostkit
