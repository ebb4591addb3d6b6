# SPDX-License-Identifier: MIT
"""Editing in a preview: events and their threads, undo and redo, and clicks that must not change anything."""
import thread
import threading
import unittest

from _Orvanel import (ECB_MASK_CREATE, ECB_MASK_REMOVE, ECB_MASK_UPDATE, ECB_POINT_ADD, ECB_POINT_REMOVE,
                      ECB_POINT_UPDATE)
from orvanel_host import outline
from orvanel_host.preview import Preview

from support import clock_of

SQUARE = ((200, 100), (400, 100), (400, 300), (200, 300))
# A deadlock, not slowness, is what a wait this long ends.
_PATIENCE = 60


class PreviewTest(unittest.TestCase):

    def setUp(self):
        self.preview = Preview(clock_of(50))
        self.addCleanup(self.preview.close)
        self.preview.place((640, 360))
        self.preview.seek(0)

    def draw_square(self):
        for position in SQUARE:
            self.preview.click(position)
        self.preview.click(SQUARE[0])

    def drag(self, start, end, shift=False):
        with self.preview.gesture():
            self.preview.hover(start)
            self.preview.press(start, shift)
            self.preview.drag(start, end)
            self.preview.release(end)

    def anchors(self):
        return [self.preview.to_pixels(p.x, p.y) for p in outline.anchors(self.preview.points())]

    def events(self):
        """Codes raised by the editing thread, in order."""
        return [event.code for event in self.preview.events.events if event.code != ECB_POINT_UPDATE]


class EventTest(PreviewTest):

    def test_events_arrive_in_order_before_the_call_returns(self):
        expected = []
        for position in SQUARE:
            self.preview.click(position)
            expected.append(ECB_POINT_ADD)
            self.assertEqual(self.events(), expected)
        self.preview.click(SQUARE[0])
        expected.append(ECB_MASK_CREATE)
        self.assertEqual(self.events(), expected)
        self.drag((300, 100), (310, 80))  # inserts a point on the upper side and drags it
        expected += [ECB_POINT_ADD, ECB_MASK_UPDATE]
        self.assertEqual(self.events(), expected)
        self.preview.delete()  # the inserted point is selected
        expected.append(ECB_POINT_REMOVE)
        self.assertEqual(self.events(), expected)
        self.preview.delete()  # nothing is
        expected.append(ECB_MASK_REMOVE)
        self.assertEqual(self.events(), expected)

    def test_editing_events_come_on_the_thread_that_edits(self):
        self.draw_square()
        threads = set(event.thread for event in self.preview.events.events if event.code != ECB_POINT_UPDATE)
        self.assertEqual(threads, set([thread.get_ident()]))

    def test_point_updates_come_from_the_worker(self):
        arrived, threads = threading.Event(), []

        def note(code):
            if code == ECB_POINT_UPDATE:
                threads.append(thread.get_ident())
                arrived.set()
        self.preview.events.listen(note)
        self.draw_square()
        for frame in range(1, 6):
            arrived.clear()
            self.preview.seek(frame)
            self.drag(self.anchors()[0], (200 + frame, 100))
            self.preview.overlay.ForceUpdateFrame()
            self.preview.seek(frame)
            self.assertTrue(arrived.wait(_PATIENCE))
        self.assertEqual(len(set(threads)), 1)
        self.assertNotEqual(threads[0], thread.get_ident())

    def test_no_event_arrives_after_closing(self):
        self.draw_square()
        self.preview.seek(3)
        self.preview.close()
        count = len(self.preview.events.events)
        self.preview.close()
        self.assertEqual(len(self.preview.events.events), count)


class GestureTest(PreviewTest):

    def test_a_click_without_movement_changes_nothing(self):
        self.draw_square()
        before = self.preview.overlay.GetCurrentDevSetting()
        for position in SQUARE + ((300, 200), (203, 97)):
            self.preview.click(position)
            self.assertEqual(self.preview.overlay.GetCurrentDevSetting(), before)

    def test_keyframes_are_made_by_editing_at_other_times(self):
        self.draw_square()
        for frame in (10, 49, 20):
            self.preview.seek(frame)
            self.drag(self.anchors()[0], (200 - frame, 100))
        self.assertEqual(self.preview.keyframes(), [0, 10, 20, 49])
        self.preview.seek(15)
        self.assertEqual(self.anchors()[0], (185, 100))

    def test_zoom_keeps_the_outline_on_the_picture(self):
        self.draw_square()
        before = self.preview.overlay.GetCurrentPoints()
        self.preview.zoom(3, (0.5, 0.5))
        self.assertEqual(self.preview.to_pixels(0.5, 0.5), (320, 180))
        self.assertEqual(self.anchors()[0], (320 - 3 * 120, 180 - 3 * 80))
        self.preview.place((640, 360))
        self.assertEqual(self.preview.overlay.GetCurrentPoints(), before)


class UndoTest(PreviewTest):

    def test_every_gesture_is_one_step(self):
        states = [self.preview.overlay.GetCurrentDevSetting()]

        def note():
            states.append(self.preview.overlay.GetCurrentDevSetting())
        for position in SQUARE:
            self.preview.click(position)
            note()
        self.preview.click(SQUARE[0])
        note()
        self.drag((300, 100), (310, 80))
        note()
        self.preview.seek(20)
        self.drag((400, 300), (420, 320))
        note()
        for state in reversed(states[:-1]):
            self.assertTrue(self.preview.undo())
            self.assertEqual(self.preview.overlay.GetCurrentDevSetting(), state)
        self.assertFalse(self.preview.undo())
        for state in states[1:]:
            self.assertTrue(self.preview.redo())
            self.assertEqual(self.preview.overlay.GetCurrentDevSetting(), state)
        self.assertFalse(self.preview.redo())

    def test_the_outline_is_on_screen_again_after_undo(self):
        self.draw_square()
        self.preview.seek(10)
        self.drag((200, 100), (150, 50))
        self.assertEqual(self.anchors()[0], (150, 50))
        self.preview.undo()
        self.assertEqual(self.anchors()[0], (200, 100))
        self.assertEqual(self.preview.keyframes(), [0])
        self.preview.redo()
        self.assertEqual(self.anchors()[0], (150, 50))

    def test_a_new_gesture_forgets_what_was_taken_back(self):
        self.draw_square()
        self.drag((200, 100), (150, 50))
        self.preview.undo()
        self.drag((200, 100), (180, 90))
        self.assertFalse(self.preview.redo())
        self.assertEqual(self.anchors()[0], (180, 90))

    def test_a_click_makes_no_step(self):
        self.draw_square()
        self.preview.click((200, 100))
        self.preview.undo()
        self.assertFalse(self.preview.overlay.IsMask(), 'the step taken back is the closing')

    def test_an_outline_closed_again_after_undo_is_a_new_mask(self):
        self.draw_square()
        self.preview.undo()
        self.preview.click(SQUARE[0])
        self.assertEqual(self.events()[-1], ECB_MASK_CREATE)
        self.assertTrue(self.preview.overlay.IsMask())

    def test_the_history_has_an_end(self):
        self.preview.history._limit = 3
        for position in SQUARE:
            self.preview.click(position)
        self.assertEqual([self.preview.undo() for _ in range(4)], [True, True, True, False])
        self.assertEqual(self.anchors(), [SQUARE[0]])


if __name__ == '__main__':
    unittest.main()
