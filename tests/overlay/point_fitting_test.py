# SPDX-License-Identifier: MIT
"""Fitting the outline to a mask that the caller supplies, as a host's Python code does it."""
from __future__ import absolute_import

import ctypes
import math
import os
import threading
import unittest

from fixture import ADD, EditorCase, bytes_of, logged

WIDTH, HEIGHT = 400, 300
# The generator that the fit draws from.
RUN_TIME = ctypes.CDLL('msvcrt' if os.name == 'nt' else None)


def rows(spans, width=WIDTH, height=HEIGHT):
    """Runs of (row, first column, last column)."""
    return [(float(first) / width, float(row) / height, float(last - first + 1) / width) for row, first, last in spans]


def rectangle(left, top, right, bottom):
    return rows((row, left, right) for row in range(top, bottom + 1))


def disk(x, y, radius):
    halves = [(row, math.sqrt(radius ** 2 - (row - y) ** 2)) for row in range(y - radius, y + radius + 1)]
    return rows((row, int(math.ceil(x - half)), int(x + half)) for row, half in halves)


def pixels(runs, width=WIDTH, height=HEIGHT):
    covered = set()
    for x, y, length in runs:
        column, row = int(x * width + 0.5), int(y * height + 0.5)
        covered.update((column + offset, row) for offset in range(int(length * width + 0.5)))
    return covered


def border(inside):
    """Pixels that are inside and touch the outside, or the other way round."""
    def crosses(x, y):
        return [(x, y), (x + 1, y), (x - 1, y), (x, y + 1), (x, y - 1)]
    near = set(neighbour for pixel in inside for neighbour in crosses(*pixel))
    return set(pixel for pixel in near if not all(neighbour in inside for neighbour in crosses(*pixel)))


class Fitting(EditorCase):

    def setUp(self):
        EditorCase.setUp(self)
        RUN_TIME.srand(1)

    def fit(self, runs, size=(WIDTH, HEIGHT)):
        return self.editor.AdjustPoints((0.0, 0.0), runs, size)

    def overlap(self, runs):
        """Intersection over union of a mask and the outline's."""
        wanted, have = pixels(runs), pixels(self.editor.Convert2SelectionLineUS((WIDTH, HEIGHT)))
        return len(wanted & have) / float(len(wanted | have))

    def assertLayout(self):
        """Anchor, control, control, over and over, with the twins where the pixels are."""
        points = self.editor.points()
        self.assertEqual([point[0] for point in points], [0, 1, 1] * (len(points) // 3))
        self.assertGreaterEqual(len(points), 9)
        before = self.editor.places()
        # Twins decide: placing the video anew computes every pixel from them.
        self.editor.SetVideoCoordinate(400, 300, 0, 0, 400, 301)
        self.editor.SetVideoCoordinate(400, 300, 0, 0, 400, 300)
        self.assertEqual(self.editor.places(), before)
        self.assertEqual(self.editor.Convert2Mask(False), 0)


class Results(Fitting):

    def test_it_returns_none(self):
        self.assertIsNone(self.fit([]))
        self.editor.draw(self.TRIANGLE)
        self.assertIsNone(self.fit(disk(200, 150, 60)))

    def test_an_empty_run_list_leaves_the_outline_but_converts_it(self):
        self.editor.draw(self.TRIANGLE, closed=False)
        self.editor.press(*self.TRIANGLE[0])
        self.editor.release()
        before = self.editor.GetCurrentPoints()
        self.editor.DestroyAllKeyFrameMaskInfo()
        self.editor.ResetDirtyFlag()
        self.fit([])
        self.assertEqual(self.editor.GetCurrentPoints(), before)
        self.assertTrue(self.editor.IsDirty() and self.editor.IsMask())
        self.assertEqual(len(self.editor.GetKeyFrameDurationList()), 1)

    def test_anchors_on_the_border_stay_and_skip_the_bounding_box(self):
        outline = [(100, 100), (125, 100), (150, 100), (150, 125), (150, 150), (125, 150), (100, 150), (100, 125)]
        self.editor.draw(outline)
        self.fit(rectangle(100, 100, 150, 150))
        self.assertEqual(self.editor.anchors(), outline)
        self.assertEqual(self.editor.events, [])

    def test_long_gaps_get_an_anchor_and_short_ones_none(self):
        # The limit is 0.14 x 300 = 42 pixels.
        self.editor.draw([(100, 100), (200, 100), (200, 140), (100, 140)])
        self.fit(rectangle(100, 100, 200, 140))
        anchors = self.editor.anchors()
        self.assertEqual([anchors[at] for at in (0, 2, 3, 5)], [(100, 100), (200, 100), (200, 140), (100, 140)])
        for anchor, middle in ((anchors[1], (150, 100)), (anchors[4], (150, 140))):
            self.assertLess(math.hypot(anchor[0] - middle[0], anchor[1] - middle[1]), 2)

    def test_a_run_that_ends_with_the_mask_is_not_drawn(self):
        self.editor.draw(self.SQUARE)
        self.fit(rectangle(300, 280, 399, 299))
        inside = pixels(rectangle(300, 280, 399, 298))
        for anchor in self.editor.anchors():
            self.assertIn(anchor, border(inside))
        # The last row holds what touches the row above, and nothing of its own.
        self.assertTrue(all(y <= 299 for _, y in self.editor.anchors()))

    def test_every_anchor_ends_on_the_border(self):
        runs = disk(200, 150, 90)
        band = border(pixels(runs))
        for seed in range(5):
            RUN_TIME.srand(seed)
            self.editor.DeleteAllPoints()
            self.editor.draw([(120, 90), (200, 30), (330, 80), (300, 200), (180, 280), (90, 180)])
            self.fit(runs)
            for anchor in self.editor.anchors():
                self.assertIn(anchor, band)
            self.assertLayout()
            self.assertGreater(self.overlap(runs), 0.9)

    def test_a_host_that_seeds_the_run_time_gets_the_same_fit_again(self):
        fits = []
        for seed in (7, 7, 8):
            RUN_TIME.srand(seed)
            self.editor.DeleteAllPoints()
            self.editor.draw([(120, 90), (330, 80), (300, 200), (90, 180)])
            self.fit(disk(200, 150, 90))
            fits.append(self.editor.GetCurrentPoints())
        self.assertEqual(fits[0], fits[1])
        self.assertNotEqual(fits[0], fits[2])

    def test_its_own_runs_are_what_it_takes(self):
        self.editor.draw([(100, 60), (300, 80), (320, 240), (180, 200), (80, 250)])
        runs = self.editor.Convert2SelectionLineUS((WIDTH, HEIGHT))
        self.editor.DeleteAllPoints()
        self.editor.draw([(60, 40), (340, 60), (350, 260), (60, 270)])
        before = self.overlap(runs)
        self.fit(runs)
        self.assertLayout()
        self.assertGreater(self.overlap(runs), max(before, 0.85))

    def test_extreme_points_are_announced_after_the_fit(self):
        seen = []

        def look(event):
            seen.append((event, len(self.editor.points())))
        self.editor.draw([(120, 90), (330, 80), (300, 200), (90, 180)])
        self.editor.SetCallbackFunc(look)
        self.fit(disk(200, 150, 90))
        self.assertTrue(4 <= len(seen) <= 8)
        self.assertEqual(seen, [(ADD, len(self.editor.points()))] * len(seen))

    def test_masks_with_holes_and_islands(self):
        hole = [run for run in disk(200, 150, 90)]
        cut = pixels(disk(200, 150, 40))
        holed = [(x, y, length) for x, y, length in hole if (200, int(y * HEIGHT + 0.5)) not in cut]
        for row in range(110, 191):
            inner = [x for x, y in cut if y == row]
            outer = [x for x, y in pixels(hole) if y == row]
            holed += rows([(row, min(outer), min(inner) - 1), (row, max(inner) + 1, max(outer))])
        for runs in (holed, disk(120, 150, 50) + disk(280, 150, 60)):
            self.editor.DeleteAllPoints()
            self.editor.draw([(50, 100), (200, 40), (350, 90), (340, 220), (200, 260), (60, 210)])
            self.fit(runs)
            self.assertLayout()

    def test_the_mask_may_be_of_another_size_than_the_display(self):
        for width, height, least in ((40, 30, 0.7), (1920, 1080, 0.9), (3840, 100, 0.85)):  # a pixel of the first is ten
            runs = [(0.25, float(row) / height, 0.5) for row in range(height // 4, height * 3 // 4)]
            self.editor.DeleteAllPoints()
            self.editor.draw([(120, 60), (330, 80), (300, 250), (90, 180)])
            self.fit(runs, (width, height))
            self.assertLayout()
            got = pixels(self.editor.Convert2SelectionLineUS((WIDTH, HEIGHT)))
            wanted = pixels(rectangle(100, 75, 299, 224))
            self.assertGreater(len(got & wanted) / float(len(got | wanted)), least, (width, height))

    def test_an_outline_that_is_still_open_is_closed(self):
        self.editor.draw([(120, 90), (330, 80), (300, 200), (90, 180)], closed=False)
        self.fit(disk(200, 150, 90))
        self.assertLayout()
        self.assertTrue(self.editor.IsMask())


class WrongArguments(Fitting):
    """Nothing is fitted, nothing is lost, and no error of the interpreter turns up at a later line."""

    class Awkward(object):
        def __float__(self):
            raise RuntimeError("no number")

    RUNS = [(0.25, 0.25, 0.5)]
    HUGE = (0, -1, 2 ** 31 - 1, -2 ** 31, 2 ** 31, 10 ** 30, 65536, 46341)

    def setUp(self):
        Fitting.setUp(self)
        self.editor.draw([(120, 90), (330, 80), (300, 200), (90, 180)])
        self.before = self.editor.GetCurrentPoints()

    def assertUnfitted(self, *arguments):
        self.assertIsNone(self.editor.AdjustPoints(*arguments))
        # An error left pending would be raised here.
        [].append(len(str(1)))
        int('12')
        self.assertEqual(self.editor.GetCurrentPoints(), self.before, arguments)

    def test_runs_that_are_no_list(self):
        for runs in (None, 7, 'runs', tuple(self.RUNS), {}, iter(self.RUNS), self.Awkward()):
            self.assertUnfitted((0.0, 0.0), runs, (40, 30))

    def test_items_that_are_no_runs(self):
        items = [None, 7, (), (1, 2), (1, 2, 3, 4), ('a', 'b', 'c'), [0.25, 0.25, 0.5], (self.Awkward(), 0.5, 0.5), (1j, 0, 0)]
        for item in items:
            self.assertUnfitted((0.0, 0.0), [item], (40, 30))
        self.assertUnfitted((0.0, 0.0), items, (40, 30))
        # Among good ones they are passed over.
        self.editor.AdjustPoints((0.0, 0.0), items + self.RUNS, (40, 30))
        self.assertNotEqual(self.editor.GetCurrentPoints(), self.before)

    def test_sizes_that_are_no_pair(self):
        for size in (None, 7, (), (40,), (40, 30, 20), ('40', '30'), (40.5, 30), [40, 30], 'ii', self.Awkward()):
            self.assertUnfitted((0.0, 0.0), self.RUNS, size)

    def test_sizes_that_no_mask_has(self):
        for width in self.HUGE:
            for height in self.HUGE:
                if (width, height) not in ((65536, 46341), (46341, 65536), (46341, 46341)) and width * height < 2 ** 31:
                    self.assertUnfitted((0.0, 0.0), self.RUNS, (width, height))
        self.assertUnfitted((0.0, 0.0), self.RUNS, (46341, 46341))
        self.assertUnfitted((0.0, 0.0), self.RUNS, (2 ** 31 - 1, 2 ** 31 - 1))

    def test_the_first_pair_does_not_matter(self):
        for pair in (None, 7, (), (1,), ('a', 'b'), (float('nan'), 1e300), self.Awkward()):
            self.assertUnfitted(pair, [], (40, 30))
            RUN_TIME.srand(3)
            self.editor.SetDevSetting({0: False, 2: self.before})
            self.editor.AdjustPoints(pair, self.RUNS, (40, 30))
            fitted = self.editor.GetCurrentPoints()
            self.editor.SetDevSetting({0: False, 2: self.before})
            RUN_TIME.srand(3)
            self.editor.AdjustPoints((0.0, 0.0), self.RUNS, (40, 30))
            self.assertEqual(self.editor.GetCurrentPoints(), fitted)
            self.editor.SetDevSetting({0: False, 2: self.before})

    def test_runs_that_are_no_numbers(self):
        wrong = [float('nan'), float('inf'), -float('inf'), 1e38, -1e38, 1e300]
        runs = []
        for value in wrong:
            runs += [(value, 0.5, 0.5), (0.5, value, 0.5), (0.5, 0.5, value)]
        self.assertUnfitted((0.0, 0.0), runs, (40, 30))

    def test_one_row_and_one_column(self):
        for size in ((1, 1), (2, 1), (1, 2), (1000, 1), (1, 1000)):
            self.editor.AdjustPoints((0.0, 0.0), [(0.0, 0.0, 0.5), (0.0, 0.25, 1.0)], size)
            self.assertLayout()

    def test_an_item_whose_conversion_calls_back(self):
        editor = self.editor

        class Meddler(object):
            def __init__(self, runs):
                self.runs = runs

            def __float__(self):
                del self.runs[:]
                editor.DeleteAllPoints()
                return 0.25
        runs = []
        runs.extend([(Meddler(runs), 0.25, 0.5)] * 100)
        editor.AdjustPoints((0.0, 0.0), runs, (40, 30))
        self.assertIsNone(editor.GetCurrentPoints())

    def test_outlines_of_any_shape(self):
        nan, inf = float('nan'), float('inf')
        for points in ([], [(0, 0.5, 0.5, 0, 0, 0)], [(1, 0.5, 0.5, 0, 0, 0)] * 12, [(0, 0.5, 0.5, 0, 0, 0)] * 12,
                       [(7, 0.1, 0.2, 9, 9, 9)] * 12, [(0, nan, inf, 1, 1, 1), (1, nan, nan, 0, 0, 0), (1, 0, 0, 0, 0, 0)] * 4,
                       [(1, 0, 0, 0, 0, 0), (0, 1e30, -1e30, 0, 1, 0)] * 7):
            self.editor.SetDevSetting({0: False, 2: bytes_of(points)})
            self.fit(disk(200, 150, 90))
            self.editor.ReDraw()
            self.assertTrue(self.editor.points() or not points)


class Threads(Fitting):

    def test_nobody_sees_half_a_fit_and_nothing_hangs(self):
        """One thread fits, with a callable that calls back; another one moves the mouse, which lets the interpreter run; a
        third looks at the outline."""
        editor, seen = self.editor, []
        editor.PrepareKeyframe(0)
        outlines = ([(120, 90), (330, 80), (300, 200), (90, 180)], [(50, 100), (200, 40), (350, 90), (340, 220), (60, 210)])
        settings = []
        for outline in outlines:
            editor.DeleteAllPoints()
            editor.draw(outline)
            settings.append(editor.GetCurrentDevSetting())
        running = [True]

        def look(event=None):
            types = [point[0] for point in editor.points()]
            if types and types != [0, 1, 1] * (len(types) // 3):
                seen.append(types)

        def move():
            while running[0]:
                for x in range(0, WIDTH, 7):
                    editor.move(x, 150)

        def watch():
            while running[0]:
                look()
                editor.PrepareKeyframe(0)
        editor.SetCallbackFunc(look)
        threads = [threading.Thread(target=body) for body in (move, watch)]
        for thread in threads:
            thread.start()
        try:
            for number in range(40):
                editor.SetDevSetting(settings[number % 2])
                editor.PrepareKeyframe(0)
                self.fit(disk(200, 150, 90))
        finally:
            running[0] = False
            for thread in threads:
                thread.join(60)
        self.assertFalse([thread for thread in threads if thread.isAlive()])
        self.assertEqual(seen, [])
        self.assertLayout()


class Log(unittest.TestCase):

    SCRIPT = """
import _Orvanel as o
this = o.new_Orvanel()
o.Orvanel_SetVideoCoordinate(this, 400, 300, 0, 0, 400, 300)
for x, y in ((100, 100), (200, 100), (200, 200), (100, 200), (100, 100)):
    o.Orvanel_Interactive(this, o.ECS_MOUSE_DOWN, x, y)
    o.Orvanel_Interactive(this, o.ECS_MOUSE_UP)
o.Orvanel_AdjustPoints(this, (0.0, 0.0), %s, (400, 300))
o.delete_Orvanel(this)
"""

    def of_the_fit(self, runs):
        lines = [line for line in logged(self.SCRIPT % runs) if line]
        return lines[lines.index('Orvanel::AdjustPoints() enter'):lines.index('Orvanel::AdjustPoints() end') + 1]

    CONVERSION = ['Orvanel::Convert2Mask() enter', '[Convert2Mask] MaskDataLen=0(short), BufferSize=(400,300)',
                  'Orvanel::CacheCurrentKeyframe() enter', 'Orvanel::UpdateKeyFrameInCurrent duration=-1',
                  'Orvanel::CacheCurrentKeyframe() end', 'Orvanel::Convert2Mask() end', 'Orvanel::AdjustPoints() end']

    def test_an_empty_list(self):
        self.assertEqual(self.of_the_fit('[]'), ['Orvanel::AdjustPoints() enter'] + self.CONVERSION)

    def test_a_whole_fit(self):
        self.assertEqual(self.of_the_fit('[(0.3, row / 300.0, 0.4) for row in range(120, 180)]'), [
            'Orvanel::AdjustPoints() enter',
            'Orvanel::FindTargetPointsFromMask (199, 149) - (199, 149) = (0, 0)',
            'Orvanel::FindTargetPointsFromMask_IntersecRemoval() enter',
            'Orvanel::FindTargetPointsFromMask_IntersecRemoval Ordered',
            'Orvanel::FindTargetPointsFromMask_IntersecRemoval() end',
            'Orvanel::FindTargetPointsFromMask 4 points not on border'] + self.CONVERSION)

    def test_anchors_on_the_border(self):
        self.assertEqual(self.of_the_fit('[(0.25, row / 300.0, 101 / 400.0) for row in range(100, 201)]'), [
            'Orvanel::AdjustPoints() enter',
            'Orvanel::FindTargetPointsFromMask (150, 150) - (150, 150) = (0, 0)',
            'Orvanel::FindTargetPointsFromMask skip bounding box finding'] + self.CONVERSION)


if __name__ == "__main__":
    unittest.main()
