# SPDX-License-Identifier: MIT
"""The module as one of the two players: its flat entries under the names that the model gives them."""
from __future__ import absolute_import

import thread
import time

import _Orvanel as entries
from editor_model.records import ECB_POINT_UPDATE, MASK_POINTS, from_bytes
from lockstep.clip import Clip
from lockstep.slots import Slots

try:
    from orvanel_host import hostkit
except ImportError:
    hostkit = None

#: Longest wait for the worker's report, seconds. It is there within a millisecond unless something is wrong.
_REPORT_LIMIT = 20.0
_UNITS_PER_SECOND = 10 * 1000 * 1000

#: Entries that take plain values and records as they are.
_PLAIN_ENTRIES = {
    "interactive": "Interactive",
    "set_video_coordinate": "SetVideoCoordinate",
    "set_video_info": "SetVideoInfo",
    "reset_buffer": "ResetBuffer",
    "add_point": "AddPoint",
    "move_all_points": "MoveAllPoints",
    "select_all_points": "SelectAllPoints",
    "delete_focus_point": "DeleteFocusPoint",
    "delete_last_point": "DeleteLastPoint",
    "delete_all_points": "DeleteAllPoints",
    "convert_to_mask": "Convert2Mask",
    "set_shift_pressed": "SetShiftPressed",
    "show": "Show",
    "hide_overlay": "Hide",
    "set_preview_mode": "SetPreviewMode",
    "set_inverse": "SetInverse",
    "set_hide": "SetHide",
    "reset_dirty_flag": "ResetDirtyFlag",
    "reset_new_mask": "ResetNewMask",
    "force_update_frame": "ForceUpdateFrame",
    "cache_current_keyframe": "CacheCurrentKeyframe",
    "remove_specific_keyframe": "RemoveSpecificKeyFrame",
    "remove_trialing_keyframes": "RemoveTrialingKeyFrames",
    "destroy_all_keyframes": "DestroyAllKeyFrameMaskInfo",
    "clear_outline_and_keyframes": "ClearPointsAndKeyFrame",
    "update_centroid": "UpdateCentroid",
    "set_feathers": "SetFeathers",
    "set_feather_shifts": "SetFeatherShifts",
    "get_current_dev_setting": "GetCurrentDevSetting",
    "set_dev_setting": "SetDevSetting",
    "update_keyframe_in_size": "UpdateKeyFrameInSize",
    "draw_exist_keyframe": "DrawExistKeyFrame",
    "draw_specific_keyframe": "DrawSpecificKeyFrame",
}

_OBSERVED = [(name, getattr(entries, "Orvanel_" + name)) for name in (
    "GetCurrentPoints", "GetCurrentDevSetting", "GetKeyFrameDurationList", "IsMask", "IsMouseDown", "IsDirty",
    "GetDirtyRect", "GetInverse", "GetHide", "IsVisible", "IsPreviewMode", "IsHoverControlPoint", "IsHoverPointInLine",
    "IsHoverSelectedPointInLine", "IsAnyPointSelected", "IsBCPSelected", "IsAnyBezierControlPointChanged",
    "IsNeedHandleMouseEvent", "GetCentroidUS", "GetFeathers", "GetFeatherShifts", "GetBufferLen")]


def _unsigned(result):
    """Result codes as unsigned numbers: they are the same 32 bits on every platform."""
    return result & 0xFFFFFFFF if isinstance(result, int) and result < 0 else result


def _native_point(point):
    native = hostkit.MPoint()
    (native.type, native.x, native.y, native.curveIn, native.curveOut, native.handleShown) = point.as_tuple()
    return native


class ModuleSide(Slots):

    generate_specific_keyframe = staticmethod(entries.Orvanel_GenerateSpecificKeyFrame)

    def __init__(self):
        Slots.__init__(self)
        self._thread = thread.get_ident()
        self._events = []
        self._reports = 0
        self._works = True
        self._object = entries.new_Orvanel()
        entries.Orvanel_SetCallbackFunc(self._object, self._on_event)

    def close(self):
        """The end of the session, with the callable still registered: the worker may be delivering."""
        self.records.clear()
        entries.delete_Orvanel(self._object)

    # --- events ---

    def _on_event(self, code):
        if thread.get_ident() == self._thread:
            self._events.append(code)
        else:
            assert code == ECB_POINT_UPDATE, "the worker raised %r" % code
            self._reports += 1

    def take_events(self):
        """The codes that arrived on this thread since the last call, and whether the worker has reported."""
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

    # --- entries whose arguments or results have to be made ---

    def uninitialize(self):
        self._works = False
        return entries.Orvanel_Uninitialize(self._object)

    def convert_to_selection_line(self, width, height):
        # An outline that is too short gets a None that nobody counts: what is asked for often takes the last one away.
        if len(from_bytes(entries.Orvanel_GetCurrentPoints(self._object)) or []) < MASK_POINTS:
            return None
        return entries.Orvanel_Convert2SelectionLineUS(self._object, (width, height))

    def prepare_keyframe(self, *arguments):
        buffer = entries.Orvanel_PrepareKeyframe(self._object, *arguments)
        drawable = self._works and entries.Orvanel_GetBufferLen(self._object) > 0
        assert (buffer is not None) == drawable, "PrepareKeyframe gives %r" % buffer

    def add_point_in_line(self, line_index, point):
        hover = hostkit.HoverPoint()
        hover.type, hover.lineIndex = 2, line_index
        hover.point = _native_point(point)
        return _unsigned(entries.Orvanel_AddPointInLine(self._object, hover))

    def hit_test_point(self, x, y):
        point = hostkit.MPoint()
        point.x, point.y = x, y
        return entries.Orvanel_HitTestPoint(self._object, point)

    def move_points(self, indices, x, y):
        return _unsigned(entries.Orvanel_MovePoints(self._object, hostkit.UIntVector(indices), x, y))

    def get_keyframe_mask_info(self, duration):
        record = entries.Orvanel_GetKeyFrameMaskInfo(self._object, duration)
        record.thisown = True  # it belongs to whoever asked for it
        return record

    def get_closest_keyframe_position(self, duration, frame_length):
        """With a syncer of so many units a frame, or without one for 0."""
        syncer = None
        if frame_length:
            starts = hostkit.LongLongVector(Clip(frame_length).starts())
            syncer = hostkit.VideoSyncer(hostkit.FrameClock(_UNITS_PER_SECOND, frame_length, starts))
        return entries.Orvanel_GetClosestKeyFramePos(self._object, duration, syncer)

    # --- what a host sees ---

    def observe_pixels(self):
        """The pixel points as a new record has them, and the placement."""
        record = self.get_keyframe_mask_info(0)
        rect = record.placement
        return ([(point.type, point.x, point.y, point.curveIn, point.curveOut, point.handleShown)
                 for point in record.points], (rect.left, rect.top, rect.width, rect.height))

    def observe(self):
        """Everything that a host can ask for, as (entry, answer)."""
        return [(name, read(self._object)) for name, read in _OBSERVED]


def _plain(entry):
    return lambda self, *arguments: _unsigned(entry(self._object, *arguments))


for _name, _entry in _PLAIN_ENTRIES.items():
    setattr(ModuleSide, _name, _plain(getattr(entries, "Orvanel_" + _entry)))
