# SPDX-License-Identifier: MIT
"""Appending, inserting, moving, hit-testing, selecting and deleting points."""
from __future__ import absolute_import

import unittest

from fixture import ADD, E_FAIL, MASK_REMOVE, REMOVE, EditorCase, code, hostkit, needs_records


def _at(x, y):
    point = hostkit.MPoint()
    point.x, point.y = x, y
    return point


def _on_line(line_index, x, y):
    hover = hostkit.HoverPoint()
    hover.type, hover.lineIndex, hover.point = 2, line_index, _at(x, y)
    return hover


class AddPoint(EditorCase):

    def test_the_chain_grows_to_one_four_and_seven_points(self):
        lengths = []
        for x, y in ((100, 100), (200, 140), (50, 60)):
            self.editor.AddPoint(x, y)
            lengths.append(len(self.editor.points()))
        self.assertEqual(lengths, [1, 4, 7])
        self.assertEqual(self.editor.places()[:4], [(100, 100), (125, 110), (175, 130), (200, 140)])
        self.assertEqual([point[0] for point in self.editor.points()], [0, 1, 1, 0, 1, 1, 0])

    def test_the_result_is_a_failure_even_on_success(self):
        self.assertEqual(code(self.editor.AddPoint(1, 2)), E_FAIL)
        self.assertEqual(len(self.editor.points()), 1)

    def test_the_event_is_raised_when_a_canvas_exists(self):
        self.editor.AddPoint(1, 2)
        self.assertEqual(self.editor.events, [ADD])
        self.assertTrue(self.editor.IsDirty())

    def test_without_a_canvas_the_point_is_added_and_no_event_raised(self):
        self.editor.Uninitialize()
        self.editor.ResetDirtyFlag()
        self.assertEqual(code(self.editor.AddPoint(1, 2)), E_FAIL)
        self.assertEqual(len(self.editor.points()), 1)
        self.assertEqual(self.editor.events, [])
        self.assertFalse(self.editor.IsDirty())


@needs_records
class AddPointInLine(EditorCase):

    def test_line_indices_outside_the_chain_are_refused(self):
        self.assertEqual(code(self.editor.AddPointInLine(_on_line(0, 1, 1))), E_FAIL)
        self.editor.draw(self.TRIANGLE)
        before = self.editor.points()
        for index in (-1, -2 ** 31, 9, 10, 2 ** 31 - 1):
            self.assertEqual(code(self.editor.AddPointInLine(_on_line(index, 1, 1))), E_FAIL, index)
        self.assertEqual((self.editor.points(), self.editor.events), (before, []))

    def test_a_straight_segment_becomes_two_straight_ones(self):
        self.editor.draw(self.TRIANGLE)
        self.assertEqual(self.editor.AddPointInLine(_on_line(0, 140, 100)), 0)
        self.assertEqual(self.editor.places()[:7],
                         [(100, 100), (110, 100), (130, 100), (140, 100), (155, 100), (185, 100), (200, 100)])
        self.assertEqual(self.editor.events, [ADD])

    def test_the_closing_segment_grows_at_the_end(self):
        self.editor.draw(self.TRIANGLE)
        self.assertEqual(self.editor.AddPointInLine(_on_line(6, 130, 140)), 0)
        self.assertEqual(self.editor.anchors(), self.TRIANGLE + [(130, 140)])

    def test_every_keyframe_gets_the_point(self):
        self.editor.PrepareKeyframe(0)
        self.editor.draw(self.TRIANGLE)
        self.editor.PrepareKeyframe(100)
        self.editor.MoveAllPoints(40, 0)
        self.editor.AddPointInLine(_on_line(0, 180, 100))
        lengths = [len(keyframe[5]) for keyframe in self.editor.GetCurrentDevSetting()[3]]
        self.assertEqual(lengths, [12 * 24, 12 * 24])


@needs_records
class HitTest(EditorCase):

    def test_ten_pixels_hit_and_eleven_miss(self):
        self.editor.AddPoint(100, 100)
        for x, y in ((90, 90), (110, 110), (90, 110), (100, 100)):
            self.assertEqual(self.editor.HitTestPoint(_at(x, y)), 0)
        for x, y in ((89, 100), (111, 100), (100, 89), (100, 111)):
            self.assertEqual(self.editor.HitTestPoint(_at(x, y)), -1)

    def test_the_tolerance_does_not_follow_the_size_scale(self):
        self.editor.SetSizeScaler(3.0)
        self.editor.AddPoint(100, 100)
        self.assertEqual(self.editor.HitTestPoint(_at(111, 100)), -1)
        self.editor.SetSizeScaler(0.25)
        self.assertEqual(self.editor.HitTestPoint(_at(110, 100)), 0)

    def test_a_control_point_is_never_hit(self):
        self.editor.AddPoint(0, 0)
        self.editor.AddPoint(100, 0)
        self.assertEqual(self.editor.HitTestPoint(_at(25, 0)), -1)
        self.assertEqual(self.editor.HitTestPoint(_at(75, 0)), -1)

    def test_the_lower_index_wins(self):
        self.editor.AddPoint(108, 100)
        self.editor.AddPoint(100, 100)
        self.assertEqual(self.editor.HitTestPoint(_at(100, 100)), 0)
        self.assertEqual(self.editor.HitTestPoint(_at(97, 100)), 3)

    def test_an_empty_chain_is_not_hit(self):
        self.assertEqual(self.editor.HitTestPoint(_at(0, 0)), -1)


class Move(EditorCase):

    def test_all_points_stop_flush_with_the_right_edge(self):
        self.editor.draw(self.SQUARE)
        self.assertEqual(self.editor.MoveAllPoints(500, 0), 0)
        self.assertEqual(self.editor.anchors(), [(300, 100), (400, 100), (400, 200), (300, 200)])

    def test_all_points_stop_flush_with_the_left_and_the_top_edge(self):
        self.editor.draw(self.SQUARE)
        self.editor.MoveAllPoints(-1000, -1000)
        self.assertEqual(self.editor.anchors()[0], (0, 0))

    def test_the_right_edge_wins_over_the_left_one_when_the_outline_is_larger(self):
        self.editor.draw([(-50, 100), (450, 100), (200, 250)])
        self.editor.MoveAllPoints(1, 0)
        self.assertEqual(self.editor.anchors()[0], (-100, 100))

    def test_moving_by_nothing_leaves_the_overlay_clean(self):
        self.editor.draw(self.SQUARE)
        self.editor.ResetDirtyFlag()
        self.assertEqual(self.editor.MoveAllPoints(0, 0), 0)
        self.editor.MoveAllPoints(-100, -100)
        self.editor.ResetDirtyFlag()
        self.assertEqual(self.editor.MoveAllPoints(-5, 0), 0)
        self.assertFalse(self.editor.IsDirty())

    @needs_records
    def test_moving_points_needs_something_hovered(self):
        self.editor.draw(self.SQUARE)
        self.editor.move(300, 20)
        self.assertEqual(code(self.editor.MovePoints(hostkit.UIntVector([0]), 1, 1)), E_FAIL)

    @needs_records
    def test_several_points_move_without_the_control_points_in_the_list(self):
        self.editor.draw(self.SQUARE)
        self.editor.move(100, 100)
        self.assertEqual(self.editor.MovePoints(hostkit.UIntVector([0, 1, 3, 2 ** 32 - 1]), 110, 105), 0)
        self.assertEqual(self.editor.anchors(), [(110, 105), (210, 105), (200, 200), (100, 200)])
        self.assertFalse(self.editor.IsAnyBezierControlPointChanged())

    @needs_records
    def test_a_single_control_point_bends_its_segment(self):
        self.editor.draw(self.SQUARE)
        self.editor.move(100, 100)
        self.editor.MovePoints(hostkit.UIntVector([4]), 107, 97)
        flags = [point[3:5] for point in self.editor.points()[::3]]
        self.assertEqual(flags, [(0, 0), (0, 1), (1, 0), (0, 0)])
        self.assertEqual(self.editor.places()[4], (207, 122))
        self.assertTrue(self.editor.IsAnyBezierControlPointChanged())


class Delete(EditorCase):

    def test_the_last_point_of_a_chain_of_one_stays(self):
        self.editor.AddPoint(5, 6)
        self.editor.events = []
        self.assertEqual(self.editor.DeleteLastPoint(), 0)
        self.assertEqual((len(self.editor.points()), self.editor.events), (1, [MASK_REMOVE]))

    def test_the_last_point_of_an_empty_chain(self):
        self.assertEqual(self.editor.DeleteLastPoint(), 1)
        self.assertEqual(self.editor.events, [])

    def test_the_last_point_goes_with_the_segment_before_it(self):
        self.editor.draw(self.TRIANGLE, closed=False)
        self.assertEqual(self.editor.DeleteLastPoint(), 0)
        self.assertEqual((self.editor.anchors(), self.editor.events), (self.TRIANGLE[:2], [REMOVE]))

    def _select(self, left, top, right, bottom):
        self.editor.drag((left, top), (right, bottom))

    def test_fewer_than_nine_points_clear_the_mask_and_all_keyframes(self):
        self.editor.PrepareKeyframe(0)
        self.editor.draw(self.SQUARE)
        self.editor.PrepareKeyframe(50)
        self.editor.MoveAllPoints(10, 0)
        self._select(90, 80, 230, 120)
        self.assertTrue(self.editor.IsAnyPointSelected())
        self.editor.events = []
        self.assertEqual(self.editor.DeleteFocusPoint(), 0)
        self.assertEqual(self.editor.anchors(), [(210, 200), (110, 200)])
        self.assertEqual(len(self.editor.points()), 6)
        self.assertFalse(self.editor.IsMask())
        self.assertEqual(self.editor.GetKeyFrameDurationList(), [])
        self.assertEqual(self.editor.events, [REMOVE])

    def test_nine_remaining_points_keep_the_mask_and_the_keyframes(self):
        self.editor.PrepareKeyframe(0)
        self.editor.draw(self.SQUARE)
        self._select(90, 80, 110, 120)
        self.editor.DeleteFocusPoint()
        self.assertEqual(self.editor.anchors(), self.SQUARE[1:])
        self.assertTrue(self.editor.IsMask())
        self.assertEqual([len(keyframe[5]) for keyframe in self.editor.GetCurrentDevSetting()[3]], [9 * 24])
        self.assertFalse(self.editor.IsAnyPointSelected())

    def test_deleting_every_anchor_removes_the_mask(self):
        self.editor.draw(self.SQUARE)
        self.assertEqual(self.editor.SelectAllPoints(), 0)
        self.assertEqual(self.editor.DeleteFocusPoint(), 0)
        self.assertEqual((self.editor.GetCurrentPoints(), self.editor.events), (None, [MASK_REMOVE]))

    def test_nothing_selected_is_a_failure(self):
        self.editor.draw(self.SQUARE)
        self.assertEqual(code(self.editor.DeleteFocusPoint()), E_FAIL)

    def test_a_selected_control_point_is_a_failure(self):
        self.editor.draw(self.SQUARE)
        self.editor.click(100, 100)
        self.editor.click(125, 100)
        self.assertTrue(self.editor.IsBCPSelected())
        self.assertEqual(code(self.editor.DeleteFocusPoint()), E_FAIL)

    def test_all_points(self):
        self.editor.draw(self.SQUARE)
        self.assertEqual(self.editor.DeleteAllPoints(), 0)
        self.assertEqual(self.editor.events, [MASK_REMOVE])
        self.assertFalse(self.editor.IsMask())


if __name__ == "__main__":
    unittest.main()
