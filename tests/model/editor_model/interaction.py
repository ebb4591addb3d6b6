# SPDX-License-Identifier: MIT
"""Mouse events: drawing an outline and closing it, hovering, picking, dragging, the rubber band, the shift key."""
from __future__ import absolute_import

from editor_model.records import (ECB_MASK_CREATE, ECB_MASK_UPDATE, ECS_DELETE, ECS_DELETE_LAST_POINT,
                                  ECS_MOUSE_DOWN, ECS_MOUSE_MOVE, ECS_MOUSE_UP, E_FAIL, HOVER_LINE, HOVER_NOTHING,
                                  HOVER_POINT, Hover, Point, Rect)
from editor_model.sampling import sample_outline

#: Fewest points of a chain that a press on its first anchor closes.
_CLOSABLE_POINTS = 7


class Interaction(object):

    def interactive(self, state, x=0, y=0):
        if not self.has_canvas or not 0 <= state < 6:
            return E_FAIL
        if state == ECS_MOUSE_MOVE:
            self._move(x, y)
            return 0
        if state == ECS_MOUSE_DOWN:
            self._press(x, y)
            return 0
        if state == ECS_MOUSE_UP:
            self._release()
            return 0
        if state == ECS_DELETE:
            if self.is_mask and self.selected:
                self.delete_focus_point()
            else:
                self.delete_all_points()
        elif state == ECS_DELETE_LAST_POINT and not self.is_mask:
            self.delete_last_point()
        return 1

    # --- press ---

    def _press(self, x, y):
        self.mouse_down = True
        if not self.is_mask:
            self._press_drawing(x, y)
        elif self.hover.type == HOVER_LINE:
            self._press_on_segment(x, y)
        elif self.hover.type == HOVER_POINT:
            self._press_on_point(self.hover.index)
        else:
            self.band = Rect()
            self.selected = []
            self.press = Point(0, x, y)
            self._show_handles(-1)

    def _press_drawing(self, x, y):
        if len(self.live) >= _CLOSABLE_POINTS and self.live.hit_test(x, y) == 0:
            self._close()
            return
        if self.shift_pressed and len(self.live):
            last = self.live.points[-1]
            if abs(last.x - x) > abs(last.y - y):
                y = last.y
            else:
                x = last.x
        self.add_point(x, y)

    def _close(self):
        self.live.close(self.video_rect)
        if self.convert_to_mask(True) != 0:
            self.points_moved = True
        else:
            self.raise_event(ECB_MASK_UPDATE if self.new_mask else ECB_MASK_CREATE)
            self.new_mask = True
        self._hover_point(0)

    def _press_on_segment(self, x, y):
        if self.is_hover_selected_point_in_line():
            self.points_moved = True
            self.dirty = True
            return
        self.add_point_in_line(self.hover.line_index, self.hover.point)
        hit = self.live.hit_test(x, y)
        if hit >= 0:
            self._hover_point(hit)
            self.selected = [hit]
            self._show_handles(hit)
        else:
            self.clear_hover()
        self.points_moved = True
        self.mark_edited()

    def _press_on_point(self, k):
        if k not in self.selected:
            self.clear_drag_bookkeeping()
            self.selected = [k]
            self._show_handles(k)
        if len(self.selected) == 1 and not self.live.is_anchor(k):
            opposite = self._opposite_handle(k)
            if opposite is not None:
                self.saved_handle = self.live.at(opposite).copy()
        self.points_moved = True
        self.mark_edited()

    def _hover_point(self, index):
        self.hover = Hover(HOVER_POINT, index)

    def _show_handles(self, k):
        """Shows the handles of anchor k alone; of no anchor when k is -1. A control point changes nothing."""
        if k >= 0 and not self.live.is_anchor(k):
            return
        for point in self.live.points:
            if not point.is_anchor():
                point.handle_shown = 0
        if k >= 0:
            for neighbour in (k - 1, k + 1):
                if not self.live.is_anchor(neighbour):
                    self.live.at(neighbour).handle_shown = 1

    # --- move ---

    def _move(self, x, y):
        if self.is_mask and self.geometry_changed and not self.points_moved and len(self.live):
            samples = sample_outline(self.live.points, self.display_width)
            if samples is not None:
                self.line_samples = samples
            self.geometry_changed = False
        if not self.is_mask:
            self._move_drawing(x, y)
        elif self.mouse_down:
            self._drag(x, y)
        else:
            self._track(x, y)

    def _clear_segment_hover(self):
        if self.hover.type == HOVER_LINE:
            self.clear_hover()

    def _move_drawing(self, x, y):
        self._clear_segment_hover()
        if self.live.hit_test(x, y) == 0:
            if (self.hover.type, self.hover.index) != (HOVER_POINT, 0):
                self._hover_point(0)
                self.dirty = True
        elif self.hover.type == HOVER_POINT:
            self.clear_hover()
            self.dirty = True

    def _drag(self, x, y):
        if self.points_moved:
            self.move_points(self.selected, x, y)
            if self.shift_pressed and len(self.selected) == 1:
                self._mirror_handle(bend=True)
            self.dragged = True
        else:
            left, top = min(self.press.x, x), min(self.press.y, y)
            self.band = Rect(left, top, max(self.press.x, x) - left, max(self.press.y, y) - top)
            self.selected = [index for index in self.live.anchors() if self._in_band(self.live.points[index])]
        self.mark_edited()

    def _in_band(self, point):
        return (self.band.left <= point.x < self.band.left + self.band.width
                and self.band.top <= point.y < self.band.top + self.band.height)

    def _track(self, x, y):
        for index, point in enumerate(self.live.points):
            if point.within_tolerance(x, y) and (point.is_anchor() or point.handle_shown):
                self._clear_segment_hover()
                if self.hover.index != index:
                    self._hover_point(index)
                    self.dirty = True
                return
        hit = None
        for number, segment in enumerate(self.line_samples):
            sample = segment.first_sample_at(x, y)
            if sample is not None:
                hit = (number, sample)
        if hit is not None:
            self.hover = Hover(HOVER_LINE, -1, 3 * hit[0], hit[1].copy())
            self.dirty = True
        elif self.hover.type != HOVER_NOTHING:
            self.clear_hover()
            self.mark_all_dirty()

    # --- release ---

    def _release(self):
        self.mouse_down = False
        if self.band.width != 0 and self.band.height != 0:
            self.clear_drag_bookkeeping()
        self.mark_edited()
        if self.points_moved and self.dragged:
            if len(self.selected) == 1:
                if self.shift_pressed:
                    self._mirror_handle(bend=False)
                else:
                    self._restore_handle()
            self.raise_event(ECB_MASK_UPDATE)
        self.points_moved = False
        self.dragged = False
        self.shift_pressed = False

    # --- the shift key ---

    def set_shift_pressed(self, pressed):
        pressed = bool(pressed)
        if pressed == self.shift_pressed:
            return
        self.shift_pressed = pressed
        if self.dragged and len(self.selected) == 1:
            if pressed:
                self._mirror_handle(bend=True)
            else:
                self._restore_handle()
            self.mark_edited()

    def _anchor_of(self, c):
        return (c + 1 if self.live.is_anchor(c + 1) else c - 1) % len(self.live)

    def _opposite_handle(self, c):
        """The other handle of the anchor that control point c belongs to; None where an open chain ends."""
        anchor = self._anchor_of(c)
        opposite = (2 * anchor - c) % len(self.live)
        return None if self.live.is_anchor(opposite) else opposite

    def _picked_handle(self):
        """The hovered control point with its opposite handle, or None."""
        c = self.hover.index
        if not 0 <= c < len(self.live) or self.live.is_anchor(c):
            return None
        opposite = self._opposite_handle(c)
        return None if opposite is None else (c, opposite)

    def _mirror_handle(self, bend):
        """Puts the opposite handle on the other side of its anchor; `bend` marks its segment as curved."""
        picked = self._picked_handle()
        if picked is None:
            return
        c, opposite = picked
        anchor, handle = self.live.at(self._anchor_of(c)), self.live.points[opposite]
        handle.x = 2 * anchor.x - self.live.points[c].x
        handle.y = 2 * anchor.y - self.live.points[c].y
        if bend:
            self.live.move_control(opposite, 0, 0, self.video_rect)
        else:
            self.live.recompute_twin(opposite, self.video_rect)
        self.convert_to_mask(False)

    def _restore_handle(self):
        picked = self._picked_handle()
        if picked is None:
            return
        self.live.points[picked[1]] = self.saved_handle.copy()
        self.live.recompute_twin(picked[1], self.video_rect)
        self.convert_to_mask(False)
