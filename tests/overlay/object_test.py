# SPDX-License-Identifier: MIT
"""The object: display and video rectangle, sizes, flags, its end."""
from __future__ import absolute_import

import math
import time
import unittest

import _Orvanel as entries
from fixture import E_FAIL, Editor, EditorCase, code, logged

_SIX_VALUES = """
import _Orvanel as entries
editor = entries.new_Orvanel()
for six in %r:
    entries.Orvanel_SetVideoCoordinate(editor, *six)
entries.delete_Orvanel(editor)
"""


def _coordinate_lines(*calls):
    return [line for line in logged(_SIX_VALUES % (calls,)) if "SetVideoCoordinate" in line or "ResetBuffer" in line]


class VideoCoordinate(EditorCase):

    def test_the_same_six_values_do_nothing(self):
        self.assertEqual(self.editor.SetVideoCoordinate(400, 300, 0, 0, 400, 300), 1)
        self.assertFalse(self.editor.IsDirty())

    def test_the_same_six_values_log_nothing(self):
        six = (400, 300, 1, 2, 40, 30)
        line = ("Orvanel::SetVideoCoordinate DisplaySize=(400,300), Video left/top(DC)=(1,2), "
                "Video width/height(DC)=(40,30)")
        self.assertEqual(_coordinate_lines(six, six),
                         [line, "Orvanel::ResetBuffer() enter", "Orvanel::ResetBuffer() end"])

    def test_six_zeros_are_what_a_new_object_has(self):
        self.assertEqual(_coordinate_lines((0, 0, 0, 0, 0, 0)), [])

    def test_another_video_rectangle_alone_projects_the_points_anew(self):
        self.editor.AddPoint(100, 60)
        before = self.editor.points()
        self.assertEqual(self.editor.SetVideoCoordinate(400, 300, 10, 20, 200, 150), 1)
        self.assertEqual(self.editor.points(), before)
        self.assertTrue(self.editor.IsDirty())
        # the anchor is at (10 + 200 * 0.25, 20 + 150 * 0.2) now, and a press 10 pixels away hovers it
        self.editor.move(70, 60)
        self.assertTrue(self.editor.IsHoverControlPoint())
        self.editor.move(71, 60)
        self.assertFalse(self.editor.IsHoverControlPoint())

    def test_another_video_rectangle_alone_does_not_resize_the_buffer(self):
        lines = _coordinate_lines((400, 300, 0, 0, 40, 30), (400, 300, 0, 0, 80, 60))
        self.assertEqual(len([line for line in lines if "ResetBuffer() enter" in line]), 1)
        self.assertEqual(len([line for line in lines if "SetVideoCoordinate" in line]), 2)

    def test_a_video_size_of_zero_gives_coordinates_that_are_not_finite(self):
        for size in ((0, 300), (400, 0), (0, 0)):
            self.editor.DeleteAllPoints()
            self.editor.SetVideoCoordinate(400, 300, 0, 0, *size)
            self.editor.AddPoint(7, 0)
            self.editor.AddPoint(9, 5)
            for _, x, y, _, _, _ in self.editor.points():
                self.assertEqual(math.isinf(x) or math.isnan(x), size[0] == 0)
                self.assertEqual(math.isinf(y) or math.isnan(y), size[1] == 0)

    def test_the_buffer_has_four_bytes_a_pixel(self):
        self.assertEqual(self.editor.GetBufferLen(), 400 * 4 * 300)


class MarkSizes(EditorCase):

    def test_half_size_rounds_halves_up(self):
        """The nine sizes become 5, 2, 5, 4, 5, 2, 5, 4, 2: seen on the outer mark (9 or 5) of a hovered segment."""
        self.editor.PrepareKeyframe(0)
        self.editor.draw(self.SQUARE)
        self.editor.time = 0
        for scale, outer in ((1.0, 9), (0.5, 5)):
            self.editor.SetSizeScaler(scale)
            self.editor.move(300, 50)
            plain = self._drawn()
            self.editor.move(150, 100)
            self.assertTrue(self.editor.IsHoverPointInLine())
            changed = [at // 4 for at, (a, b) in enumerate(zip(plain, self._drawn())) if a != b]
            columns, rows = [at % 400 for at in changed], [at // 400 for at in changed]
            extents = (max(columns) - min(columns) + 1, max(rows) - min(rows) + 1)
            # An edge may take one more pixel on either side for its soft border.
            for extent in extents:
                self.assertLessEqual(abs(extent - outer), 2)
            self.editor.last_extents = getattr(self.editor, "last_extents", []) + [extents]
        self.assertEqual(self.editor.last_extents[0][0] - self.editor.last_extents[1][0], 4)

    def _drawn(self):
        self.editor.ForceUpdateFrame()
        return bytearray(self.editor.surface(0))


class Flags(EditorCase):

    def test_a_new_object(self):
        for name, value in (("IsMask", False), ("IsMouseDown", False), ("GetInverse", False), ("GetHide", False),
                            ("IsVisible", 1), ("IsPreviewMode", 0), ("IsAnyPointSelected", False),
                            ("IsHoverControlPoint", False), ("IsHoverPointInLine", False), ("IsBCPSelected", False),
                            ("IsNeedHandleMouseEvent", True), ("GetCurrentPoints", None), ("GetDirtyRect", (0, 0, 0, 0)),
                            ("GetCentroidUS", None)):
            self.assertEqual(getattr(self.editor, name)(), value, name)

    def test_flags_keep_what_they_are_given(self):
        for name in ("Inverse", "Hide"):
            getattr(self.editor, "Set" + name)(True)
            self.assertIs(getattr(self.editor, "Get" + name)(), True)
            getattr(self.editor, "Set" + name)(False)
            self.assertIs(getattr(self.editor, "Get" + name)(), False)
        self.editor.SetPreviewMode(True)
        self.assertEqual(self.editor.IsPreviewMode(), 1)
        self.editor.Hide()
        self.assertEqual(self.editor.IsVisible(), 0)
        self.editor.Show()
        self.assertEqual(self.editor.IsVisible(), 1)

    def test_video_information_marks_the_overlay_dirty(self):
        self.assertEqual(self.editor.SetVideoInfo(1, 2, 3, 2 ** 40), 0)
        self.assertTrue(self.editor.IsDirty())
        self.assertEqual(self.editor.ResetDirtyFlag(), 0)
        self.assertFalse(self.editor.IsDirty())


class End(EditorCase):

    def test_uninitialize_and_then_the_destructor_return(self):
        self.assertEqual(self.editor.Uninitialize(), 0)
        self.editor.destroy()

    def test_uninitialize_twice_returns(self):
        self.assertEqual(self.editor.Uninitialize(), 0)
        self.assertEqual(self.editor.Uninitialize(), 0)

    def test_uninitialize_wakes_the_worker_for_one_last_point_update(self):
        """A worker that is on its way back from a delivery sees the end first and delivers nothing more: hence the tries."""
        for _ in range(50):
            editor = Editor()
            self.addCleanup(editor.destroy)
            editor.SetVideoCoordinate(400, 300, 0, 0, 400, 300)
            editor.SetVideoInfo(0, 0, 0, 1000)
            editor.PrepareKeyframe(0)
            editor.draw(self.TRIANGLE)
            editor.PrepareKeyframe(0)
            self.assertTrue(editor.await_reports(1))
            time.sleep(0.005)
            self.assertEqual(editor.Uninitialize(), 0)
            self.assertIn(editor.reports, (1, 2))
            if editor.reports == 2:
                return
        self.fail("no last point update in 50 tries")

    def test_destroying_an_object_that_the_worker_reports_for(self):
        """The destructor waits for the worker, which delivers to the registered callable once more."""
        for attempt in range(100):
            reports = []
            handle = entries.new_Orvanel()
            entries.Orvanel_SetCallbackFunc(handle, reports.append)
            record = entries.Orvanel_GetKeyFrameMaskInfo(handle, 0)
            record.thisown = True
            if attempt % 2:
                entries.Orvanel_DrawExistKeyFrame(handle, record)
            if attempt % 3:
                time.sleep(0.0005)
            entries.delete_Orvanel(handle)
            self.assertTrue(set(reports) <= set([entries.ECB_POINT_UPDATE]))
            self.assertLessEqual(len(reports), 2)

    def test_without_a_canvas_operations_that_draw_fail(self):
        self.editor.Uninitialize()
        self.assertEqual(code(self.editor.ResetBuffer()), E_FAIL)
        self.assertEqual(code(self.editor.Interactive(0, 1, 1)), E_FAIL)
        self.assertIsNone(self.editor.PrepareKeyframe(0))
        self.editor.ReDraw()

    def test_uninitialize_destroys_the_keyframes(self):
        self.editor.PrepareKeyframe(0)
        self.editor.draw(self.TRIANGLE)
        self.editor.Uninitialize()
        self.assertEqual(self.editor.GetKeyFrameDurationList(), [])


if __name__ == "__main__":
    unittest.main()
