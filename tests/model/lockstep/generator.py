# SPDX-License-Identifier: MIT
"""Makes sessions: what a person would do with the mouse, mixed with what a host does in between."""
from __future__ import absolute_import

import random

from editor_model.records import (CONTROL, ECS_DELETE, ECS_DELETE_LAST_POINT, ECS_MOUSE_DBCLICK, ECS_MOUSE_DOWN,
                                  ECS_MOUSE_MOVE, ECS_MOUSE_UP, Point, to_bytes)

#: Chains stay below this; long ones show nothing new and cost time.
_MOST_ANCHORS = 11

#: Display width and height, video left, top, width and height. Odd sizes, and a picture that leaves the display.
_PLACEMENTS = [
    (320, 240, 0, 0, 320, 240),
    (320, 240, 10, 20, 300, 200),
    (641, 361, 3, 7, 633, 347),
    (640, 360, -50, -31, 800, 450),
    (97, 61, 5, 5, 87, 51),
    (1280, 720, 160, 0, 960, 720),
    (1920, 1080, 0, 0, 1920, 1080),
]

#: Of masks that a host asks for; small ones, since the model draws them in Python.
_MASK_SIZES = [(1, 1), (16, 9), (64, 36), (97, 31), (160, 90), (5, 200)]

_TIMES = [0, 1, 2, 5, 10, 20, 21, 40, 80]


class Generator(object):

    def __init__(self, seed, length, with_records):
        self._random = random.Random(seed)
        self._left = length
        self._with_records = with_records
        self._queue = []
        self._queue_setup()

    def next_step(self, model):
        """The next step as (method name, arguments...), or None at the end."""
        if self._left == 0:
            return None
        self._left -= 1
        if self._left == 3 and self._random.random() < 0.05:
            self._queue = [("uninitialize",)]
        while not self._queue:
            self._choose(model)
        step = self._queue.pop(0)
        return step(model) if callable(step) else step

    # --- what to do next ---

    def _queue_setup(self):
        self._queue.append(("set_video_coordinate",) + self._random.choice(_PLACEMENTS))
        if self._random.random() < 0.9:
            self._queue.append(("set_video_info",) + self._random.choice([(0, 0, 0, 1000), (0, 1, 3, 60), (5, 0, 2, 1000)]))
        if self._random.random() < 0.6:
            self._queue.append(("prepare_keyframe", self._random.choice(_TIMES)))

    def _choose(self, model):
        if len(model.live.anchors()) > _MOST_ANCHORS:
            self._delete_some(model)
            return
        weighted = ([(10, self._edit_closed)] if model.is_mask else [(14, self._draw)]) + [
            (9, self._keyframes), (5, self._call_directly), (3, self._save_or_restore), (2, self._set_flags),
            (1, self._geometry), (0.8, self._odd_event), (1.5, self._ask_for_runs)]
        pick = self._random.random() * sum(weight for weight, _ in weighted)
        for weight, action in weighted:
            pick -= weight
            if pick <= 0:
                break
        action(model)

    # --- positions ---

    def _anywhere(self, model):
        width, height = max(model.display_width, 40), max(model.display_height, 40)
        return self._random.randint(-8, width + 8), self._random.randint(-8, height + 8)

    def _near(self, point, spread):
        return point.x + self._random.randint(-spread, spread), point.y + self._random.randint(-spread, spread)

    def _position(self, model):
        """A pointer position that is likely to matter."""
        kind = self._random.random()
        points = model.live.points
        if points and kind < 0.35:
            return self._near(points[self._random.choice(model.live.anchors())], self._random.choice([0, 3, 10, 11]))
        shown = [point for point in points if point.type == CONTROL and point.handle_shown]
        if shown and kind < 0.6:
            return self._near(self._random.choice(shown), self._random.choice([0, 5, 11]))
        if points and kind < 0.85:
            return self._on_segment(points)
        return self._anywhere(model)

    def _on_segment(self, points):
        """A place on a segment, by the curve's own formula."""
        first = 3 * self._random.randrange((len(points) + 2) // 3)
        a, b, c, d = [points[(first + step) % len(points)] for step in range(4)]
        t = self._random.random()
        weights = ((1 - t) ** 3, 3 * t * (1 - t) ** 2, 3 * t * t * (1 - t), t ** 3)
        return (int(sum(w * p.x for w, p in zip(weights, (a, b, c, d)))),
                int(sum(w * p.y for w, p in zip(weights, (a, b, c, d)))))

    # --- mouse gestures; positions are chosen when the step is reached ---

    def _mouse(self, state, where):
        self._queue.append(lambda model: ("interactive", state) + tuple(where(model)))

    def _click(self, where):
        self._mouse(ECS_MOUSE_DOWN, where)
        self._mouse(ECS_MOUSE_UP, lambda model: ())

    def _draw(self, model):
        if len(model.live.anchors()) >= 3 and self._random.random() < 0.6:
            first = model.live.points[0]
            self._mouse(ECS_MOUSE_MOVE, lambda model: self._near(first, 6))
            self._click(lambda model: self._near(first, self._random.choice([0, 10, 10, 11])))
            return
        kind = self._random.random()
        if kind < 0.12:
            self._queue.append(("set_shift_pressed", True))
        if kind < 0.86:
            for _ in range(self._random.choice([1, 1, 3, 5])):
                self._click(self._anywhere)
        elif kind < 0.96:
            if model.live.points:
                self._mouse(ECS_MOUSE_MOVE, lambda model: self._near((model.live.points or [Point()])[0], 9))
            self._mouse(ECS_MOUSE_MOVE, self._position)
        else:
            self._mouse(self._random.choice([ECS_DELETE_LAST_POINT, ECS_DELETE_LAST_POINT, ECS_DELETE]), lambda model: ())

    def _edit_closed(self, model):
        kind = self._random.random()
        if kind < 0.5:
            self._drag_something()
        elif kind < 0.65:
            self._rubber_band()
        elif kind < 0.8:
            self._mouse(ECS_MOUSE_MOVE, self._position)
            self._click(self._position)
        elif kind < 0.95:
            self._bend_a_handle()
        else:
            self._queue.append(("interactive", ECS_DELETE))

    def _hover_then_press(self, where):
        """Moves to a place and presses right there, as a person does."""
        place = []

        def move(model):
            place[:] = where(model)
            return place

        self._mouse(ECS_MOUSE_MOVE, move)
        self._mouse(ECS_MOUSE_DOWN, lambda model: place)

    def _drag_on(self):
        for _ in range(self._random.choice([0, 1, 1, 2, 4])):
            if self._random.random() < 0.25:
                self._queue.append(("set_shift_pressed", self._random.random() < 0.6))
            self._mouse(ECS_MOUSE_MOVE, self._anywhere)
            if self._random.random() < 0.06:
                self._queue.append(("prepare_keyframe", self._random.choice(_TIMES)))
        self._queue.append(("interactive", ECS_MOUSE_UP))

    def _drag_something(self):
        self._hover_then_press(self._position)
        self._drag_on()

    def _bend_a_handle(self):
        """Picks an anchor so that its handles show, then drags one of them."""

        def anchor(model):
            anchors = model.live.anchors()
            return self._near(model.live.points[self._random.choice(anchors)], 2) if anchors else self._anywhere(model)

        def handle(model):
            shown = [point for point in model.live.points if point.handle_shown]
            return self._near(self._random.choice(shown), 3) if shown else self._position(model)

        self._hover_then_press(anchor)
        self._queue.append(("interactive", ECS_MOUSE_UP))
        self._hover_then_press(handle)
        self._drag_on()

    def _rubber_band(self):
        self._hover_then_press(self._anywhere)
        for _ in range(self._random.choice([1, 2])):
            self._mouse(ECS_MOUSE_MOVE, self._anywhere)
        self._queue.append(("interactive", ECS_MOUSE_UP))
        after = self._random.random()
        if after < 0.4:
            self._drag_something()
        elif after < 0.55:
            self._queue.append(("interactive", ECS_DELETE))

    def _odd_event(self, model):
        state = self._random.choice([ECS_MOUSE_DBCLICK, ECS_MOUSE_DOWN, ECS_MOUSE_UP, ECS_DELETE, ECS_DELETE_LAST_POINT, 6, 7,
                                     -1, 2147483647])
        coordinates = self._position(model)[:self._random.randrange(3)]
        self._queue.append(("interactive", state) + tuple(coordinates))

    # --- what a host does ---

    def _time(self, model):
        if model.keyframes and self._random.random() < 0.5:
            return self._random.choice(model.keyframes).position + self._random.choice([-1, 0, 0, 0, 1])
        return self._random.choice(_TIMES)

    def _keyframes(self, model):
        kind = self._random.random()
        if kind < 0.72:
            step = ("prepare_keyframe", self._time(model))
            if self._random.random() < 0.15:
                step += (self._random.randrange(2),)
            self._queue.append(step)
            if self._random.random() < 0.5 and model.is_mask:
                self._drag_something()
        elif kind < 0.80:
            self._queue.append(("remove_specific_keyframe", self._time(model)))
        elif kind < 0.85:
            self._queue.append(("remove_trialing_keyframes", self._time(model)))
        elif kind < 0.89:
            self._queue.append(("convert_to_mask", self._random.random() < 0.5))
        elif kind < 0.94:
            self._queue.append(("set_hide", self._random.random() < 0.5))
        elif kind < 0.97:
            self._queue.append(("cache_current_keyframe",))
        else:
            self._queue.append(self._random.choice([("destroy_all_keyframes",), ("clear_outline_and_keyframes",),
                                                    ("force_update_frame",), ("reset_new_mask",)]))

    def _save_or_restore(self, model):
        slot = self._random.randrange(3)
        kind = self._random.random()
        if kind < 0.5:
            self._queue.append(("save", slot))
        elif kind < 0.85:
            self._queue.append(("restore", slot))
            if self._random.random() < 0.7:
                self._queue.append(lambda model: ("prepare_keyframe", self._time(model)))
        elif kind < 0.93:
            self._queue.append(("generate_between", slot, self._random.randrange(3), self._random.randrange(3),
                                self._random.choice(_TIMES)))
        else:
            self._queue.append(("set_dev_setting", self._made_up_setting(model)))

    def _made_up_setting(self, model):
        """A setting as a host could have written it: flags that are no booleans, points in both forms."""
        points = [Point(0 if at % 3 == 0 else 1, self._random.randrange(64) / 64.0, self._random.randrange(64) / 64.0,
                        self._random.randrange(2), self._random.randrange(2), 0)
                  for at in range(self._random.choice([0, 1, 4, 9, 10, 12]))]
        forms = [to_bytes(points), [(p.x, p.y, p.type, p.curve_in, p.curve_out) for p in points]]
        form = self._random.choice(forms)
        setting = {0: self._random.choice([True, False, False, 1]), 1: self._random.choice([True, False, None]),
                   9: self._random.choice([True, False]), 2: form}
        if len(points) >= 9:
            setting[3] = [{4: 10 * at, 5: self._random.choice(forms)} for at in range(self._random.randrange(4))]
        if self._random.random() < 0.5:
            setting[6] = [[7, 1, 2], [2 ** 40, -3, 4]]
            setting[8] = []
        return setting

    def _set_flags(self, model):
        flag = self._random.random() < 0.5
        self._queue.append(self._random.choice([
            ("set_inverse", flag), ("set_hide", flag), ("set_preview_mode", flag), ("set_preview_mode", False), ("show",),
            ("hide_overlay",), ("reset_dirty_flag",), ("reset_dirty_flag",), ("update_centroid",), ("update_centroid",),
            ("set_feathers", [[self._random.randrange(100), 5, -6]]), ("set_feather_shifts", [[0, 0, 2], [-9, 1, 1]])]))

    def _geometry(self, model):
        self._queue.append(self._random.choice([("set_video_coordinate",) + self._random.choice(_PLACEMENTS),
                                                ("set_video_info", 0, 0, 0, self._random.choice([30, 1000])),
                                                ("reset_buffer",)]))

    def _ask_for_runs(self, model):
        self._queue.append(("convert_to_selection_line",) + self._random.choice(_MASK_SIZES))

    def _delete_some(self, model):
        if model.is_mask:
            self._rubber_band()
            self._queue.append(("interactive", ECS_DELETE))
        else:
            self._queue += [("delete_last_point",)] * 4

    def _call_directly(self, model):
        kind = self._random.randrange(10)
        if kind == 0:
            self._queue.append(("move_all_points", self._random.randint(-60, 60), self._random.randint(-60, 60)))
        elif kind == 1:
            self._queue.append(("select_all_points",))
        elif kind == 2:
            self._queue.append(("delete_focus_point",))
        elif kind == 3 and not model.keyframes:
            self._queue.append(self._random.choice([("delete_last_point",), ("add_point",) + self._anywhere(model)]))
        elif kind == 4:
            self._queue.append(("delete_all_points",))
        elif self._with_records:
            self._call_with_records(model)

    def _call_with_records(self, model):
        kind = self._random.randrange(7)
        count = len(model.live)
        if kind == 0:
            self._queue.append(("hit_test_point",) + self._position(model))
        elif kind == 1 and count:
            if self._random.random() < 0.5:
                self._mouse(ECS_MOUSE_MOVE, self._position)
            indices = self._random.choice([[self._random.randrange(count)], model.live.anchors(), list(range(count)),
                                           [self._random.randrange(count) for _ in range(3)]])
            self._queue.append(("move_points", indices) + self._anywhere(model))
        elif kind == 2:
            line = self._random.randint(-1, count + 1)
            curve = self._random.randrange(2)
            x, y = self._position(model)
            self._queue.append(("add_point_in_line", line, Point(0, x, y, curve, self._random.randrange(2))))
        elif kind == 3:
            self._queue.append(("take_record", self._random.randrange(3), self._random.choice([-1] + _TIMES)))
        elif kind == 4:
            self._queue.append(self._random.choice([("draw_record", self._random.randrange(3)),
                                                    ("place_record", self._random.randrange(3))]))
        elif kind == 5:
            self._queue.append(("get_closest_keyframe_position", self._time(model), self._random.choice([0, 1, 7, 10])))
        else:
            self._queue.append(("draw_between", self._random.randrange(3), self._random.randrange(3),
                                self._random.choice(_TIMES)))
