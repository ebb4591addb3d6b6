# SPDX-License-Identifier: MIT
"""The keyframe track: storing the live outline, showing what belongs to a time position, and the list itself."""
from __future__ import absolute_import

from editor_model.outline import Outline
from editor_model.records import ECB_MASK_REMOVE, ECB_MASK_UPDATE, MASK_POINTS, Point, Rect, E_FAIL, Undefined, placed
from editor_model.single import quotient, single

_EPSILON = single(1.1920929e-7)


class Keyframe(object):
    """An entry of the list and its record; `position` is the entry's time, `duration` the record's."""

    def __init__(self):
        self.position = 0
        self.duration = 0
        self.outline = Outline()
        self.placement = Rect()


def _between(a, b, t):
    """One coordinate on the way from a to b: difference single, product double, narrowed before the sum."""
    return single(a + single(single(b - a) * t))


def interpolate(key1, key2, dest):
    """Fills the outline of `dest`, which carries its time and placement. Everything but coordinates is key1's."""
    if len(key2.outline) < len(key1.outline):
        raise Undefined("the second keyframe is shorter")
    t = quotient(float(dest.duration - key1.duration), float(key2.duration - key1.duration))
    dest.outline.clear()
    for a, b in zip(key1.outline.twins, key2.outline.twins):
        if abs(single(a.x - b.x)) < _EPSILON and abs(single(a.y - b.y)) < _EPSILON:
            x, y = a.x, a.y
        else:
            x, y = _between(a.x, b.x, t), _between(a.y, b.y, t)
        twin = Point(a.type, x, y, a.curve_in, a.curve_out, 0)
        dest.outline.twins.append(twin)
        dest.outline.points.append(placed(twin, dest.placement))


class KeyframeTrack(object):

    def prepare_keyframe(self, duration, relative=False):
        target = duration + (self.video_info[2] - self.video_info[0] if relative else 0)
        self.current_duration = target
        if not self.keyframes or not self.is_mask:
            self.on_keyframe = True
            return
        if target >= self.video_info[3]:
            self.on_keyframe = False
            self.dirty_index = -1
            return
        self.on_keyframe = self._show(target)

    def _show(self, target):
        previous = None
        for keyframe in self.keyframes:
            if keyframe.position == target:
                self._show_existing(keyframe)
                return True
            if keyframe.position > target:
                if previous is None:
                    self.dirty_index = -1
                    return False
                self.draw_specific_keyframe(previous, keyframe, target)
                self.dirty_index = -1
                return True
            previous = keyframe
        if len(self.keyframes) == 1 or not self.hide:
            self._show_existing(previous)
            return True
        self.dirty_index = -1
        return False

    def _show_existing(self, keyframe):
        if self.dirty_index != keyframe.position:
            self.draw_exist_keyframe(keyframe)
            self.dirty_index = keyframe.position

    # --- storing ---

    def cache_current_keyframe(self):
        key = self.current_duration
        for at, keyframe in enumerate(self.keyframes):
            if keyframe.position == key:
                self.update_keyframe_in_current(keyframe)
                return 0
            if keyframe.position > key:
                self.keyframes.insert(at, self._new_keyframe(key))
                return 0
        self.keyframes.append(self._new_keyframe(key))
        return 0

    def _new_keyframe(self, key):
        keyframe = self.get_keyframe_mask_info(key)
        keyframe.position = keyframe.duration = key
        return keyframe

    def get_keyframe_mask_info(self, duration):
        keyframe = Keyframe()
        self.update_keyframe_in_current(keyframe, duration)
        return keyframe

    def update_keyframe_in_current(self, keyframe, duration=-1):
        if duration >= 0:
            keyframe.duration = duration
        keyframe.outline = self.live.copy()
        keyframe.placement = Rect(*self.video_rect.as_tuple())
        for point in keyframe.outline.points:
            if not point.is_anchor() and point.handle_shown == 1:
                point.handle_shown = 0

    def update_keyframe_in_size(self, keyframe):
        """No record ever holds a mask here, so the pixel points are always placed anew."""
        points = []
        for at, twin in enumerate(keyframe.outline.twins):
            point = placed(twin, self.video_rect)
            if at < len(keyframe.outline.points):
                point.handle_shown = keyframe.outline.points[at].handle_shown
            points.append(point)
        keyframe.outline.points = points
        keyframe.placement = Rect(*self.video_rect.as_tuple())

    # --- showing ---

    def draw_exist_keyframe(self, keyframe):
        self.update_keyframe_in_size(keyframe)
        self._make_current(keyframe.outline)
        return 0

    def draw_specific_keyframe(self, a, b, duration):
        self.update_keyframe_in_size(a)
        self.update_keyframe_in_size(b)
        self.is_mask = True
        shown = Keyframe()
        shown.duration = duration
        shown.placement = Rect(*self.video_rect.as_tuple())
        if a.duration < b.duration:
            interpolate(a, b, shown)
        else:
            interpolate(b, a, shown)
        self._make_current(shown.outline)
        return 0

    def _make_current(self, outline):
        self.geometry_changed = True
        shown_handles = [index for index, point in enumerate(self.live.points) if point.handle_shown == 1]
        self.live = outline.copy()
        for index in shown_handles:
            if index < len(self.live):
                self.live.points[index].handle_shown = 1
        self.signal_worker()
        if not self.preview_mode:
            self.mark_all_dirty()

    # --- the list ---

    def remove_specific_keyframe(self, duration):
        self.keyframes = [keyframe for keyframe in self.keyframes if keyframe.position != duration]
        if self.keyframes:
            self.mark_edited()
            self.raise_event(ECB_MASK_UPDATE)
        else:
            self.clear_outline_and_keyframes()
            self.raise_event(ECB_MASK_REMOVE)
        return 0

    def remove_trialing_keyframes(self, duration):
        if not self.keyframes or duration < self.keyframes[0].position or duration > self.keyframes[-1].position:
            return 0
        self.keyframes = [keyframe for keyframe in self.keyframes if keyframe.position < duration]
        if self.keyframes:
            self.mark_edited()
        else:
            self.clear_outline_and_keyframes()
            self.raise_event(ECB_MASK_REMOVE)
        return 0

    def get_closest_keyframe_position(self, duration, tolerance=None, frame_of=None):
        """`tolerance` and `frame_of` are what the host's syncer answers; None without a syncer."""
        if frame_of is None:
            return duration
        for keyframe in self.keyframes:
            if keyframe.position > duration + tolerance:
                return duration
            if frame_of(keyframe.position) == frame_of(duration):
                return keyframe.position
        return duration

    def get_keyframe_durations(self):
        return [keyframe.position for keyframe in self.keyframes]

    def destroy_all_keyframes(self):
        self.keyframes = []
        return 0

    # --- from the outline to the track ---

    def convert_to_mask(self, refresh_all):
        if len(self.live) < MASK_POINTS:
            return E_FAIL
        self.is_mask = True
        self.geometry_changed = True
        if refresh_all and self.keyframes:
            for keyframe in self.keyframes:
                self.update_keyframe_in_current(keyframe)
            result = 1
        else:
            self.cache_current_keyframe()
            result = 0
        self.mark_all_dirty()
        return result
