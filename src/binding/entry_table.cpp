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

/// Takes the address out of a carrier when the object goes, not before: a thread that holds the texture locked gives it
/// back through that carrier.
void forgetAtDestruction(Orvanel &object, OpaqueObject *carrier) {
    auto const held = reinterpret_cast<PyObject *>(carrier);
    object.AtDestruction([carrier, held] {
        carrier->pointer = nullptr;
        Py_DECREF(held);
    });
    Py_INCREF(held);
}

void destroyOrvanel(Disowned<Orvanel> self) {
    if (!self.pointee)
        return;
    const PyCallback::Use use(*self.pointee);
    if (self.pointee->IsHeldByHost())
        forgetAtDestruction(*self.pointee, self.carrier);
    else
        self.carrier->pointer = nullptr;
    self.pointee->Destroy();
}

Outcome registerOrvanelClass(PyObject *proxyClass) {
    return {registerProxyClass(proxyClass)};
}

// One line a row, however long: a row is added, read and compared as a whole.
// clang-format off
constexpr Entry kEntries[] = {
    row<"new_Orvanel", &makeOrvanel>("", "Makes an overlay object and owns it: the last reference destroys it."),
    row<"delete_Orvanel", &destroyOrvanel>("self", "Takes ownership away from the Python object and destroys the overlay object, at the end of the call when one of its methods is running."),
    row<"Orvanel_Uninitialize", &Orvanel::Uninitialize>("self", "Stops the worker; releases the texture map, the canvas and all keyframes. May be called twice. 0."),
    row<"Orvanel_ResetBuffer", &Orvanel::ResetBuffer>("self", "Resizes the canvas to the display size. The canvas's result code; E_FAIL without a canvas."),
    row<"Orvanel_SetSizeScaler", &Orvanel::SetSizeScaler>("self, scale", "Sets the factor by which all marks grow, 1.0 being their plain size; halves of a pixel round up."),
    row<"Orvanel_SetVideoInfo", &Orvanel::SetVideoInfo>("self, first, second, third, fourth", "Stores the clip's four numbers in the host's time unit (the third less the first shifts, the fourth ends what PrepareKeyframe shows). 0."),
    row<"Orvanel_GetBufferLen", &Orvanel::GetBufferLen>("self", "Bytes of the overlay buffer: display width x display height x 4."),
    row<"Orvanel_SetCallbackFunc", &Orvanel::SetCallbackFunc>("self, callable", "Registers the callable that receives event codes (ECB_...); None unregisters. 0."),
    row<"Orvanel_CallBack", &Orvanel::CallBack>("self, state", "Delivers an event code to the registered callable."),
    row<"Orvanel_IsMask", &Orvanel::IsMask>("self", "Whether the outline is closed and converted to a mask."),
    row<"Orvanel_IsMouseDown", &Orvanel::IsMouseDown>("self", "Whether the mouse button is held."),
    row<"Orvanel_Interactive", &Orvanel::Interactive, 0, 0>("self, event, x, y", "Handles an input event (ECS_...) at a display pixel; a coordinate left out is 0. Mouse moves, presses and releases: 0; double click and the delete keys: 1; E_FAIL without a canvas or for an unknown event."),
    row<"Orvanel_SetShiftPressed", &Orvanel::SetShiftPressed>("self, pressed", "Tells whether the shift key is held, which constrains the point being dragged."),
    row<"Orvanel_ResetNewMask", &Orvanel::ResetNewMask>("self", "Makes the next closing of an outline announce ECB_MASK_CREATE again. 0."),
    row<"Orvanel_SetVideoCoordinate", &Orvanel::SetVideoCoordinate>("self, displayWidth, displayHeight, left, top, width, height", "Sets the display size and the video rectangle in it, in pixels, and re-places every point. 1."),
    row<"Orvanel_HitTestPoint", &Orvanel::HitTestPoint>("self, position", "Index of the first anchor within 10 pixels of the position on both axes, or -1."),
    row<"Orvanel_MoveAllPoints", &Orvanel::MoveAllPoints>("self, dx, dy", "Moves the whole outline by display pixels, as far as it stays on the display. 0."),
    row<"Orvanel_MovePoints", &Orvanel::MovePoints>("self, indices, x, y", "Moves the points of these indices as the pointer goes from the hovered position to (x, y), display pixels. 0; E_FAIL when nothing is hovered."),
    row<"Orvanel_SelectAllPoints", &Orvanel::SelectAllPoints>("self", "Selects every anchor. 0."),
    row<"Orvanel_AddPoint", &Orvanel::AddPoint>("self, x, y", "Appends an anchor at a display pixel. Always E_FAIL, also on success: hosts ignore the result."),
    row<"Orvanel_AddPointInLine", &Orvanel::AddPointInLine>("self, hover", "Inserts hover.point on the segment that begins at hover.lineIndex, in the outline and in every keyframe. 0; E_FAIL when there is no such segment."),
    row<"Orvanel_DeleteAllPoints", &Orvanel::DeleteAllPoints>("self", "Deletes the outline and all keyframes. 0."),
    row<"Orvanel_DeleteFocusPoint", &Orvanel::DeleteFocusPoint>("self", "Deletes the selected anchors, from every keyframe too; with all of them the outline goes. 0; E_FAIL when nothing, or one handle alone, is selected."),
    row<"Orvanel_DeleteLastPoint", &Orvanel::DeleteLastPoint>("self", "Deletes the anchor appended last; a single one stays and only announces ECB_MASK_REMOVE. 0; 1 when there is none."),
    row<"Orvanel_Convert2Mask", &Orvanel::Convert2Mask>("self, refreshAll", "Stores the outline into the keyframe track. 1: every keyframe was refreshed; 0: the present one was stored; E_FAIL: the outline is too short."),
    row<"Orvanel_Convert2SelectionLineUS", &Orvanel::Convert2SelectionLineUS>("self, size", "The mask's runs for a size of (width, height) pixels: a list of (x, y, length) tuples, x and length as fractions of the width, y of the height; None when the outline is too short."),
    row<"Orvanel_DumpBitmap", &Orvanel::DumpBitmap>("runs, size, path", "Writes a run list as a picture of (width, height) pixels for diagnosis; path is a byte string. Always 0."),
    row<"Orvanel_AdjustPoints", &Orvanel::AdjustPoints>("self, ignored, runs, size", "Fits the outline to the run list of a mask of (width, height) pixels; the pair of floats is read and not used. None."),
    row<"Orvanel_IsHoverControlPoint", &Orvanel::IsHoverControlPoint>("self", "Whether the pointer is over a point of an editable outline."),
    row<"Orvanel_IsHoverPointInLine", &Orvanel::IsHoverPointInLine>("self", "Whether the pointer is over a segment of an editable outline."),
    row<"Orvanel_IsHoverSelectedPointInLine", &Orvanel::IsHoverSelectedPointInLine>("self", "Whether the pointer is over a segment whose two ends are selected."),
    row<"Orvanel_IsAnyPointSelected", &Orvanel::IsAnyPointSelected>("self", "Whether any point is selected."),
    row<"Orvanel_IsNeedHandleMouseEvent", &Orvanel::IsNeedHandleMouseEvent>("self", "Whether the host should hand mouse events over: an outline is being drawn, or the present position holds an editable one."),
    row<"Orvanel_SetHoverCentralPoint", &Orvanel::SetHoverCentralPoint>("self, hovered", "Tells whether the pointer is over the host's mark of the centre. True."),
    row<"Orvanel_IsBCPSelected", &Orvanel::IsBCPSelected>("self", "Whether the hovered point is a Bezier control point; ask only while a point is hovered."),
    row<"Orvanel_IsAnyBezierControlPointChanged", &Orvanel::IsAnyBezierControlPointChanged>("self", "Whether any segment has been bent."),
    row<"Orvanel_Show", &Orvanel::Show>("self", "Shows the overlay."),
    row<"Orvanel_Hide", &Orvanel::Hide>("self", "Hides the overlay."),
    row<"Orvanel_IsVisible", &Orvanel::IsVisible>("self", "1 when the overlay is shown, else 0."),
    row<"Orvanel_SetPreviewMode", &Orvanel::SetPreviewMode, true>("self, preview", "Turns the preview mode on or off; on when left out."),
    row<"Orvanel_IsPreviewMode", &Orvanel::IsPreviewMode>("self", "1 in preview mode, else 0."),
    row<"Orvanel_ForceUpdateFrame", &Orvanel::ForceUpdateFrame>("self", "Marks the overlay dirty and refreshes the texture map now, if there is one."),
    row<"Orvanel_UpdateCentroid", &Orvanel::UpdateCentroid>("self", "Recomputes the centroid: the centre of the outline's bounding box."),
    row<"Orvanel_GetCentroidUS", &Orvanel::GetCentroidUS>("self", "The centroid (x, y) as fractions of the video picture; None unless the present position shows a mask."),
    row<"Orvanel_GetCurrentDevSetting", &Orvanel::GetCurrentDevSetting>("self", "The whole selection as a dictionary with small integer keys, for SetDevSetting."),
    row<"Orvanel_GetCurrentPoints", &Orvanel::GetCurrentPoints>("self", "The outline as a byte string of 24 bytes a point, in fractions of the video picture; None when it is empty."),
    row<"Orvanel_SetDevSettingPoints", &Orvanel::SetDevSettingPoints>("data, points", "Appends the (x, y, type, curveIn, curveOut) tuples of a list to a vector of points; other items are skipped."),
    row<"Orvanel_SetDevSettingPointsBuf", &Orvanel::SetDevSettingPointsBuf>("data, points", "Replaces a vector of points by the records of a byte string, 24 bytes each; any other length changes nothing."),
    row<"Orvanel_SetDevSetting", &Orvanel::SetDevSetting>("self, setting", "Restores a selection from the dictionary of GetCurrentDevSetting; anything but a dictionary changes nothing."),
    row<"Orvanel_GetInverse", &Orvanel::GetInverse>("self", "Whether the mask is the outside of the outline."),
    row<"Orvanel_SetInverse", &Orvanel::SetInverse>("self, inverse", "Sets whether the mask is the outside of the outline."),
    row<"Orvanel_GetHide", &Orvanel::GetHide>("self", "Whether the overlay hides after the last of several keyframes."),
    row<"Orvanel_SetHide", &Orvanel::SetHide>("self, hide", "Sets whether the overlay hides after the last of several keyframes."),
    row<"Orvanel_GetFeathers", &Orvanel::GetFeathers>("self", "The feather records: a list of [duration, value, value] lists, durations in the host's time unit."),
    row<"Orvanel_SetFeathers", &Orvanel::SetFeathers>("self, records", "Replaces the feather records by a list of [duration, value, value] lists; what does not parse is 0, 0 and 2."),
    row<"Orvanel_GetFeatherShifts", &Orvanel::GetFeatherShifts>("self", "The feather-shift records: a list of [duration, value, value] lists, durations in the host's time unit."),
    row<"Orvanel_SetFeatherShifts", &Orvanel::SetFeatherShifts>("self, records", "Replaces the feather-shift records by a list of [duration, value, value] lists; what does not parse is 0, 0 and 2."),
    row<"Orvanel_Create", &Orvanel::Create>("self, windowProvider, renderer, syncer", "Makes the texture map for the host's renderer, replacing an earlier one; None for what is not given. 1 when its textures were made, else 0."),
    row<"Orvanel_GetAllocator", &Orvanel::GetAllocator>("self", "The texture map for the host's renderer, without a reference of its own; None before Create."),
    row<"Orvanel_VideoTextureSyncerClosed", &Orvanel::VideoTextureSyncerClosed>("self", "Tells the texture map that the host's syncer is gone."),
    row<"Orvanel_LockTexture", &Orvanel::LockTexture>("self", "Keeps the renderer from the overlay buffer until UnlockTexture of the same thread, or until that thread ends; nests. The object lives until then, whoever deletes it."),
    row<"Orvanel_UnlockTexture", &Orvanel::UnlockTexture>("self", "Undoes one LockTexture of the same thread; without one nothing happens."),
    row<"Orvanel_GetKeyFrameMaskInfo", &Orvanel::GetKeyFrameMaskInfo>("self, duration", "A fresh record of the outline for a time position in the host's unit; nobody frees it."),
    row<"Orvanel_GetKeyFrameDurationList", &Orvanel::GetKeyFrameDurationList>("self", "The time positions of all keyframes in the host's unit, ascending, a list of longs."),
    row<"Orvanel_DestroyAllKeyFrameMaskInfo", &Orvanel::DestroyAllKeyFrameMaskInfo>("self", "Destroys all keyframes and leaves the outline. 0."),
    row<"Orvanel_DrawSpecificKeyFrame", &Orvanel::DrawSpecificKeyFrame>("self, first, second, duration", "Makes the outline between two records at a time position the present one and draws it. 0."),
    row<"Orvanel_DrawExistKeyFrame", &Orvanel::DrawExistKeyFrame>("self, record", "Makes a record's outline the present one and draws it; None changes nothing. 0."),
    row<"Orvanel_UpdateKeyFrameInSize", &Orvanel::UpdateKeyFrameInSize>("self, record", "Places a record's pixel points anew when it was made for another video rectangle."),
    row<"Orvanel_UpdateKeyFrameInCurrent", &Orvanel::UpdateKeyFrameInCurrent, LONGLONG{-1}>("self, record, duration", "Fills a record from the present outline; a duration left out or negative keeps the record's own."),
    row<"Orvanel_CacheCurrentKeyframe", &Orvanel::CacheCurrentKeyframe>("self", "Stores the outline as the keyframe of the position last prepared. 0."),
    row<"Orvanel_RemoveSpecificKeyFrame", &Orvanel::RemoveSpecificKeyFrame>("self, duration", "Removes the keyframe of exactly that time position; the outline goes with the last one. 0."),
    row<"Orvanel_RemoveTrialingKeyFrames", &Orvanel::RemoveTrialingKeyFrames>("self, duration", "Removes the keyframes from a time position on; a position before the first one removes nothing. 0."),
    row<"Orvanel_ClearPointsAndKeyFrame", &Orvanel::ClearPointsAndKeyFrame>("self", "Deletes the outline and all keyframes without an event."),
    row<"Orvanel_GetClosestKeyFramePos", &Orvanel::GetClosestKeyFramePos>("self, duration, syncer", "The time of the keyframe on the same video frame as a time position, else, and without a syncer, that position."),
    row<"Orvanel_PrepareKeyframe", &Orvanel::PrepareKeyframe, Bool32{0}>("self, duration, fromClipStart", "Draws what belongs to a time position and gives the overlay buffer (BGRA, rows top to bottom); None without a buffer."),
    row<"Orvanel_GenerateSpecificKeyFrame", &Orvanel::GenerateSpecificKeyFrame>("first, second, duration", "The outline between two keyframe dictionaries at a time position, as such a dictionary; None when one is malformed."),
    row<"Orvanel_DrawHoverPoint", &Orvanel::DrawHoverPoint>("self", "Draws the mark of the hovered point, and nothing else."),
    row<"Orvanel_DrawSelectedRegion", &Orvanel::DrawSelectedRegion>("self", "Draws the rubber band and the marks of the selected points, and nothing else."),
    row<"Orvanel_HideAllPoints", &Orvanel::HideAllPoints>("self", "Draws the outline without its marks until the next redraw."),
    row<"Orvanel_ReDraw", &Orvanel::ReDraw>("self", "Draws the whole overlay anew."),
    row<"Orvanel_IsDirty", &Orvanel::IsDirty>("self", "Whether the overlay changed since ResetDirtyFlag."),
    row<"Orvanel_GetDirtyRect", &Orvanel::GetDirtyRect>("self", "The changed part of the surface, (x, y, width, height) in pixels."),
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
