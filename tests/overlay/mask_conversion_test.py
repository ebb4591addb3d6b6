# SPDX-License-Identifier: MIT
"""Turning the outline into a mask and into run lists."""
from __future__ import absolute_import

import unittest

from fixture import E_FAIL, EditorCase, bytes_of, code


class Conversion(EditorCase):

    def _load(self, count):
        """An open outline of this many normalised points."""
        points = [(0 if at % 3 == 0 else 1, 0.125 * at, 0.0625 * at * at, 0, 0, 0) for at in range(count)]
        self.editor.SetDevSetting({0: False, 2: bytes_of(points)})

    def test_eight_points_are_too_few(self):
        self._load(8)
        for refresh_all in (False, True):
            self.assertEqual(code(self.editor.Convert2Mask(refresh_all)), E_FAIL)
        self.assertFalse(self.editor.IsMask())
        self.assertEqual(self.editor.GetKeyFrameDurationList(), [])
        self.assertIsNone(self.editor.Convert2SelectionLineUS((10, 10)))

    def test_nine_points_are_enough(self):
        self._load(9)
        self.assertEqual(self.editor.Convert2Mask(False), 0)
        self.assertTrue(self.editor.IsMask())

    def test_refreshing_without_keyframes_caches_the_outline(self):
        self.editor.PrepareKeyframe(7)
        self._load(9)
        self.assertEqual(self.editor.Convert2Mask(True), 0)
        self.assertEqual(self.editor.GetKeyFrameDurationList(), [7])

    def test_refreshing_overwrites_every_keyframe(self):
        for time in (0, 50):
            self.editor.PrepareKeyframe(time)
            if time == 0:
                self.editor.draw(self.TRIANGLE)
            self.editor.MoveAllPoints(20, 0)
        self.assertEqual(self.editor.Convert2Mask(True), 1)
        setting = self.editor.GetCurrentDevSetting()
        self.assertEqual([keyframe[5] for keyframe in setting[3]], [self.editor.GetCurrentPoints()] * 2)
        self.assertEqual([keyframe[4] for keyframe in setting[3]], [0, 50])

    def test_refreshing_more_than_caches_hold(self):
        long_ones = [bytes_of([(0 if at % 3 == 0 else 1, 0.001 * at, 0.3 + 0.0001 * at, 1, 1, 0) for at in range(shift, 3000 + shift)])
                     for shift in (0, 3, 6)]
        # Of every length, with and without room for the copy.
        points = [long_ones[0], long_ones[1][:24 * 9], long_ones[2] + long_ones[0], b''] + long_ones * 40
        self.editor.SetDevSetting({0: True, 3: [{4: 40 * at, 5: each} for at, each in enumerate(points)]})
        self.editor.PrepareKeyframe(40 * 5)
        expected = self.editor.GetCurrentPoints()
        self.assertEqual(len(expected), 24 * 3000)
        self.assertEqual(self.editor.Convert2Mask(True), 1)
        saved = self.editor.GetCurrentDevSetting()[3]
        self.assertEqual([keyframe[4] for keyframe in saved], [40 * at for at in range(len(points))])
        self.assertEqual([at for at, keyframe in enumerate(saved) if keyframe[5] != expected], [])
        # The pixels' points went with them.
        self.assertEqual(self.editor.surface(40 * 3), self.editor.surface(40 * 5))

    def test_it_marks_the_whole_display_dirty(self):
        self.editor.draw(self.TRIANGLE)
        self.editor.ResetDirtyFlag()
        self.editor.Convert2Mask(False)
        self.assertTrue(self.editor.IsDirty())
        self.assertEqual(self.editor.GetDirtyRect(), (0, 0, 400, 300))


class Runs(EditorCase):

    def test_a_mask_of_one_pixel_has_at_most_one_run(self):
        for outline in (self.SQUARE, [(0, 0), (399, 0), (399, 299), (0, 299)],
                        [(-90, -90), (800, -90), (800, 800), (-90, 800)]):
            self.editor.DeleteAllPoints()
            self.editor.draw(outline)
            runs = self.editor.Convert2SelectionLineUS((1, 1))
            self.assertIn(runs, ([], [(0.0, 0.0, 1.0)]))
        self.assertEqual(runs, [(0.0, 0.0, 1.0)])

    def test_runs_are_fractions_of_the_mask(self):
        self.editor.draw(self.SQUARE)
        # 100 to 200 of 400 and of 300 pixels: columns 10 to 19 of 40, rows 10 to 19 of 30
        runs = self.editor.Convert2SelectionLineUS((40, 30))
        self.assertEqual([(x, length) for x, _, length in runs], [(0.25, 0.25)] * 10)
        self.assertEqual([int(round(30 * y)) for _, y, _ in runs], list(range(10, 20)))

    def test_no_run_starts_at_one(self):
        self.editor.draw([(200, 20), (900, 20), (900, 280), (200, 280)])
        runs = self.editor.Convert2SelectionLineUS((64, 48))
        self.assertTrue(runs)
        for x, y, length in runs:
            self.assertTrue(0 <= x < 1 and 0 <= y < 1 and 0 < length and x + length <= 1)

    def test_rows_come_top_to_bottom_and_runs_left_to_right(self):
        self.editor.draw([(50, 250), (125, 50), (200, 250), (275, 50), (350, 250), (200, 280)])
        runs = self.editor.Convert2SelectionLineUS((400, 300))
        self.assertEqual(sorted(runs, key=lambda run: (run[1], run[0])), runs)
        self.assertGreater(len(runs), len(set(run[1] for run in runs)))

    def test_the_object_is_left_alone(self):
        self.editor.draw(self.SQUARE)
        self.editor.ResetDirtyFlag()
        before = self.editor.GetCurrentDevSetting()
        self.editor.Convert2SelectionLineUS((40, 30))
        self.assertEqual((self.editor.GetCurrentDevSetting(), self.editor.IsDirty(), self.editor.events), (before, False, []))

    def test_no_size_makes_no_runs(self):
        self.editor.draw(self.SQUARE)
        self.assertEqual(self.editor.Convert2SelectionLineUS((0, 0)), [])


if __name__ == "__main__":
    unittest.main()
