# SPDX-License-Identifier: MIT
"""Mouse events: drawing, closing, hovering, picking, dragging, the rubber band, the shift key."""
from __future__ import absolute_import

import unittest

import _Orvanel as entries
from fixture import ADD, CREATE, E_FAIL, MASK_REMOVE, REMOVE, UPDATE, EditorCase, code


class Drawing(EditorCase):

    def test_a_press_on_the_first_of_two_anchors_adds_another(self):
        self.editor.draw([(100, 100), (200, 100)], closed=False)
        self.editor.press(100, 100)
        self.assertEqual(len(self.editor.points()), 7)
        self.assertFalse(self.editor.IsMask())
        self.assertEqual(self.editor.events, [ADD])

    def test_a_press_on_the_first_of_three_anchors_closes_the_outline(self):
        self.editor.draw(self.TRIANGLE, closed=False)
        self.editor.press(110, 90)
        self.assertEqual(len(self.editor.points()), 9)
        self.assertTrue(self.editor.IsMask())
        self.assertEqual(self.editor.events, [CREATE])

    def test_closing_again_announces_an_update_until_the_new_mask_is_reset(self):
        for expected in (CREATE, UPDATE):
            self.editor.DeleteAllPoints()
            self.editor.draw(self.TRIANGLE, closed=False)
            self.editor.press(*self.TRIANGLE[0])
            self.assertEqual(self.editor.events, [expected])
            self.editor.release()
        self.editor.ResetNewMask()
        self.editor.DeleteAllPoints()
        self.editor.draw(self.TRIANGLE, closed=False)
        self.editor.press(*self.TRIANGLE[0])
        self.assertEqual(self.editor.events, [CREATE])

    def test_closing_over_stored_keyframes_announces_nothing(self):
        self.editor.draw(self.TRIANGLE, closed=False)
        self.editor.CacheCurrentKeyframe()
        self.editor.press(*self.TRIANGLE[0])
        self.assertTrue(self.editor.IsMask())
        self.assertEqual(self.editor.events, [])

    def _second_anchor_with_shift(self, x, y):
        self.editor.press(100, 100)
        self.editor.release()
        self.editor.SetShiftPressed(True)
        self.editor.press(x, y)
        return self.editor.anchors()[1]

    def test_shift_snaps_a_tie_vertically(self):
        self.assertEqual(self._second_anchor_with_shift(150, 150), (100, 150))

    def test_shift_snaps_horizontally_when_that_is_farther(self):
        self.assertEqual(self._second_anchor_with_shift(151, 150), (151, 100))

    def test_letting_go_of_the_button_lets_go_of_shift(self):
        self.editor.SetShiftPressed(True)
        self.editor.press(10, 10)
        self.editor.release()
        self.editor.press(60, 80)
        self.assertEqual(self.editor.anchors()[1], (60, 80))

    def test_only_the_first_anchor_is_hovered(self):
        self.editor.draw(self.TRIANGLE, closed=False)
        self.editor.move(200, 100)
        self.assertFalse(self.editor.IsHoverControlPoint())
        self.editor.move(95, 100)
        self.assertTrue(self.editor.IsHoverControlPoint())


class Hovering(EditorCase):

    def test_a_point_wins_over_a_segment(self):
        self.editor.draw(self.SQUARE)
        self.editor.move(110, 100)
        self.assertEqual((self.editor.IsHoverControlPoint(), self.editor.IsHoverPointInLine()), (True, False))
        self.editor.move(111, 100)
        self.assertEqual((self.editor.IsHoverControlPoint(), self.editor.IsHoverPointInLine()), (False, True))

    def test_the_higher_numbered_of_two_segments_wins(self):
        # Segments 0 and 2 run side by side.
        corners = [(100, 100), (300, 100), (300, 115), (100, 115)]
        self.editor.draw(corners)
        self.editor.move(200, 106)
        self.editor.press(200, 106)
        self.assertEqual(len(self.editor.points()), 15)
        self.assertEqual(self.editor.anchors()[:3], corners[:3])
        self.assertEqual(self.editor.anchors()[3][1], 115)

    def test_the_lower_index_of_two_points_wins(self):
        self.editor.draw([(100, 100), (200, 100), (150, 200), (112, 106)])
        self.editor.drag((106, 104), (106, 54))
        self.assertEqual(self.editor.anchors()[0], (106, 54))
        self.assertEqual(self.editor.anchors()[3], (112, 106))

    def test_a_control_point_is_hovered_only_while_its_handle_is_shown(self):
        self.editor.draw(self.SQUARE)
        self.editor.move(125, 100)
        self.assertTrue(self.editor.IsHoverPointInLine())
        self.editor.click(100, 100)
        self.editor.move(125, 100)
        self.assertTrue(self.editor.IsHoverControlPoint())
        self.assertTrue(self.editor.IsBCPSelected())
        # a press on empty space hides the handles again
        self.editor.click(300, 250)
        self.editor.move(125, 100)
        self.assertTrue(self.editor.IsHoverPointInLine())

    def test_nothing_is_answered_as_hovered_where_no_outline_is_shown(self):
        self.editor.PrepareKeyframe(5)
        self.editor.draw(self.SQUARE)
        self.editor.move(100, 100)
        self.assertTrue(self.editor.IsHoverControlPoint())
        self.editor.PrepareKeyframe(4)
        self.assertFalse(self.editor.IsHoverControlPoint())
        self.assertFalse(self.editor.IsNeedHandleMouseEvent())


class Dragging(EditorCase):

    def test_a_drag_ends_with_one_update(self):
        self.editor.draw(self.SQUARE)
        self.editor.drag((100, 100), (90, 90), (80, 70))
        self.assertEqual(self.editor.anchors()[0], (80, 70))
        self.assertEqual(self.editor.events, [UPDATE])

    def test_a_mere_click_changes_and_announces_nothing(self):
        self.editor.draw(self.SQUARE)
        before = self.editor.points()
        self.editor.click(106, 95)
        self.assertEqual((self.editor.points(), self.editor.events), (before, []))

    def test_a_press_on_a_segment_inserts_a_point_and_drags_it(self):
        self.editor.draw(self.SQUARE)
        self.editor.drag((150, 100), (150, 60))
        self.assertEqual(self.editor.anchors()[1], (150, 60))
        self.assertEqual(self.editor.events, [ADD, UPDATE])

    def test_shift_mirrors_the_opposite_handle_and_letting_go_puts_it_back(self):
        self.editor.draw(self.SQUARE)
        self.editor.click(200, 100)
        self.editor.move(200, 125)
        self.editor.press(200, 125)
        self.editor.SetShiftPressed(True)
        self.editor.move(230, 130)
        self.assertEqual((self.editor.places()[4], self.editor.places()[2]), ((230, 130), (170, 70)))
        self.editor.SetShiftPressed(False)
        self.assertEqual(self.editor.places()[2], (175, 100))
        self.editor.SetShiftPressed(True)
        self.assertEqual(self.editor.places()[2], (170, 70))
        self.editor.release()
        self.assertEqual(self.editor.places()[2], (170, 70))


class RubberBand(EditorCase):

    def setUp(self):
        EditorCase.setUp(self)
        self.editor.time = 0
        self.editor.PrepareKeyframe(0)
        self.editor.draw(self.SQUARE)

    def _drawn(self):
        self.editor.ForceUpdateFrame()
        return self.editor.surface()

    def test_it_selects_half_open(self):
        self.editor.drag((50, 50), (200, 201))
        self.editor.events = []
        self.editor.Interactive(entries.ECS_DELETE)
        self.assertEqual((self.editor.anchors(), self.editor.events), ([(200, 100), (200, 200)], [REMOVE]))

    def test_a_release_takes_a_band_with_an_area_away(self):
        self.editor.move(20, 20)
        self.editor.press(20, 20)
        self.editor.move(60, 70)
        shown = self._drawn()
        self.editor.release()
        self.assertNotEqual(self._drawn(), shown)

    def test_a_release_after_a_band_of_no_width_keeps_everything_as_it_is(self):
        """What is kept draws nothing and selects nothing, so it shows in that nothing changes."""
        self.editor.move(20, 20)
        self.editor.press(20, 20)
        self.editor.move(20, 70)
        shown, setting = self._drawn(), self.editor.GetCurrentDevSetting()
        self.editor.release()
        self.assertEqual((self._drawn(), self.editor.GetCurrentDevSetting()), (shown, setting))
        self.assertFalse(self.editor.IsAnyPointSelected())
        self.assertEqual(self.editor.events, [])


class Dispatcher(EditorCase):

    def test_a_double_click_answers_one_and_changes_nothing(self):
        self.editor.draw(self.SQUARE)
        self.editor.move(100, 100)
        self.editor.ResetDirtyFlag()
        before = self.editor.GetCurrentDevSetting()
        self.assertEqual(self.editor.Interactive(entries.ECS_MOUSE_DBCLICK, 100, 100), 1)
        self.assertEqual(self.editor.GetCurrentDevSetting(), before)
        self.assertEqual((self.editor.IsDirty(), self.editor.IsMouseDown(), self.editor.events), (False, False, []))

    def test_a_state_of_six_is_a_failure(self):
        for state in (6, 7, 2 ** 31 - 1, -1, -2 ** 31):
            self.assertEqual(code(self.editor.Interactive(state, 1, 1)), E_FAIL)
        self.assertEqual((self.editor.GetCurrentPoints(), self.editor.events), (None, []))

    def test_missing_coordinates_are_zero(self):
        self.editor.Interactive(entries.ECS_MOUSE_DOWN, 7)
        self.editor.Interactive(entries.ECS_MOUSE_DOWN)
        self.assertEqual(self.editor.anchors(), [(7, 0), (0, 0)])

    def test_handlers_answer_zero_and_deletions_one(self):
        self.assertEqual([self.editor.Interactive(state, 5, 5) for state in range(6)], [0, 0, 0, 1, 1, 1])

    def test_delete_without_a_selection_removes_the_mask(self):
        self.editor.draw(self.SQUARE)
        self.editor.Interactive(entries.ECS_DELETE)
        self.assertEqual((self.editor.GetCurrentPoints(), self.editor.events), (None, [MASK_REMOVE]))

    def test_the_last_point_is_deleted_only_while_drawing(self):
        self.editor.draw(self.SQUARE)
        self.assertEqual(self.editor.Interactive(entries.ECS_DELETE_LAST_POINT), 1)
        self.assertEqual((len(self.editor.points()), self.editor.events), (12, []))

    def test_the_button_is_known_to_be_down(self):
        self.editor.press(1, 1)
        self.assertTrue(self.editor.IsMouseDown())
        self.editor.release()
        self.assertFalse(self.editor.IsMouseDown())


if __name__ == "__main__":
    unittest.main()
