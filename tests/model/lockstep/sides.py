# SPDX-License-Identifier: MIT
"""The two players of a session. Both have the methods of the model, plus slots for saved settings and records."""
from __future__ import absolute_import

import thread
import time

import _Orvanel as entries
from editor_model import EditorModel
from editor_model.records import ECB_POINT_UPDATE
from editor_model.settings import generate_specific_keyframe

try:
    from orvanel_host import hostkit
except ImportError:
    hostkit = None

#: Longest wait for the worker's report, seconds. It is there within a millisecond unless something is wrong.
_REPORT_LIMIT = 20.0


#: Length of the clip that closest positions are asked for, frames.
_FRAMES = 30
_UNITS_PER_SECOND = 10 * 1000 * 1000


def _frame_of(time, frame_length):
    """The number of the frame that is shown: -1 before the clip, the number of frames behind it."""
    return max(-1, min(time // frame_length, _FRAMES))


def _code(result):
    """Result codes as unsigned numbers: they are the same 32 bits on every platform."""
    return result & 0xFFFFFFFF


class ModelSide(EditorModel):

    def __init__(self):
        EditorModel.__init__(self)
        self.settings = {}
        self.records = {}

    def close(self):
        pass

    # --- slots ---

    def save(self, slot):
        self.settings[slot] = self.get_current_dev_setting()

    def restore(self, slot):
        if slot in self.settings:
            self.set_dev_setting(self.settings[slot])

    def generate_between(self, slot, first, second, duration):
        keyframes = self.settings.get(slot, {}).get(3, [])
        if max(first, second) < len(keyframes):
            return generate_specific_keyframe(keyframes[first], keyframes[second], duration)

    def take_record(self, slot, duration):
        self.records[slot] = self.get_keyframe_mask_info(duration)
        return self.records[slot].duration

    def place_record(self, slot):
        if slot in self.records:
            self.update_keyframe_in_size(self.records[slot])

    def draw_record(self, slot):
        if slot in self.records:
            return self.draw_exist_keyframe(self.records[slot])

    def draw_between(self, first, second, duration):
        if first in self.records and second in self.records:
            return self.draw_specific_keyframe(self.records[first], self.records[second], duration)

    def get_closest_keyframe_position(self, duration, frame_length):
        """With a syncer of so many units a frame, or without one for 0."""
        if not frame_length:
            return EditorModel.get_closest_keyframe_position(self, duration)
        frame = _frame_of(duration, frame_length)
        within = 0 <= frame < _FRAMES
        tolerance = (frame + 1) * frame_length - 1 - duration if within else 0
        return EditorModel.get_closest_keyframe_position(self, duration, tolerance, lambda time: _frame_of(time, frame_length))

    # --- what a host sees ---

    def take_events(self):
        """The codes that were raised since the last call, and whether the worker has to report."""
        events, signalled = self.events, self.update_signals > 0
        self.events, self.update_signals = [], 0
        return events, signalled

    def observe_pixels(self):
        record = self.get_keyframe_mask_info(0)
        return [point.as_tuple() for point in record.outline.points], record.placement.as_tuple()

    def observe(self):
        return [
            ("GetCurrentPoints", self.get_current_points()),
            ("GetCurrentDevSetting", self.get_current_dev_setting()),
            ("GetKeyFrameDurationList", self.get_keyframe_durations()),
            ("IsMask", self.is_mask),
            ("IsMouseDown", self.mouse_down),
            ("IsDirty", self.dirty),
            ("GetDirtyRect", self.dirty_rect),
            ("GetInverse", self.inverse),
            ("GetHide", self.hide),
            ("IsVisible", self.visible),
            ("IsPreviewMode", self.preview_mode),
            ("IsHoverControlPoint", self.is_hover_control_point()),
            ("IsHoverPointInLine", self.is_hover_point_in_line()),
            ("IsHoverSelectedPointInLine", self.is_hover_selected_point_in_line()),
            ("IsAnyPointSelected", self.is_any_point_selected()),
            ("IsBCPSelected", self.is_control_point_hovered()),
            ("IsAnyBezierControlPointChanged", self.is_any_control_point_changed()),
            ("IsNeedHandleMouseEvent", self.is_need_handle_mouse_event()),
            ("GetCentroidUS", self.get_centroid()),
            ("GetFeathers", self.get_feathers()),
            ("GetFeatherShifts", self.get_feather_shifts()),
            ("GetBufferLen", self.get_buffer_length()),
        ]


class ModuleSide(object):

    def __init__(self):
        self._thread = thread.get_ident()
        self._events = []
        self._reports = 0
        self._works = True
        self._object = entries.new_Orvanel()
        self.settings = {}
        self.records = {}
        entries.Orvanel_SetCallbackFunc(self._object, self._on_event)

    def close(self):
        entries.Orvanel_Uninitialize(self._object)
        entries.Orvanel_SetCallbackFunc(self._object, None)
        for record in self.records.values():
            _free(record)
        entries.delete_Orvanel(self._object)

    def _on_event(self, code):
        if thread.get_ident() == self._thread:
            self._events.append(code)
        else:
            assert code == ECB_POINT_UPDATE, "the worker raised %r" % code
            self._reports += 1

    def take_events(self):
        events, self._events = self._events, []
        return events, self._reports > 0

    def await_report(self):
        """Waits until the worker has reported; false when it does not."""
        limit = time.time() + _REPORT_LIMIT
        pause = 0.00002
        while not self._reports:
            if time.time() > limit:
                return False
            time.sleep(pause)
            pause = min(2 * pause, 0.01)
        self._reports = 0
        return True

    def forget_report(self):
        """The worker is woken to end: it reports once more when it was waiting, and not when it was still on its way."""
        self._reports = 0

    # --- entries under the model's names ---

    def uninitialize(self):
        self._works = False
        return entries.Orvanel_Uninitialize(self._object)

    def interactive(self, *arguments):
        return _code(entries.Orvanel_Interactive(self._object, *arguments))

    def set_video_coordinate(self, *arguments):
        return entries.Orvanel_SetVideoCoordinate(self._object, *arguments)

    def set_video_info(self, *arguments):
        return entries.Orvanel_SetVideoInfo(self._object, *arguments)

    def reset_buffer(self):
        return _code(entries.Orvanel_ResetBuffer(self._object))

    def add_point(self, x, y):
        return _code(entries.Orvanel_AddPoint(self._object, x, y))

    def add_point_in_line(self, line_index, point):
        hover = hostkit.HoverPoint()
        hover.type, hover.lineIndex = 2, line_index
        hover.point = _native_point(point)
        return _code(entries.Orvanel_AddPointInLine(self._object, hover))

    def hit_test_point(self, x, y):
        point = hostkit.MPoint()
        point.x, point.y = x, y
        return entries.Orvanel_HitTestPoint(self._object, point)

    def move_points(self, indices, x, y):
        return _code(entries.Orvanel_MovePoints(self._object, hostkit.UIntVector(indices), x, y))

    def move_all_points(self, dx, dy):
        return entries.Orvanel_MoveAllPoints(self._object, dx, dy)

    def select_all_points(self):
        return entries.Orvanel_SelectAllPoints(self._object)

    def delete_focus_point(self):
        return _code(entries.Orvanel_DeleteFocusPoint(self._object))

    def delete_last_point(self):
        return entries.Orvanel_DeleteLastPoint(self._object)

    def delete_all_points(self):
        return entries.Orvanel_DeleteAllPoints(self._object)

    def convert_to_mask(self, refresh_all):
        return _code(entries.Orvanel_Convert2Mask(self._object, refresh_all))

    def set_shift_pressed(self, pressed):
        entries.Orvanel_SetShiftPressed(self._object, pressed)

    def show(self):
        entries.Orvanel_Show(self._object)

    def hide_overlay(self):
        entries.Orvanel_Hide(self._object)

    def set_preview_mode(self, value):
        entries.Orvanel_SetPreviewMode(self._object, value)

    def set_inverse(self, value):
        entries.Orvanel_SetInverse(self._object, value)

    def set_hide(self, value):
        entries.Orvanel_SetHide(self._object, value)

    def reset_dirty_flag(self):
        return entries.Orvanel_ResetDirtyFlag(self._object)

    def reset_new_mask(self):
        return entries.Orvanel_ResetNewMask(self._object)

    def force_update_frame(self):
        entries.Orvanel_ForceUpdateFrame(self._object)

    def prepare_keyframe(self, *arguments):
        buffer = entries.Orvanel_PrepareKeyframe(self._object, *arguments)
        drawable = self._works and entries.Orvanel_GetBufferLen(self._object) > 0
        assert (buffer is not None) == drawable, "PrepareKeyframe gives %r" % buffer

    def cache_current_keyframe(self):
        return entries.Orvanel_CacheCurrentKeyframe(self._object)

    def remove_specific_keyframe(self, duration):
        return entries.Orvanel_RemoveSpecificKeyFrame(self._object, duration)

    def remove_trialing_keyframes(self, duration):
        return entries.Orvanel_RemoveTrialingKeyFrames(self._object, duration)

    def destroy_all_keyframes(self):
        return entries.Orvanel_DestroyAllKeyFrameMaskInfo(self._object)

    def clear_outline_and_keyframes(self):
        entries.Orvanel_ClearPointsAndKeyFrame(self._object)

    def update_centroid(self):
        entries.Orvanel_UpdateCentroid(self._object)

    def set_feathers(self, feathers):
        entries.Orvanel_SetFeathers(self._object, feathers)

    def set_feather_shifts(self, feathers):
        entries.Orvanel_SetFeatherShifts(self._object, feathers)

    def set_dev_setting(self, setting):
        entries.Orvanel_SetDevSetting(self._object, setting)

    # --- slots ---

    def save(self, slot):
        self.settings[slot] = entries.Orvanel_GetCurrentDevSetting(self._object)

    def restore(self, slot):
        if slot in self.settings:
            self.set_dev_setting(self.settings[slot])

    def generate_between(self, slot, first, second, duration):
        keyframes = self.settings.get(slot, {}).get(3, [])
        if max(first, second) < len(keyframes):
            return entries.Orvanel_GenerateSpecificKeyFrame(keyframes[first], keyframes[second], duration)

    def take_record(self, slot, duration):
        if slot in self.records:
            _free(self.records[slot])
        self.records[slot] = entries.Orvanel_GetKeyFrameMaskInfo(self._object, duration)
        return self.records[slot].duration

    def place_record(self, slot):
        if slot in self.records:
            entries.Orvanel_UpdateKeyFrameInSize(self._object, self.records[slot])

    def draw_record(self, slot):
        if slot in self.records:
            return entries.Orvanel_DrawExistKeyFrame(self._object, self.records[slot])

    def draw_between(self, first, second, duration):
        if first in self.records and second in self.records:
            return entries.Orvanel_DrawSpecificKeyFrame(self._object, self.records[first], self.records[second], duration)

    def get_closest_keyframe_position(self, duration, frame_length):
        syncer = None
        if frame_length:
            starts = hostkit.LongLongVector(range(0, _FRAMES * frame_length, frame_length))
            syncer = hostkit.VideoSyncer(hostkit.FrameClock(_UNITS_PER_SECOND, frame_length, starts))
        return entries.Orvanel_GetClosestKeyFramePos(self._object, duration, syncer)

    # --- what a host sees ---

    def observe_pixels(self):
        record = entries.Orvanel_GetKeyFrameMaskInfo(self._object, 0)
        try:
            rect = record.placement
            return ([(point.type, point.x, point.y, point.curveIn, point.curveOut, point.handleShown)
                     for point in record.points], (rect.left, rect.top, rect.width, rect.height))
        finally:
            _free(record)

    def observe(self):
        return [(name, read(self._object)) for name, read in _OBSERVED]


_OBSERVED = [(name, getattr(entries, "Orvanel_" + name)) for name in (
    "GetCurrentPoints", "GetCurrentDevSetting", "GetKeyFrameDurationList", "IsMask", "IsMouseDown", "IsDirty",
    "GetDirtyRect", "GetInverse", "GetHide", "IsVisible", "IsPreviewMode", "IsHoverControlPoint", "IsHoverPointInLine",
    "IsHoverSelectedPointInLine", "IsAnyPointSelected", "IsBCPSelected", "IsAnyBezierControlPointChanged",
    "IsNeedHandleMouseEvent", "GetCentroidUS", "GetFeathers", "GetFeatherShifts", "GetBufferLen")]


def _native_point(point):
    native = hostkit.MPoint()
    (native.type, native.x, native.y, native.curveIn, native.curveOut, native.handleShown) = point.as_tuple()
    return native


def _free(record):
    """A record that the module handed out belongs to whoever asked for it."""
    record.thisown = True
