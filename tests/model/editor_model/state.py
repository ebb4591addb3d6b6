# SPDX-License-Identifier: MIT
"""Everything the editor remembers, and the small entries that only read or set one thing of it."""
from __future__ import absolute_import

from editor_model.outline import Outline
from editor_model.records import (E_FAIL, HOVER_LINE, HOVER_POINT, Hover, Point, Rect,
                                  S_OK, to_bytes)
from editor_model.single import place


class State(object):

    def __init__(self):
        self.live = Outline()
        self.line_samples = []
        self.video_rect = Rect()
        self.display_width = 0
        self.display_height = 0
        self.keyframes = []  # Keyframe records, ascending
        self.hover = Hover()
        self.selected = []
        self.press = Point()
        self.band = Rect()
        self.dirty = False
        self.is_mask = False
        self.inverse = False
        self.hide = False
        self.mouse_down = False
        self.geometry_changed = True
        self.points_moved = False
        self.dragged = False
        self.new_mask = False
        self.on_keyframe = True
        self.visible = 1
        self.preview_mode = 0
        self.feathers = []
        self.feather_shifts = []
        self.dirty_rect = (0, 0, 0, 0)
        self.centroid = (0.0, 0.0)
        self.has_canvas = True
        self.dirty_index = -1
        self.current_duration = -1
        self.video_info = (0, 0, 0, 0)
        self.shift_pressed = False
        self.saved_handle = Point()
        self.worker_runs = True
        #: codes raised on the calling thread, in order
        self.events = []
        #: how often the worker was told to report new points
        self.update_signals = 0

    # --- shared pieces ---

    def raise_event(self, code):
        self.events.append(code)

    def signal_worker(self):
        if self.worker_runs:
            self.update_signals += 1

    def mark_edited(self):
        """What every edit does: the overlay has to be drawn again, from the live outline."""
        self.dirty = True
        self.dirty_index = -1

    def mark_all_dirty(self):
        self.dirty = True
        self.dirty_rect = (0, 0, self.display_width, self.display_height)

    def clear_hover(self):
        self.hover = Hover()

    def clear_drag_bookkeeping(self):
        self.press = Point()
        self.band = Rect()

    def clear_outline_and_keyframes(self):
        self.is_mask = False
        self.live.clear()
        self.clear_hover()
        self.clear_drag_bookkeeping()
        self.selected = []
        self.geometry_changed = True
        self.keyframes = []
        self.mark_edited()

    # --- object and coordinates ---

    def uninitialize(self):
        self.signal_worker()
        self.worker_runs = False
        self.has_canvas = False
        self.keyframes = []
        return 0

    def reset_buffer(self):
        if not self.has_canvas:
            return E_FAIL
        self.mark_edited()
        return S_OK

    def set_video_coordinate(self, display_width, display_height, left, top, width, height):
        rect = Rect(left, top, width, height)
        if (display_width, display_height) == (self.display_width, self.display_height) and rect == self.video_rect:
            return 1
        if (display_width, display_height) != (self.display_width, self.display_height):
            self.display_width, self.display_height = display_width, display_height
            self.reset_buffer()
        self.video_rect = rect
        for point, twin in zip(self.live.points, self.live.twins):
            point.x = place(twin.x, rect.width, rect.left)
            point.y = place(twin.y, rect.height, rect.top)
        self.geometry_changed = True
        self.mark_edited()
        return 1

    def set_video_info(self, first, second, third, fourth):
        self.video_info = (first, second, third, fourth)
        self.dirty = True
        return 0

    def get_buffer_length(self):
        return self.display_width * 4 * self.display_height

    def get_current_points(self):
        return to_bytes(self.live.twins) if self.live.twins else None

    # --- flags ---

    def show(self):
        self.visible = 1

    def hide_overlay(self):
        self.visible = 0

    def set_preview_mode(self, value):
        self.preview_mode = int(value)

    def set_inverse(self, value):
        self.inverse = bool(value)

    def set_hide(self, value):
        self.hide = bool(value)

    def reset_dirty_flag(self):
        self.dirty = False
        return 0

    def reset_new_mask(self):
        self.new_mask = False
        return 0

    def force_update_frame(self):
        self.mark_edited()

    # --- questions ---

    def is_hover_control_point(self):
        return self.on_keyframe and self.hover.type == HOVER_POINT

    def is_hover_point_in_line(self):
        return self.on_keyframe and self.hover.type == HOVER_LINE

    def is_hover_selected_point_in_line(self):
        if not self.on_keyframe or not self.selected:
            return False
        line = self.hover.line_index
        following = 0 if line == len(self.live) - 1 else line + 1
        return line in self.selected and following in self.selected

    def is_any_point_selected(self):
        return len(self.selected) > 0

    def is_control_point_hovered(self):
        """The question behind IsBCPSelected; false while no point of the outline is hovered."""
        return 0 <= self.hover.index < len(self.live) and not self.live.is_anchor(self.hover.index)

    def is_any_control_point_changed(self):
        return any(self.live.points[index].curve_in or self.live.points[index].curve_out for index in self.live.anchors())

    def is_need_handle_mouse_event(self):
        return not self.is_mask or self.on_keyframe
