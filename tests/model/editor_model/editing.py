# SPDX-License-Identifier: MIT
"""Appending, inserting, moving, selecting and deleting points."""
from __future__ import absolute_import

from editor_model.records import (ECB_MASK_REMOVE, ECB_POINT_ADD, ECB_POINT_REMOVE, E_FAIL, HOVER_LINE, HOVER_POINT,
                                  MASK_POINTS, Point, Undefined)
from editor_model.single import truncate


def _ratio(p, q, r):
    """How far p is on the way from q to r."""
    return abs(float(p - q) / (r - q)) if r != q else 0.0


class Editing(object):

    def add_point(self, x, y):
        self.live.append_anchor(x, y, self.video_rect)
        if self.has_canvas:
            self.mark_edited()
            self.raise_event(ECB_POINT_ADD)
        return E_FAIL

    def add_point_in_line(self, line_index, point):
        if line_index < 0 or line_index >= len(self.live):
            return E_FAIL
        i = line_index + 1
        if any(len(keyframe.outline) != len(self.live) for keyframe in self.keyframes):
            raise Undefined("a keyframe of another length than the live outline")
        self.live.insert(i, point, self.video_rect)
        self.geometry_changed = True

        p, q, r = self.live.at(i), self.live.at(i - 1), self.live.at(i + 1)
        tx, ty = _ratio(p.x, q.x, r.x), _ratio(p.y, q.y, r.y)
        for keyframe in self.keyframes:
            before, behind = keyframe.outline.at(i - 1), keyframe.outline.at(i)
            inserted = Point(point.type, truncate(before.x + (behind.x - before.x) * tx + 0.5),
                             truncate(before.y + (behind.y - before.y) * ty + 0.5), point.curve_in, point.curve_out)
            keyframe.outline.insert(i, inserted, keyframe.placement)

        self.convert_to_mask(False)
        self.mark_edited()
        self.raise_event(ECB_POINT_ADD)
        return 0

    def hit_test_point(self, x, y):
        return self.live.hit_test(x, y)

    # --- moving ---

    def _clamped(self, dx, dy):
        """The part of a move of the whole outline that keeps its box on the display."""
        xs, ys = [point.x for point in self.live.points], [point.y for point in self.live.points]
        left, top = min(xs), min(ys)
        width, height = max(xs) - left, max(ys) - top
        if left + dx < 0:
            dx = -left
        if left + width + dx > self.display_width:
            dx = self.display_width - width - left
        if top + dy < 0:
            dy = -top
        if top + height + dy > self.display_height:
            dy = self.display_height - height - top
        return dx, dy

    def move_all_points(self, dx, dy):
        if (dx, dy) == (0, 0) or not len(self.live):
            return 0
        dx, dy = self._clamped(dx, dy)
        if (dx, dy) == (0, 0):
            return 0
        for index in range(len(self.live)):
            self.live.offset(index, dx, dy, self.video_rect)
        self.convert_to_mask(False)
        self.mark_edited()
        return 0

    def move_points(self, indices, x, y):
        if self.hover.type == HOVER_POINT:
            if not 0 <= self.hover.index < len(self.live):
                return E_FAIL
            reference = self.live.points[self.hover.index]
            dx, dy = x - reference.x, y - reference.y
        elif self.hover.type == HOVER_LINE:
            dx, dy = x - self.hover.point.x, y - self.hover.point.y
            self.hover.point.x, self.hover.point.y = x, y
        else:
            return E_FAIL
        self.points_moved = True
        if len(indices) == len(self.live) and indices:
            dx, dy = self._clamped(dx, dy)
            if (dx, dy) == (0, 0):
                return 0
        indices_here = [index for index in indices if index < len(self.live)]
        if len(indices) == 1 and indices_here and not self.live.is_anchor(indices[0]):
            self.live.move_control(indices[0], dx, dy, self.video_rect)
        else:
            for index in indices_here:
                if self.live.is_anchor(index):
                    self.live.move_anchor(index, dx, dy, self.video_rect)
        self.convert_to_mask(False)
        return 0

    # --- selecting and deleting ---

    def select_all_points(self):
        self.selected = self.live.anchors()
        self.mark_edited()
        return 0

    def _forget_gesture(self):
        self.clear_drag_bookkeeping()
        self.selected = []
        self.clear_hover()

    def delete_focus_point(self):
        if not self.selected:
            return E_FAIL
        if len(self.selected) == 1:
            if self.selected[0] >= len(self.live):
                raise Undefined("a selected point that is gone")
            if not self.live.is_anchor(self.selected[0]):
                return E_FAIL
        if len(self.selected) == len(self.live.anchors()):
            self.clear_outline_and_keyframes()
            self.raise_event(ECB_MASK_REMOVE)
            return 0
        if any(len(keyframe.outline) != len(self.live) for keyframe in self.keyframes):
            raise Undefined("a keyframe of another length than the live outline")
        self.live.delete(self.selected, self.video_rect)
        for keyframe in self.keyframes:
            keyframe.outline.delete(self.selected, keyframe.placement)
        self.geometry_changed = True
        if len(self.live) < MASK_POINTS:
            self.is_mask = False
            self.keyframes = []
            self.new_mask = False
        self._forget_gesture()
        self.convert_to_mask(False)
        self.mark_edited()
        self.raise_event(ECB_POINT_REMOVE)
        return 0

    def delete_last_point(self):
        if not len(self.live):
            return 1
        if len(self.live) == 1:
            self.raise_event(ECB_MASK_REMOVE)
            return 0
        self.geometry_changed = True
        self.live.remove(len(self.live) - 3, len(self.live))
        self._forget_gesture()
        self.mark_edited()
        self.raise_event(ECB_POINT_REMOVE)
        return 0

    def delete_all_points(self):
        self.clear_outline_and_keyframes()
        self.raise_event(ECB_MASK_REMOVE)
        return 0
