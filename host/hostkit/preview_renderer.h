// SPDX-License-Identifier: MIT
#pragma once

// What an application's renderer does with the module's texture map, frame by frame: it sets the video time, asks the
// map for its update counter (which refreshes the map for that time), binds the map's texture, and lays what is bound
// over the video.
//
// All of that happens on one thread of the renderer's own, which never takes the interpreter lock. It waits for the
// overlay's texture lock inside of the refresh, so nobody may wait for a frame while holding that lock.

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

#include "hostkit/clip_frames.h"
#include "hostkit/frame_clock.h"
#include "hostkit/image.h"
#include "hostkit/video_reader.h"
#include "hostkit/video_syncer.h"
#include "platform/com_pointer.h"
#include "software_d3d9/device.h"
#include "texture/allocator.h"

namespace hostkit {

/// Shows a clip under an overlay, through a Direct3D 9 device in software. Its operations may be called on any thread.
///
/// In the module's terms it is the renderer object that Create is given: it answers GetRenderName, GetD3D and
/// GetD3DDevice.
class PreviewRenderer {
  public:
    /// `reader` has to be at its first frame; it and `syncer` are used on the renderer's thread and have to outlive it.
    PreviewRenderer(VideoReader &reader, const FrameClock &clock, VideoSyncer &syncer);
    PreviewRenderer(const PreviewRenderer &) = delete;
    PreviewRenderer &operator=(const PreviewRenderer &) = delete;
    ~PreviewRenderer();

    const char *GetRenderName() const { return "D3D9"; }
    /// Both stay the renderer's.
    IDirect3D9 *GetD3D() const { return device_->direct3D(); }
    IDirect3DDevice9 *GetD3DDevice() const { return device_.get(); }

    /// The texture map that is laid over the video from the next frame on, or null for none. Takes a reference of its
    /// own and keeps it until another map comes, or the end.
    void setOverlay(loom::IAllocator *map);

    /// Composes a frame of the clip: `video` becomes the bare frame and `composed` the frame under its overlay. False
    /// when the clip ends before it. While the caller works on the pictures, the renderer reads the frame after it.
    ///
    /// Throws MediaError when the clip cannot be read, std::invalid_argument for a frame that the clock does not know
    /// and for an overlay of another size than the frame, std::logic_error after close().
    bool render(long long frame, Image &video, Image &composed);

    /// Brings the overlay to a frame of the clip without reading that frame: overlay() is the frame's afterwards.
    /// Throws std::invalid_argument for a frame that the clock does not know, std::logic_error after close().
    void refresh(long long frame);
    /// What the texture map was bound with last, or null. Nobody writes to it any more.
    software_d3d9::SharedPicture overlay() const;

    /// Plays the clip from the frame shown last, over and over, one frame after the other at that rate; infinity is as
    /// fast as it goes. An overlay of another size than the frames, as there is one in the middle of a change of size,
    /// is left out. Throws std::invalid_argument unless the rate is positive.
    void play(double framesPerSecond);
    /// Shows one frame over and over at that rate, as a preview does while somebody edits: edits appear with the next
    /// round. Returns when the frame has been shown for the first time. Throws as play() and render() do.
    void hold(long long frame, double framesPerSecond);
    /// Ends playing or holding after the frame under way. Throws what ended it before that.
    void pause();
    /// Copies the frame that playing or holding composed last; false before the first one.
    bool latest(Image &composed) const;
    /// Frames composed so far, and how many of them under an overlay.
    long long frames() const;
    long long overlaidFrames() const;

    /// Ends the thread and lets the overlay go. The destructor does it, too.
    void close();

    /// What the texture map answered for the last frame: it grows with every change of the map's picture.
    unsigned int updateCounter() const;
    /// Seconds that the last frame took on the renderer's thread: reading it from the clip (wherever its caller was
    /// meanwhile), the texture map's part, and laying the overlay over the frame.
    double readSeconds() const;
    double refreshSeconds() const;
    double compositeSeconds() const;

  private:
    using Map = platform::ComPointer<loom::IAllocator>;

    /// A frame that somebody waits for, on that caller's stack.
    struct Request {
        long long frame;
        Image *video; ///< null when only the overlay is wanted
        Image *composed;
        bool found = false;
        bool done = false;
        std::exception_ptr error;
    };
    struct Seconds {
        double read = 0;
        double refresh = 0;
        double composite = 0;
    };

    using Clock = std::chrono::steady_clock;

    Map currentMap() const;
    void await(Request &request);
    Seconds lastSeconds() const;
    void startPlaying(long long held, double framesPerSecond);
    void throwPlayError();
    // On the renderer's thread only.
    void run();
    void serve(Request &request);
    void playOn(long long held);
    bool read(long long frame, Image &image, Seconds &seconds);
    void readAhead(long long frame);
    enum class WrongSize { IsLeftOut, Throws };
    /// Has the map draw and bind the overlay of that frame.
    software_d3d9::SharedPicture refresh(long long frame, Seconds &seconds, UINT &counter);
    /// Lays the overlay of that frame over `composed`, which holds the bare frame.
    void compose(long long frame, Image &composed, WrongSize policy, Seconds &seconds);

    const platform::ComPointer<software_d3d9::Device> device_;
    const FrameClock clock_;
    VideoSyncer &syncer_;

    mutable std::mutex mutex_;        ///< guards the fields down to overlay_; never held while a frame is composed
    std::condition_variable wake_;    ///< there is something to do
    std::condition_variable changed_; ///< something has been done
    Map map_;
    Request *request_ = nullptr;
    double playRate_ = 0;   ///< frames per second; 0: paused
    Clock::time_point due_; ///< when playing shows its next frame
    long long held_ = -1;   ///< the frame that is shown over and over; -1: one after the other
    bool isPlayingFrame_ = false;
    long long playShown_ = -1; ///< the frame in playComposed_
    std::exception_ptr playError_;
    Image playComposed_;
    bool closing_ = false;
    long long frames_ = 0;
    long long overlaidFrames_ = 0;
    UINT updateCounter_ = 0;
    Seconds seconds_;
    software_d3d9::SharedPicture overlay_;

    // The renderer's thread's own.
    ClipFrames clip_;
    long long shown_ = -1; ///< the frame composed last
    long long ahead_ = -1; ///< the frame in aheadImage_, or -1
    Image aheadImage_;
    double aheadSeconds_ = 0;
    long long playRead_ = -1; ///< the frame in playVideo_, or -1
    Image playVideo_;
    Image playNext_;

    std::thread thread_; ///< guarded by mutex_; last, because it uses all the others
};

} // namespace hostkit
