# SPDX-License-Identifier: MIT
"""The model itself on cases that were worked out by hand."""
from __future__ import absolute_import

import struct
import unittest

from editor_model import E_FAIL, EditorModel, Point, Rect
from editor_model.outline import Outline, straight_controls
from editor_model.records import from_bytes, to_bytes
from editor_model.sampling import bezier_points, flatten, line_points, sample_outline
from editor_model.settings import centroid_of, generate_specific_keyframe
from editor_model.single import INT32_MIN, normalise, place, quotient, single, truncate

MOVE, DOWN, UP, DOUBLE_CLICK, DELETE, DELETE_LAST = range(6)
ADD, REMOVE, CREATE, UPDATE, MASK_REMOVE = range(5)


def drawn(anchors, closed=True):
    """An editor of 400 x 300 pixels in which these anchors were drawn with the mouse."""
    editor = EditorModel()
    editor.set_video_coordinate(400, 300, 0, 0, 400, 300)
    editor.set_video_info(0, 0, 0, 1000)
    for x, y in anchors + (anchors[:1] if closed else []):
        editor.interactive(DOWN, x, y)
        editor.interactive(UP)
    return editor


def square():
    editor = drawn([(100, 100), (200, 100), (200, 200), (100, 200)])
    editor.events = []
    return editor


def places(outline):
    return [(point.x, point.y) for point in outline.points]


class SinglePrecision(unittest.TestCase):

    def test_narrowing(self):
        self.assertEqual(single(0.1), struct.unpack("<f", struct.pack("<f", 0.1))[0])
        self.assertEqual(single(1e39), float("inf"))
        self.assertEqual(single(16777217.0), 16777216.0)

    def test_truncation_drops_the_fraction_and_gives_the_smallest_number_for_what_does_not_fit(self):
        self.assertEqual([truncate(value) for value in (1.9, -1.9, 2147483647.5, -2147483648.5)],
                         [1, -1, 2147483647, -2147483648])
        self.assertEqual([truncate(value) for value in (2147483648.0, float("inf"), float("nan"))], [INT32_MIN] * 3)

    def test_placement_adds_one_half_before_it_truncates(self):
        self.assertEqual(place(0.5, 101, 0), 51)
        self.assertEqual(place(0.25, 101, 0), 25)
        self.assertEqual(place(-0.05, 100, 0), -4)

    def test_normalising_by_an_extent_of_zero_gives_what_is_not_finite(self):
        self.assertEqual(normalise(5, 0, 0), float("inf"))
        self.assertEqual(normalise(-5, 0, 0), float("-inf"))
        self.assertNotEqual(normalise(0, 0, 0), normalise(0, 0, 0))
        self.assertEqual(quotient(1.0, -0.0), float("-inf"))


class Chain(unittest.TestCase):

    rect = Rect(0, 0, 100, 100)

    def triangle(self):
        outline = Outline()
        for x, y in ((0, 0), (40, 0), (0, 80)):
            outline.append_anchor(x, y, self.rect)
        outline.close(self.rect)
        return outline

    def test_straight_control_points_truncate_toward_zero(self):
        self.assertEqual([(p.x, p.y) for p in straight_controls(Point(0, 10, 10), Point(0, 0, 13))], [(8, 10), (3, 12)])

    def test_appending_grows_by_one_and_then_by_three(self):
        outline = Outline()
        lengths = []
        for x in (0, 10, 20):
            outline.append_anchor(x, 0, self.rect)
            lengths.append(len(outline))
        self.assertEqual(lengths, [1, 4, 7])

    def test_appending_to_a_closed_chain_keeps_it_closed(self):
        outline = self.triangle()
        outline.append_anchor(8, 40, self.rect)
        self.assertEqual(places(outline)[6:], [(0, 80), (2, 70), (6, 50), (8, 40), (6, 30), (2, 10)])

    def test_closing_a_closed_chain_again_changes_nothing(self):
        outline = self.triangle()
        before = places(outline)
        outline.close(self.rect)
        self.assertEqual(places(outline), before)

    def test_inserting_into_a_straight_segment(self):
        outline = self.triangle()
        outline.insert(1, Point(0, 20, 0), self.rect)
        self.assertEqual(places(outline)[:7], [(0, 0), (5, 0), (15, 0), (20, 0), (25, 0), (35, 0), (40, 0)])
        self.assertEqual(len(outline), 12)

    def test_inserting_into_the_closing_segment_appends(self):
        outline = self.triangle()
        outline.insert(7, Point(0, 0, 40), self.rect)
        self.assertEqual(places(outline)[6:], [(0, 80), (0, 70), (0, 50), (0, 40), (0, 30), (0, 10)])

    def test_inserting_into_a_curved_segment_makes_a_smooth_run(self):
        outline = self.triangle()
        outline.set_curve(0, "curve_out", 1)
        outline.insert(1, Point(0, 20, 20), self.rect)
        # A0 = (0, 80), A = (0, 0), P = (20, 20), B = (40, 0), B1 = (0, 80)
        self.assertEqual(places(outline)[1:6], [(3, -9), (14, 20), (20, 20), (26, 20), (43, -9)])
        self.assertEqual(outline.points[3].as_tuple(), (0, 20, 20, 1, 1, 0))

    def test_deleting_joins_the_neighbours_by_a_straight_segment_and_leaves_the_others(self):
        outline = self.triangle()
        outline.append_anchor(0, 40, self.rect)
        outline.move_control(1, 5, 5, self.rect)
        outline.move_control(4, 5, 5, self.rect)
        outline.delete([6], self.rect)
        self.assertEqual(places(outline), [(0, 0), (15, 5), (30, 0), (40, 0), (30, 10), (10, 30), (0, 40), (0, 30), (0, 10)])
        self.assertEqual([(p.curve_in, p.curve_out) for p in outline.points if p.is_anchor()], [(0, 1), (1, 0), (0, 0)])

    def test_deleting_two_of_three_anchors_leaves_a_closed_chain_of_one(self):
        outline = self.triangle()
        outline.delete([0, 6], self.rect)
        self.assertEqual(places(outline), [(40, 0)] * 3)

    def test_an_open_chain_stays_open(self):
        outline = Outline()
        for x in (0, 20, 40):
            outline.append_anchor(x, 0, self.rect)
        outline.delete([6], self.rect)
        self.assertEqual(places(outline), [(0, 0), (5, 0), (15, 0), (20, 0)])

    def test_moving_a_control_point_marks_both_ends_of_its_segment(self):
        for control in (4, 5):
            outline = self.triangle()
            outline.move_control(control, 1, -1, self.rect)
            flags = [(p.curve_in, p.curve_out) for p in outline.points if p.is_anchor()]
            self.assertEqual(flags, [(0, 0), (0, 1), (1, 0)])
            self.assertEqual([(p.curve_in, p.curve_out) for p in outline.twins if p.is_anchor()], flags)

    def test_moving_an_anchor_keeps_straight_segments_straight_and_takes_handles_along(self):
        outline = self.triangle()
        outline.move_control(5, 0, 0, self.rect)
        outline.move_anchor(3, 4, 4, self.rect)
        # the arriving segment is straight, measured from the anchor; the handle at 4 moves along, the one at 5 stays
        self.assertEqual(places(outline)[1:6], [(11, 1), (33, 3), (44, 4), (34, 24), (10, 60)])

    def test_moving_the_first_anchor_wraps(self):
        outline = self.triangle()
        outline.move_anchor(0, 4, 4, self.rect)
        self.assertEqual(places(outline), [(4, 4), (13, 3), (31, 1), (40, 0), (30, 20), (10, 60), (0, 80), (1, 61), (3, 23)])

    def test_serialised_points(self):
        data = struct.pack("<IffIII", 0, 0.5, 0.25, 1, 0, 1)
        self.assertEqual(to_bytes(from_bytes(data)), data)
        self.assertEqual(from_bytes(data + b"x"), None)
        self.assertEqual(from_bytes(b""), None)


class Sampling(unittest.TestCase):

    def sampled(self, controls, density):
        return [(p.x, p.y) for p in bezier_points([Point(0, x, y) for x, y in controls], density)]

    def test_a_diagonal_line_is_swept_twice(self):
        self.assertEqual([(p.x, p.y) for p in line_points(Point(0, 0, 0), Point(0, 3, 3))],
                         [(0, 0), (1, 1), (2, 2), (3, 3)] * 2)

    def test_a_vertical_line(self):
        self.assertEqual([(p.x, p.y) for p in line_points(Point(0, 2, 1), Point(0, 2, 4))],
                         [(2, 4), (2, 1), (2, 2), (2, 3), (2, 4)])

    def test_flattening_in_sixteenths(self):
        self.assertEqual(flatten([16 * x for x in (18, 18, 14, 10)], [16 * y for y in (10, 14, 18, 18)]),
                         [(277, 207), (248, 248), (207, 277), (160, 288)])
        self.assertEqual([x for x, _ in flatten([0, 160, 480, 640], [0] * 4)], [67, 145, 231, 320, 409, 495, 573, 640])

    def test_samples_of_curves(self):
        self.assertEqual(self.sampled([(2, 3)] * 4, 16), [(2, 3)] * 2)
        self.assertEqual(self.sampled([(0, 0), (1, 0), (3, 0), (4, 0)], 4), [(0, 0), (2, 0), (4, 0)])
        self.assertEqual(self.sampled([(0, 0), (0, 6), (9, 6), (9, 0)], 8),
                         [(0, 0), (0, 1), (0, 2), (1, 3), (3, 4), (5, 5), (6, 4), (8, 3), (9, 2), (9, 1), (9, 0)])

    def test_samples_of_a_small_curve_on_a_wide_display(self):
        samples = self.sampled([(10, 10), (10, 10), (10, 10), (12, 11)], 1920)
        self.assertEqual((len(samples), samples[28], samples[-1]), (56, (10, 10), (12, 11)))

    def test_two_anchors_make_one_segment_and_three_make_three(self):
        outline = Outline()
        rect = Rect(0, 0, 10, 10)
        outline.append_anchor(0, 0, rect)
        self.assertEqual(sample_outline(outline.points, 100), None)
        outline.append_anchor(9, 0, rect)
        outline.close(rect)
        self.assertEqual(len(sample_outline(outline.points, 100)), 1)
        outline.append_anchor(9, 9, rect)
        self.assertEqual(len(sample_outline(outline.points, 100)), 3)


class Mouse(unittest.TestCase):

    def test_drawing_and_closing_a_triangle(self):
        editor = drawn([(100, 100), (200, 100), (150, 200)])
        self.assertEqual(editor.events, [ADD, ADD, ADD, CREATE])
        self.assertEqual((editor.is_mask, len(editor.live), editor.get_keyframe_durations()), (True, 9, [-1]))

    def test_an_insertion_keeps_both_halves_straight(self):
        editor = square()
        editor.interactive(MOVE, 150, 100)
        self.assertEqual((editor.hover.type, editor.hover.line_index, editor.hover.point.x), (2, 0, 140))
        editor.interactive(DOWN, 150, 100)
        self.assertEqual(places(editor.live)[:7],
                         [(100, 100), (110, 100), (130, 100), (140, 100), (155, 100), (185, 100), (200, 100)])
        self.assertEqual((editor.events, editor.selected, editor.hover.index), ([ADD], [3], 3))
        self.assertEqual(len(editor.keyframes[0].outline), 15)

    def test_dragging_an_anchor(self):
        editor = square()
        editor.interactive(MOVE, 105, 95)
        editor.interactive(DOWN, 105, 95)
        editor.interactive(MOVE, 90, 80)
        editor.interactive(UP)
        self.assertEqual(places(editor.live)[0], (90, 80))
        self.assertEqual(editor.events, [UPDATE])
        self.assertEqual(places(editor.keyframes[0].outline), places(editor.live))

    def test_shift_mirrors_the_opposite_handle_and_letting_go_of_it_puts_it_back(self):
        editor = square()
        for state, x, y in ((MOVE, 200, 100), (DOWN, 200, 100), (UP, 0, 0), (MOVE, 200, 125), (DOWN, 200, 125)):
            editor.interactive(state, x, y)
        self.assertEqual(editor.hover.index, 4)
        editor.set_shift_pressed(True)
        editor.interactive(MOVE, 220, 130)
        self.assertEqual((places(editor.live)[4], places(editor.live)[2]), ((220, 130), (180, 70)))
        self.assertEqual([(p.curve_in, p.curve_out) for p in editor.live.points if p.is_anchor()],
                         [(0, 1), (1, 1), (1, 0), (0, 0)])
        editor.set_shift_pressed(False)
        self.assertEqual(places(editor.live)[2], (175, 100))

    def test_the_rubber_band_is_half_open(self):
        editor = square()
        editor.interactive(MOVE, 50, 50)
        editor.interactive(DOWN, 50, 50)
        editor.interactive(MOVE, 200, 201)
        self.assertEqual(editor.selected, [0, 9])

    def test_results_of_the_dispatcher(self):
        editor = square()
        self.assertEqual([editor.interactive(state) for state in range(4)], [0, 0, 0, 1])
        self.assertEqual((editor.interactive(6), editor.interactive(-1)), (E_FAIL, E_FAIL))


class Keyframes(unittest.TestCase):

    def animated(self):
        """Keyframes at 0 and 100, the second one moved by 40 pixels to the right."""
        editor = drawn([(100, 100), (200, 100), (150, 200)], closed=False)
        editor.prepare_keyframe(0)
        editor.interactive(DOWN, 100, 100)
        editor.interactive(UP)
        editor.prepare_keyframe(100)
        editor.move_all_points(40, 0)
        return editor

    def test_halfway_between_two_keyframes(self):
        editor = self.animated()
        editor.prepare_keyframe(50)
        self.assertEqual(places(editor.live)[0], (120, 100))
        self.assertTrue(editor.on_keyframe)

    def test_before_the_first_and_after_the_last_keyframe(self):
        editor = self.animated()
        editor.prepare_keyframe(-5)
        self.assertFalse(editor.on_keyframe)
        editor.prepare_keyframe(500)
        self.assertTrue(editor.on_keyframe)
        editor.set_hide(True)
        editor.prepare_keyframe(501)
        self.assertFalse(editor.on_keyframe)
        editor.prepare_keyframe(1000)
        self.assertFalse(editor.on_keyframe)

    def test_a_keyframe_that_is_shown_is_not_drawn_again(self):
        editor = self.animated()
        editor.prepare_keyframe(0)
        editor.prepare_keyframe(0)
        # once at 100, where the only keyframe was still the one at 0, and once at 0
        self.assertEqual(editor.update_signals, 2)
        editor.force_update_frame()
        editor.prepare_keyframe(0)
        self.assertEqual(editor.update_signals, 3)

    def test_removing_the_last_keyframe_clears_the_outline(self):
        editor = self.animated()
        editor.events = []
        editor.remove_specific_keyframe(7)
        editor.remove_specific_keyframe(0)
        editor.remove_specific_keyframe(100)
        self.assertEqual(editor.events, [UPDATE, UPDATE, MASK_REMOVE])
        self.assertEqual(len(editor.live), 0)

    def test_saving_and_restoring(self):
        editor = self.animated()
        saved = editor.get_current_dev_setting()
        other = EditorModel()
        other.set_video_coordinate(400, 300, 0, 0, 400, 300)
        other.set_dev_setting(saved)
        self.assertEqual(other.get_current_dev_setting(), saved)

    def test_a_keyframe_made_for_the_host(self):
        a = {4: 0, 5: [(0.0, 0.5, 0, 0, 1)]}
        b = {4: 10, 5: [(1.0, 0.5, 1, 1, 0)]}
        self.assertEqual(generate_specific_keyframe(a, b, 5), {4: 5, 5: [(0.5, 0.5, 0, 0, 1)]})
        self.assertEqual(generate_specific_keyframe(None, b, 5), None)

    def test_centroid(self):
        self.assertEqual(centroid_of([Point(0, 0.25, 0.5)]), (0.0, 0.0))
        self.assertEqual(centroid_of([Point(0, 0.25, 0.5), Point(0, 0.75, 0.25), Point(0, 0.5, 0.25)]), (0.5, 0.375))


if __name__ == "__main__":
    unittest.main()
