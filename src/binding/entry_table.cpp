// SPDX-License-Identifier: MIT
// The module's functions, one row each: name, C++ function, names of the arguments, meaning. The method table, argument
// conversion, error texts, overloads, the type stub, docs/api.md and the error-path tests all come from here.

#include "binding/entry_table.h"

#include "binding/row.h"

namespace binding {

namespace {

Owned<Orvanel> makeOrvanel() {
    return {std::make_unique<Orvanel>()};
}

void destroyOrvanel(Disowned<Orvanel> self) {
    if (self.pointee)
        self.pointee->DestroyWhenUnused();
}

/// The one function whose result tells nothing of a failure: None, or null with an error pending.
PyObject *registerOrvanelClass(PyObject *proxyClass) {
    if (!registerProxyClass(proxyClass))
        return nullptr;
    Py_RETURN_NONE;
}

// Functions that are still to come.
using AdjustPointsFunction = PyObject *(Orvanel::*)(PyObject *, PyObject *, PyObject *);

// One line a row, however long: a row is added, read and compared as a whole.
// clang-format off
constexpr Entry kEntries[] = {
    row<"new_Orvanel", &makeOrvanel>("", "Makes an overlay object and owns it: the last reference destroys it."),
    row<"delete_Orvanel", &destroyOrvanel>("self", "Takes ownership away from the Python object and destroys the overlay object, at the end of the call when one of its methods is running."),
    row<"Orvanel_Uninitialize", &Orvanel::Uninitialize>("self", "Stops the worker; releases the texture map, the canvas and all keyframes. May be called twice. 0."),
    row<"Orvanel_ResetBuffer", &Orvanel::ResetBuffer>("self", "Resizes the canvas to the display size. The canvas's result code; E_FAIL without a canvas."),
    row<"Orvanel_SetSizeScaler", &Orvanel::SetSizeScaler>("self, scale", "Multiplies the sizes of all marks; halves of a pixel round up."),
    row<"Orvanel_SetVideoInfo", &Orvanel::SetVideoInfo>("self, first, second, third, fourth", "Stores four numbers of the host and marks the overlay dirty. 0."),
    row<"Orvanel_GetBufferLen", &Orvanel::GetBufferLen>("self", "Bytes of the overlay buffer: display width x display height x 4."),
    row<"Orvanel_SetCallbackFunc", &Orvanel::SetCallbackFunc>("self, callable", "Registers the callable that receives event codes (ECB_...); None unregisters. 0."),
    row<"Orvanel_CallBack", &Orvanel::CallBack>("self, state", "Delivers an event code to the registered callable."),
    row<"Orvanel_IsMask", &Orvanel::IsMask>("self", "Whether the outline is closed and converted to a mask."),
    row<"Orvanel_IsMouseDown", &Orvanel::IsMouseDown>("self", "Whether the mouse button is held."),
    row<"Orvanel_Interactive", &Orvanel::Interactive, 0, 0>("self, event, x, y", "Handles an input event (ECS_...) at a display pixel; a coordinate left out is 0. A result code."),
    row<"Orvanel_SetShiftPressed", &Orvanel::SetShiftPressed>("self, pressed", "Tells whether the shift key is held, which constrains the point being dragged."),
    row<"Orvanel_ResetNewMask", &Orvanel::ResetNewMask>("self", "Clears the new-mask flag. 0."),
    row<"Orvanel_SetVideoCoordinate", &Orvanel::SetVideoCoordinate>("self, displayWidth, displayHeight, left, top, width, height", "Sets the display size and the video rectangle in it, in pixels, and re-places every point. 1."),
    row<"Orvanel_HitTestPoint", &Orvanel::HitTestPoint>("self, position", "Index of the first anchor within 10 pixels of the position on both axes, or -1."),
    row<"Orvanel_MoveAllPoints", &Orvanel::MoveAllPoints>("self, dx, dy", "Moves the whole outline, in display pixels. A result code."),
    row<"Orvanel_MovePoints", &Orvanel::MovePoints>("self, indices, x, y", "Moves the points of these indices, in display pixels. A result code."),
    row<"Orvanel_SelectAllPoints", &Orvanel::SelectAllPoints>("self", "Selects every point. A result code."),
    row<"Orvanel_AddPoint", &Orvanel::AddPoint>("self, x, y", "Appends an anchor at a display pixel. Always E_FAIL, also on success: hosts ignore the result."),
    row<"Orvanel_AddPointInLine", &Orvanel::AddPointInLine>("self, hover", "Inserts hover.point on the segment that begins at hover.lineIndex, in the outline and in every keyframe. A result code."),
    row<"Orvanel_DeleteAllPoints", &Orvanel::DeleteAllPoints>("self", "Deletes the outline. A result code."),
    row<"Orvanel_DeleteFocusPoint", &Orvanel::DeleteFocusPoint>("self", "Deletes the selected or hovered anchors; the outline goes when too few are left. A result code."),
    row<"Orvanel_DeleteLastPoint", &Orvanel::DeleteLastPoint>("self", "Deletes the anchor appended last. A result code."),
    row<"Orvanel_Convert2Mask", &Orvanel::Convert2Mask>("self, refreshAll", "Stores the outline into the keyframe track. 1: every keyframe refreshed; 0: the current one stored; E_FAIL: the outline is too short."),
    row<"Orvanel_Convert2SelectionLineUS", &Orvanel::Convert2SelectionLineUS>("self, size", "The mask's runs for a size of (width, height) pixels: a list of (x, y, length) tuples, x and length as fractions of the width, y of the height; None when the outline is too short."),
    row<"Orvanel_DumpBitmap", &Orvanel::DumpBitmap>("runs, size, path", "Writes a run list as a picture of (width, height) pixels for diagnosis. Always 0."),
    notBuilt<"Orvanel_AdjustPoints", AdjustPointsFunction>("self, ignored, runs, size", "Fits the outline to a run list of a mask of (width, height) pixels. None."),
    row<"Orvanel_IsHoverControlPoint", &Orvanel::IsHoverControlPoint>("self", "Whether the pointer is over a point of an editable outline."),
    row<"Orvanel_IsHoverPointInLine", &Orvanel::IsHoverPointInLine>("self", "Whether the pointer is over a segment of an editable outline."),
    row<"Orvanel_IsHoverSelectedPointInLine", &Orvanel::IsHoverSelectedPointInLine>("self", "Whether the pointer is over a selected point."),
    row<"Orvanel_IsAnyPointSelected", &Orvanel::IsAnyPointSelected>("self", "Whether any point is selected."),
    row<"Orvanel_IsNeedHandleMouseEvent", &Orvanel::IsNeedHandleMouseEvent>("self", "Whether the host should hand mouse events over."),
    row<"Orvanel_SetHoverCentralPoint", &Orvanel::SetHoverCentralPoint>("self, hovered", "Tells whether the pointer is over the host's mark of the centre. True."),
    row<"Orvanel_IsBCPSelected", &Orvanel::IsBCPSelected>("self", "Whether the hovered point is a Bezier control point; ask only while a point is hovered."),
    row<"Orvanel_IsAnyBezierControlPointChanged", &Orvanel::IsAnyBezierControlPointChanged>("self", "Whether any segment has been bent."),
    row<"Orvanel_Show", &Orvanel::Show>("self", "Shows the overlay."),
    row<"Orvanel_Hide", &Orvanel::Hide>("self", "Hides the overlay."),
    row<"Orvanel_IsVisible", &Orvanel::IsVisible>("self", "1 when the overlay is shown, else 0."),
    row<"Orvanel_SetPreviewMode", &Orvanel::SetPreviewMode, true>("self, preview", "Turns the preview mode on or off; on when left out."),
    row<"Orvanel_IsPreviewMode", &Orvanel::IsPreviewMode>("self", "1 in preview mode, else 0."),
    row<"Orvanel_ForceUpdateFrame", &Orvanel::ForceUpdateFrame>("self", "Marks the whole surface dirty, so that the next frame shows it."),
    row<"Orvanel_UpdateCentroid", &Orvanel::UpdateCentroid>("self", "Recomputes the outline's centroid."),
    row<"Orvanel_GetCentroidUS", &Orvanel::GetCentroidUS>("self", "The centroid (x, y) as fractions of the video picture."),
    row<"Orvanel_GetCurrentDevSetting", &Orvanel::GetCurrentDevSetting>("self", "The whole selection as a dictionary with small integer keys, for SetDevSetting."),
    row<"Orvanel_GetCurrentPoints", &Orvanel::GetCurrentPoints>("self", "The outline as a byte string of 24 bytes a point, in fractions of the video picture; None when it is empty."),
    row<"Orvanel_SetDevSettingPoints", &Orvanel::SetDevSettingPoints>("data, points", "Appends the points of a list of (x, y, type, curveIn, curveOut) tuples to a vector."),
    row<"Orvanel_SetDevSettingPointsBuf", &Orvanel::SetDevSettingPointsBuf>("data, points", "Replaces a vector by the points of a byte string of 24 bytes a point."),
    row<"Orvanel_SetDevSetting", &Orvanel::SetDevSetting>("self, setting", "Restores a selection from the dictionary of GetCurrentDevSetting."),
    row<"Orvanel_GetInverse", &Orvanel::GetInverse>("self", "Whether the mask is the outside of the outline."),
    row<"Orvanel_SetInverse", &Orvanel::SetInverse>("self, inverse", "Sets whether the mask is the outside of the outline."),
    row<"Orvanel_GetHide", &Orvanel::GetHide>("self", "The hide flag, which is stored for the host."),
    row<"Orvanel_SetHide", &Orvanel::SetHide>("self, hide", "Stores the hide flag."),
    row<"Orvanel_GetFeathers", &Orvanel::GetFeathers>("self", "The feather records: a list of [duration, first, second] lists."),
    row<"Orvanel_SetFeathers", &Orvanel::SetFeathers>("self, records", "Replaces the feather records; anything but a list changes nothing."),
    row<"Orvanel_GetFeatherShifts", &Orvanel::GetFeatherShifts>("self", "The feather-shift records: a list of [duration, first, second] lists."),
    row<"Orvanel_SetFeatherShifts", &Orvanel::SetFeatherShifts>("self, records", "Replaces the feather-shift records; anything but a list changes nothing."),
    row<"Orvanel_Create", &Orvanel::Create>("self, windowProvider, renderer, syncer", "Makes the texture map for the host's renderer, replacing an earlier one. 1 when its textures were made, else 0."),
    row<"Orvanel_GetAllocator", &Orvanel::GetAllocator>("self", "The texture map for the host's renderer, without a reference of its own; None before Create."),
    row<"Orvanel_VideoTextureSyncerClosed", &Orvanel::VideoTextureSyncerClosed>("self", "Tells the texture map that the host's syncer is gone."),
    row<"Orvanel_LockTexture", &Orvanel::LockTexture>("self", "Keeps the renderer from the overlay buffer until UnlockTexture; nests."),
    row<"Orvanel_UnlockTexture", &Orvanel::UnlockTexture>("self", "Undoes one LockTexture of the same thread."),
    row<"Orvanel_GetKeyFrameMaskInfo", &Orvanel::GetKeyFrameMaskInfo>("self, duration", "A record of the outline for a time position; nobody frees it. None when there is no outline."),
    row<"Orvanel_GetKeyFrameDurationList", &Orvanel::GetKeyFrameDurationList>("self", "The time positions of all keyframes, a list of longs."),
    row<"Orvanel_DestroyAllKeyFrameMaskInfo", &Orvanel::DestroyAllKeyFrameMaskInfo>("self", "Destroys all keyframes. A result code."),
    row<"Orvanel_DrawSpecificKeyFrame", &Orvanel::DrawSpecificKeyFrame>("self, first, second, duration", "Shows the outline between two records at a time position. A result code."),
    row<"Orvanel_DrawExistKeyFrame", &Orvanel::DrawExistKeyFrame>("self, record", "Shows a record's outline. A result code; None as record is answered by one."),
    row<"Orvanel_UpdateKeyFrameInSize", &Orvanel::UpdateKeyFrameInSize>("self, record", "Re-places a record's points for the present video rectangle."),
    row<"Orvanel_UpdateKeyFrameInCurrent", &Orvanel::UpdateKeyFrameInCurrent, LONGLONG{-1}>("self, record, duration", "Fills a record from the live outline; a duration left out or negative keeps the record's own."),
    row<"Orvanel_CacheCurrentKeyframe", &Orvanel::CacheCurrentKeyframe>("self", "Stores the live outline into the keyframe of the present position. A result code."),
    row<"Orvanel_RemoveSpecificKeyFrame", &Orvanel::RemoveSpecificKeyFrame>("self, duration", "Removes the keyframe of a time position. A result code."),
    row<"Orvanel_RemoveTrialingKeyFrames", &Orvanel::RemoveTrialingKeyFrames>("self, duration", "Removes the keyframes after a time position. A result code."),
    row<"Orvanel_ClearPointsAndKeyFrame", &Orvanel::ClearPointsAndKeyFrame>("self", "Deletes the outline and all keyframes without an event."),
    row<"Orvanel_GetClosestKeyFramePos", &Orvanel::GetClosestKeyFramePos>("self, duration, syncer", "The time of the keyframe on the same video frame as a time position, else that position."),
    row<"Orvanel_PrepareKeyframe", &Orvanel::PrepareKeyframe, Bool32{0}>("self, duration, fromClipStart", "Draws the outline of a time position into the overlay buffer and gives its address; None without a buffer."),
    row<"Orvanel_GenerateSpecificKeyFrame", &Orvanel::GenerateSpecificKeyFrame>("first, second, duration", "Interpolates between two keyframe dictionaries; None when one of them is malformed."),
    row<"Orvanel_DrawHoverPoint", &Orvanel::DrawHoverPoint>("self", "Draws the mark of the hovered point."),
    row<"Orvanel_DrawSelectedRegion", &Orvanel::DrawSelectedRegion>("self", "Draws the rubber band."),
    row<"Orvanel_HideAllPoints", &Orvanel::HideAllPoints>("self", "Draws the outline without its marks until the next redraw."),
    row<"Orvanel_ReDraw", &Orvanel::ReDraw>("self", "Draws the whole overlay anew."),
    row<"Orvanel_IsDirty", &Orvanel::IsDirty>("self", "Whether the overlay changed since ResetDirtyFlag."),
    row<"Orvanel_GetDirtyRect", &Orvanel::GetDirtyRect>("self", "The changed part of the surface as (x, y, width, height) in pixels."),
    row<"Orvanel_ResetDirtyFlag", &Orvanel::ResetDirtyFlag>("self", "Clears the dirty flag. 0."),
    row<"Orvanel_swigregister", &registerOrvanelClass>("proxyClass", "Records the proxy class of Orvanel pointers and its __swig_destroy__."),
};
// clang-format on

static_assert(std::size(kEntries) == 84);

} // namespace

std::span<const Entry> entryTable() {
    return kEntries;
}

} // namespace binding
