# SPDX-License-Identifier: MIT
"""The keyframe track: caching, showing what belongs to a time position, removing."""
from __future__ import absolute_import

import unittest

from fixture import MASK_REMOVE, UPDATE, EditorCase, hostkit, needs_records


class KeyframeCase(EditorCase):

    def animate(self, *times):
        """Keyframes at these times, each 20 pixels to the right of the one before; the outline is a triangle."""
        self.editor.PrepareKeyframe(times[0])
        self.editor.draw(self.TRIANGLE)
        for time in times[1:]:
            self.editor.PrepareKeyframe(time)
            self.editor.MoveAllPoints(20, 0)
        self.editor.events = []

    def shown_at(self, time, *flag):
        """The first anchor that is shown at a time; None when nothing is. What the surface holds is looked at, too."""
        self.editor.time = time
        self.editor.PrepareKeyframe(time, *flag)
        shown = self.editor.IsNeedHandleMouseEvent()
        self.assertEqual(any(bytearray(self.editor.surface())), shown)
        return self.editor.anchors()[0] if shown else None


class Caching(KeyframeCase):

    def test_twice_at_one_position_keeps_one_entry_with_the_later_outline(self):
        self.animate(40)
        self.assertEqual(self.editor.GetKeyFrameDurationList(), [40])
        self.editor.MoveAllPoints(5, 0)
        self.assertEqual(self.editor.CacheCurrentKeyframe(), 0)
        self.assertEqual(self.editor.GetKeyFrameDurationList(), [40])
        self.assertEqual(self.editor.GetCurrentDevSetting()[3][0][5], self.editor.GetCurrentPoints())

    def test_the_list_is_ascending_whatever_the_order_of_caching(self):
        self.animate(40)
        for time in (90, 0, 60, 2 ** 40, 39):
            self.editor.PrepareKeyframe(time)
            self.editor.CacheCurrentKeyframe()
        self.assertEqual(self.editor.GetKeyFrameDurationList(), [0, 39, 40, 60, 90, 2 ** 40])

    def test_durations_are_longs(self):
        self.animate(40)
        self.assertIs(type(self.editor.GetKeyFrameDurationList()[0]), long)

    def test_negative_positions_are_positions_like_others(self):
        self.animate(-30, -10)
        self.assertEqual(self.editor.GetKeyFrameDurationList(), [-30, -10])
        self.assertEqual([keyframe[4] for keyframe in self.editor.GetCurrentDevSetting()[3]], [-30, -10])
        self.assertEqual(self.shown_at(-20), (110, 100))

    def test_an_outline_drawn_before_any_position_was_prepared_lies_at_minus_one(self):
        self.editor.draw(self.TRIANGLE)
        self.assertEqual(self.editor.GetKeyFrameDurationList(), [-1])
        self.assertEqual(self.editor.GetCurrentDevSetting()[3][0][4], -1)


class Preparing(KeyframeCase):

    def test_before_the_first_keyframe_nothing(self):
        self.animate(10, 50)
        self.assertIsNone(self.shown_at(9))

    def test_at_a_keyframe_that_keyframe(self):
        self.animate(10, 50)
        self.assertEqual(self.shown_at(10), (100, 100))
        self.assertEqual(self.shown_at(50), (120, 100))

    def test_between_two_keyframes_an_interpolated_outline(self):
        self.animate(10, 50)
        self.assertEqual(self.shown_at(20), (105, 100))
        self.assertEqual(self.shown_at(30), (110, 100))

    def test_after_the_last_keyframe_the_last_keyframe(self):
        self.animate(10, 50)
        self.assertEqual(self.shown_at(700), (120, 100))

    def test_after_the_last_of_two_keyframes_nothing_when_hidden(self):
        self.animate(10, 50)
        self.editor.SetHide(True)
        self.assertIsNone(self.shown_at(51))
        self.assertEqual(self.shown_at(50), (120, 100))

    def test_after_a_single_keyframe_that_keyframe_even_when_hidden(self):
        self.animate(10)
        self.editor.SetHide(True)
        self.assertEqual(self.shown_at(51), (100, 100))

    def test_at_or_past_the_end_nothing_whatever_the_keyframes(self):
        self.animate(10, 50)
        self.editor.SetVideoInfo(0, 0, 0, 50)
        self.assertIsNone(self.shown_at(50))
        self.assertIsNone(self.shown_at(51))
        # 39 of 40 parts of the way: 119.5, and half a pixel is rounded up
        self.assertEqual(self.shown_at(49), (120, 100))
        self.editor.SetVideoInfo(0, 0, 0, 0)
        self.assertIsNone(self.shown_at(10))

    def test_the_flag_counts_from_the_start_of_the_clip(self):
        self.animate(10, 50)
        self.editor.SetVideoInfo(100, 0, 130, 1000)
        self.assertEqual(self.shown_at(20, 0), (105, 100))
        self.editor.PrepareKeyframe(-25, 1)
        self.assertFalse(self.editor.IsNeedHandleMouseEvent())
        self.editor.PrepareKeyframe(0, 1)
        self.assertEqual(self.editor.anchors()[0], (110, 100))

    def test_without_keyframes_the_live_outline(self):
        self.editor.draw(self.TRIANGLE, closed=False)
        self.editor.SetVideoInfo(0, 0, 0, 5)
        self.assertEqual(self.shown_at(100), (100, 100))

    def test_the_worker_reports_points_that_were_loaded(self):
        self.animate(10, 50)
        reports = self.editor.reports
        self.editor.PrepareKeyframe(30)
        self.assertTrue(self.editor.await_reports(reports + 1))
        self.assertEqual(self.editor.events, [])

    def test_shown_handles_survive_a_keyframe(self):
        self.animate(10, 50)
        self.editor.click(120, 100)
        self.editor.PrepareKeyframe(10)
        self.editor.move(125, 100)
        self.assertTrue(self.editor.IsBCPSelected())


class Removing(KeyframeCase):

    def test_the_last_keyframe_clears_the_outline(self):
        self.animate(10)
        self.assertEqual(self.editor.RemoveSpecificKeyFrame(10), 0)
        self.assertEqual(self.editor.events, [MASK_REMOVE])
        self.assertEqual((self.editor.GetCurrentPoints(), self.editor.IsMask()), (None, False))

    def test_a_position_without_keyframe_raises_an_update(self):
        self.animate(10, 50)
        self.editor.RemoveSpecificKeyFrame(11)
        self.assertEqual((self.editor.events, self.editor.GetKeyFrameDurationList()), ([UPDATE], [10, 50]))

    def test_from_an_empty_list_raises_a_removal(self):
        self.editor.RemoveSpecificKeyFrame(11)
        self.assertEqual(self.editor.events, [MASK_REMOVE])

    def test_one_of_several_raises_an_update(self):
        self.animate(10, 50, 60)
        self.editor.RemoveSpecificKeyFrame(50)
        self.assertEqual((self.editor.events, self.editor.GetKeyFrameDurationList()), ([UPDATE], [10, 60]))
        self.editor.RemoveSpecificKeyFrame(10)
        self.assertEqual((self.editor.events, self.editor.GetKeyFrameDurationList()), ([UPDATE, UPDATE], [60]))

    def test_from_the_first_position_on_removes_all(self):
        self.animate(10, 50)
        self.assertEqual(self.editor.RemoveTrialingKeyFrames(10), 0)
        self.assertEqual((self.editor.events, self.editor.GetKeyFrameDurationList()), ([MASK_REMOVE], []))
        self.assertIsNone(self.editor.GetCurrentPoints())

    def test_from_before_the_first_position_on_removes_nothing(self):
        self.animate(10, 50)
        self.editor.RemoveTrialingKeyFrames(9)
        self.assertEqual((self.editor.events, self.editor.GetKeyFrameDurationList()), ([], [10, 50]))

    def test_from_after_the_last_position_on_removes_nothing(self):
        self.animate(10, 50)
        self.editor.RemoveTrialingKeyFrames(51)
        self.assertEqual((self.editor.events, self.editor.GetKeyFrameDurationList()), ([], [10, 50]))

    def test_from_between_two_positions_on_cuts_the_list_silently(self):
        self.animate(10, 50, 60)
        self.editor.ResetDirtyFlag()
        self.editor.RemoveTrialingKeyFrames(11)
        self.assertEqual((self.editor.events, self.editor.GetKeyFrameDurationList()), ([], [10]))
        self.assertTrue(self.editor.IsDirty())

    def test_destroying_all_keyframes_leaves_the_outline(self):
        self.animate(10, 50)
        self.assertEqual(self.editor.DestroyAllKeyFrameMaskInfo(), 0)
        self.assertEqual((self.editor.GetKeyFrameDurationList(), self.editor.IsMask()), ([], True))
        self.assertEqual(self.editor.anchors()[0], (120, 100))


class ClosestPosition(KeyframeCase):

    def test_without_a_syncer_the_argument(self):
        self.animate(10, 50)
        self.assertEqual(self.editor.GetClosestKeyFramePos(11, None), 11)

    @needs_records
    def test_a_keyframe_on_the_same_frame(self):
        self.animate(10, 50)
        # Ten units a frame: times 10 to 19 are frame 1.
        syncer = hostkit.VideoSyncer(hostkit.FrameClock(1, 1, hostkit.LongLongVector(range(0, 1000, 10))))
        for time, closest in ((10, 10), (19, 10), (20, 20), (9, 9), (55, 50), (60, 60)):
            self.assertEqual(self.editor.GetClosestKeyFramePos(time, syncer), closest)


@needs_records
class Records(KeyframeCase):

    def taken(self, duration):
        record = self.editor.GetKeyFrameMaskInfo(duration)
        record.thisown = True
        return record

    def test_a_fresh_record_holds_the_live_outline_without_handles(self):
        self.animate(10)
        self.editor.click(100, 100)
        record = self.taken(77)
        self.assertEqual(record.duration, 77)
        self.assertEqual((record.maskWidth, record.maskHeight, record.maskBuffer.size()), (400, 300, 0))
        self.assertEqual([(point.x, point.y) for point in record.points], self.editor.places())
        self.assertFalse(any(point.handleShown for point in record.points))
        self.assertEqual((record.placement.width, record.placement.height), (400, 300))

    def test_a_negative_duration_leaves_the_record_at_zero(self):
        self.assertEqual(self.taken(-7).duration, 0)

    def test_a_record_is_placed_anew_in_another_video_rectangle(self):
        self.animate(10)
        record = self.taken(10)
        self.editor.SetVideoCoordinate(400, 300, 0, 0, 200, 150)
        self.editor.UpdateKeyFrameInSize(record)
        self.assertEqual((record.points[0].x, record.points[0].y, record.placement.width), (50, 50, 200))

    def test_a_record_drawn_becomes_the_live_outline(self):
        self.animate(10)
        record = self.taken(10)
        self.editor.MoveAllPoints(50, 0)
        self.assertEqual(self.editor.DrawExistKeyFrame(record), 0)
        self.assertEqual(self.editor.anchors()[0], (100, 100))

    def test_two_records_are_taken_in_the_order_of_their_durations(self):
        self.animate(10)
        early = self.taken(0)
        self.editor.MoveAllPoints(40, 0)
        late = self.taken(40)
        for pair in ((early, late), (late, early)):
            self.assertEqual(self.editor.DrawSpecificKeyFrame(pair[0], pair[1], 10), 0)
            self.assertEqual(self.editor.anchors()[0], (110, 100))

    def test_null_records_are_borne(self):
        self.animate(10)
        before = self.editor.points()
        self.assertEqual(self.editor.DrawExistKeyFrame(None), 0)
        self.assertEqual(self.editor.DrawSpecificKeyFrame(None, None, 5), 0)
        self.editor.UpdateKeyFrameInSize(None)
        self.assertEqual(self.editor.points(), before)


if __name__ == "__main__":
    unittest.main()
