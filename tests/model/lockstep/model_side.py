# SPDX-License-Identifier: MIT
"""The model as one of the two players."""
from __future__ import absolute_import

from editor_model import EditorModel
from editor_model.mask_runs import selection_runs
from editor_model.settings import generate_specific_keyframe
from lockstep.clip import Clip
from lockstep.slots import Slots


class ModelSide(EditorModel, Slots):

    generate_specific_keyframe = staticmethod(generate_specific_keyframe)

    def __init__(self):
        EditorModel.__init__(self)
        Slots.__init__(self)

    def get_closest_keyframe_position(self, duration, frame_length):
        """With a syncer of so many units a frame, or without one for 0."""
        if not frame_length:
            return EditorModel.get_closest_keyframe_position(self, duration)
        clip = Clip(frame_length)
        return EditorModel.get_closest_keyframe_position(self, duration, clip.tolerance(duration), clip.frame_of)

    def convert_to_selection_line(self, width, height):
        return selection_runs(self.live.twins, width, height)

    def take_events(self):
        """The codes that were raised since the last call, and whether the worker has to report."""
        events, signalled = self.events, self.update_signals > 0
        self.events, self.update_signals = [], 0
        return events, signalled

    def observe_pixels(self):
        """The pixel points as a new record has them, and the placement."""
        record = self.get_keyframe_mask_info(0)
        return [point.as_tuple() for point in record.outline.points], record.placement.as_tuple()

    def observe(self):
        """Everything that a host can ask for, as (entry, answer)."""
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
