// SPDX-License-Identifier: MIT
#pragma once

// The object that the host's Python interface makes for each video preview: the outline under edit, its keyframes, the
// overlay picture, and the texture map for the host's renderer.
//
// Every operation that touches the outline, the keyframes or the drawing component holds m_textureLock; one that runs
// with the interpreter lock held lets it go while it has to wait (TextureLockGuard). m_hoverLock may be taken inside
// m_textureLock, never the other way round. Results are 32-bit codes (S_OK, E_FAIL, ...) or 0/1; nothing is thrown.
// Durations are 64-bit positions in the host's time unit. Pixels are display-surface pixels.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "callback/py_callback_wnd.h"
#include "callback/python_fwd.h"
#include "fitting/border.h"
#include "mask/mask_handler.h"
#include "overlay/centroid.h"
#include "overlay/chain.h"
#include "overlay/mark_sizes.h"
#include "overlay/orvanel_state.h"
#include "overlay/types/keyframe_mask_info.h"
#include "overlay/types/outline_points.h"
#include "overlay/types/overlay_canvas.h"
#include "overlay/types/video_texture_syncer.h"
#include "platform/com_pointer.h"

struct SavedSetting;
struct SettingCopy;

namespace fitting {
class Target;
struct Place;
} // namespace fitting

namespace loom {
class IAllocator;
}

class Orvanel final : public Quill::MaskHandler, public PyCallbackWnd, private OrvanelState {
  public:
    Orvanel();
    ~Orvanel();
    /// An object whose texture a thread of the host's holds goes with the last hold, also when that ends with its
    /// thread.
    void Destroy() override;

    // --- Lifecycle and placement (orvanel.cpp, display_placement.cpp) ---

    /// Replaces the texture map. Both Python objects may be null. 1 when its textures were made, else 0; the map is
    /// kept.
    int Create(PyObject *windowProvider, PyObject *renderer, IVideoTextureSyncer *syncer);
    /// Stops the worker; releases the texture map, the canvas and all keyframes. May run twice. 0.
    int Uninitialize();
    /// Resizes the canvas to the display size. E_FAIL without a canvas.
    HRESULT ResetBuffer();
    /// Sets the display size and the video rectangle and re-places every screen point. 1.
    int SetVideoCoordinate(INT displayWidth, INT displayHeight, INT left, INT top, INT width, INT height);
    int SetVideoInfo(LONGLONG first, LONGLONG second, LONGLONG third, LONGLONG fourth);
    /// Multiplies the sizes of all marks; halves round up.
    void SetSizeScaler(float scale);
    UINT GetBufferLen() const { return m_bufferLen; }
    /// The texture map as the renderer sees it, without a reference, or null before Create.
    loom::IAllocator *GetAllocator();
    void VideoTextureSyncerClosed();
    /// The host keeps everybody else away from the overlay. A hold counts as a use of the object, whoever deletes it,
    /// and ends with its thread at the latest. Interpreter lock held. Throws TextureLockRefused, also when the object has
    /// been deleted and the thread holds nothing of it.
    void LockTexture();
    /// Gives back one hold that LockTexture took on this thread; without one nothing happens. Interpreter lock held.
    void UnlockTexture();
    /// Gives back all of them, for when nothing is left to call UnlockTexture with.
    void UnlockTextureOfThread();
    /// Whether a thread of the host's holds the texture or waits for it. Interpreter lock held.
    bool IsHeldByHost();
    /// Has `act` called before anything of the object goes. Interpreter lock held, also then.
    void AtDestruction(std::function<void()> act) { m_atDestruction.push_back(std::move(act)); }
    /// For the length of a refresh, on a renderer's thread, which holds no interpreter lock; false when it took longer
    /// than `milliseconds`.
    bool TryLockForRefresh(std::uint32_t milliseconds) { return m_textureLock.tryLockFor(milliseconds); }
    void UnlockAfterRefresh() { m_textureLock.unlock(); }
    /// Hands a state to the host's callable.
    void CallBack(ECallBack_State state);
    int SetCallbackFunc(PyObject *callable);

    // --- Flags (flags.cpp) ---

    bool IsMask() const { return m_isMask; }
    bool IsMouseDown() const { return m_mouseDown; }
    void Show() { m_visible = true; }
    void Hide() { m_visible = false; }
    int IsVisible() const { return m_visible; }
    void SetPreviewMode(bool preview) { m_previewMode = preview; }
    int IsPreviewMode() const { return m_previewMode; }
    bool GetInverse() const { return m_inverse; }
    void SetInverse(bool inverse) { m_inverse = inverse; }
    bool GetHide() const { return m_hide; }
    void SetHide(bool hide) { m_hide = hide; }
    bool IsDirty() const { return m_dirty; }
    int ResetDirtyFlag();
    int ResetNewMask();
    bool IsHoverControlPoint();
    bool IsHoverPointInLine();
    bool IsHoverSelectedPointInLine();
    bool IsNeedHandleMouseEvent();
    bool SetHoverCentralPoint(bool hovered);
    bool IsAnyPointSelected() const;
    bool IsBCPSelected() const;
    bool IsAnyBezierControlPointChanged() const;

    // --- Point editing (point_editing.cpp, point_deletion.cpp) ---

    /// Appends an anchor. Always E_FAIL: hosts ignore the result.
    HRESULT AddPoint(INT x, INT y);
    /// Inserts `hover.point` on the segment that begins at `hover.lineIndex`, in the outline and in every keyframe.
    HRESULT AddPointInLine(const HoverPoint &hover);
    /// The first anchor within 10 pixels on both axes, or -1.
    int HitTestPoint(const MPoint &position) const;
    HRESULT MovePoints(const std::vector<unsigned int> &indices, INT x, INT y);
    int MoveAllPoints(INT dx, INT dy);
    int SelectAllPoints();
    HRESULT DeleteFocusPoint();
    int DeleteLastPoint();
    int DeleteAllPoints();

    // --- Mouse (interaction.cpp, press.cpp, pointer_move.cpp, shift_constraint.cpp) ---

    HRESULT Interactive(INT state, INT x = 0, INT y = 0);
    void SetShiftPressed(bool pressed);

    // --- Drawing (rendering.cpp) ---

    void ReDraw();
    void DrawHoverPoint();
    void DrawSelectedRegion() const;
    void HideAllPoints();
    void ForceUpdateFrame();
    /// (x, y, width, height). New reference.
    PyObject *GetDirtyRect() const;
    /// The overlay buffer (BGRA, rows top to bottom), or null without a canvas.
    BYTE *QueryBuffer() const;
    /// Writes runs as an 8-bit picture for diagnosis; `runs`, `size` and `path` as the host passes them. Always 0.
    static int DumpBitmap(PyObject *runs, PyObject *size, PyObject *path);

    // --- Keyframes (keyframe_track.cpp, keyframe_drawing.cpp) ---

    BYTE *PrepareKeyframe(LONGLONG duration, BOOL fromClipStart = 0);
    int CacheCurrentKeyframe();
    void UpdateKeyFrameInCurrent(Quill::KeyFrameMaskInfo *&record, LONGLONG duration = -1);
    void UpdateKeyFrameInSize(Quill::KeyFrameMaskInfo *record);
    int DrawExistKeyFrame(Quill::KeyFrameMaskInfo *record);
    int DrawSpecificKeyFrame(Quill::KeyFrameMaskInfo *first, Quill::KeyFrameMaskInfo *second, LONGLONG duration);
    int RemoveSpecificKeyFrame(LONGLONG duration);
    int RemoveTrialingKeyFrames(LONGLONG duration);
    LONGLONG GetClosestKeyFramePos(LONGLONG duration, IVideoTextureSyncer *syncer) const;
    /// A list of longs, ascending. New reference.
    PyObject *GetKeyFrameDurationList() const;
    /// A fresh record of the live outline; nobody here keeps or frees it.
    Quill::KeyFrameMaskInfo *GetKeyFrameMaskInfo(LONGLONG duration);
    int DestroyAllKeyFrameMaskInfo();
    void ClearPointsAndKeyFrame();

    // --- Saved state and centroid (device_setting.cpp, centroid.cpp); Python objects returned are new references ---

    PyObject *GetCurrentPoints() const;
    PyObject *GetCurrentDevSetting() const;
    void SetDevSetting(PyObject *setting);
    static void SetDevSettingPoints(PyObject *list, std::vector<MPointF> &points);
    static void SetDevSettingPointsBuf(PyObject *bytes, std::vector<MPointF> &points);
    PyObject *GetFeathers() const;
    void SetFeathers(PyObject *list);
    PyObject *GetFeatherShifts() const;
    void SetFeatherShifts(PyObject *list);
    void UpdateCentroid();
    PyObject *GetCentroidUS();
    static PyObject *GenerateSpecificKeyFrame(PyObject *first, PyObject *second, LONGLONG duration);

    // --- Masks (mask_conversion.cpp) ---

    /// Stores the outline into the keyframe track. 1: every keyframe refreshed; 0: the current one stored; E_FAIL: too
    /// short.
    HRESULT Convert2Mask(bool refreshAll);
    /// List of (x, y, length) tuples, or None without a reference when the outline is too short.
    PyObject *Convert2SelectionLineUS(PyObject *size) const;

    // --- Fitting to a mask (point_fitting.cpp) ---

    /// Fits the outline to a run list of a mask of `size` pixels; malformed arguments fit nothing. None. New reference.
    PyObject *AdjustPoints(PyObject *ignored, PyObject *runs, PyObject *size);

  private:
    friend class OrvanelInspector;

    // Events: delivered where they are raised, or collected while Interactive runs on this thread.
    void raise(ECallBack_State state);
    void startWorker();
    void stopWorker();
    void wakeWorker();
    void endHostUses(int count);
    void waitForAbandonedHolds();
    platform::ComPointer<PyMapWrapper> exchangeTextureMap(platform::ComPointer<PyMapWrapper> map);
    platform::ComPointer<PyMapWrapper> currentTextureMap() const;
    void releaseTextureMap();

    Chain liveChain() { return {m_points, m_pointsF, m_videoRect}; }
    static Chain chainOf(Quill::KeyFrameMaskInfo &record) { return {record.points, record.pointsF, record.placement}; }
    /// Everything of a record but its points, for which there is room afterwards; a negative duration keeps its own.
    void stampRecord(Quill::KeyFrameMaskInfo &record, LONGLONG duration) const;
    /// Copies the live outline into a record; a negative duration keeps the record's own.
    void fillFromOutline(Quill::KeyFrameMaskInfo &record, LONGLONG duration) const;
    void fillAllFromOutline();
    static void truncate(std::vector<KeyFrame> &keyFrames, std::size_t count);
    /// Drops a record's cached mask, so that the next drawing re-places it.
    static void resetMask(Quill::KeyFrameMaskInfo &record);
    void setHover(const HoverPoint &hover);
    /// Sets m_dirty and forgets which keyframe is on the surface: the picture must be drawn from the live outline.
    void markEdited();
    void markWholeSurfaceDirty();
    void clearDragBookkeeping();
    void forgetSelectionAndHover();
    void clampMove(INT &dx, INT &dy) const;
    void replaceScreenPoints();

    /// E_ABORT, and nothing changed, for a mask without pixels.
    HRESULT FindTargetPointsFromMask(const std::vector<Quill::MaskRunF> &runs, int width, int height);
    /// Puts the anchors into border order. E_FAIL when they are too many for the number of points.
    HRESULT FindTargetPointsFromMask_IntersecRemoval(fitting::Target &target, int width, int height);
    void placeAnchors(const std::vector<fitting::Place> &anchors);
    void fillGaps(fitting::Target &target, const std::vector<fitting::Place> &anchors, int width, int height);
    void addExtremes(const fitting::ExtremeTable &extremes, int width, int height);
    /// An anchor on the display pixel of a mask pixel.
    MPoint displayPoint(const fitting::Pixel &pixel, int width, int height) const;

    HRESULT dispatchEvent(INT state, const MPoint &position);
    HRESULT handlePress(const MPoint &position);
    HRESULT pressWhileDrawing(const MPoint &position);
    HRESULT pressOnSegment(const MPoint &position);
    HRESULT pressOnPoint();
    HRESULT pressOnNothing(const MPoint &position);
    HRESULT handleMove(const MPoint &position);
    void hoverWhileDrawing(const MPoint &position);
    void dragTo(const MPoint &position);
    void trackHover(const MPoint &position);
    HRESULT handleRelease();
    void saveOppositeHandle(std::uint32_t index);
    enum class TwinUpdate { Only, WithCurveFlags };
    void mirrorOppositeHandle(TwinUpdate update);
    void restoreOppositeHandle();

    void clearSurface();
    bool isLargePicture() const;
    void drawMarker(MPoint point, MarkSizes::Mark mark, CanvasColor color) const;
    void drawCurrentPicture(bool isMask);
    /// Shows what belongs on the surface at that position; false when nothing does.
    bool showKeyFrameAt(std::int64_t target);
    void adoptRecord(const Quill::KeyFrameMaskInfo &record);
    void setOnKeyFrame(bool shown);
    /// The time of the keyframe at that place of the list, or nothing behind its end.
    std::optional<std::int64_t> keyFramePosition(std::size_t index) const;
    bool copySetting(SettingCopy &copy) const;
    static std::vector<KeyFrame> makeKeyFrames(SavedSetting &saved, const PixelRect &placement);
    PyObject *feathersOf(const std::vector<FeatherRecord> &records) const;
    void replaceFeathers(std::vector<FeatherRecord> &records, PyObject *list);
    bool isSelected(std::uint32_t index) const;
};
