# SPDX-License-Identifier: MIT
"""Fitting an outline to a colour of the picture, and holding a keyframe."""
import json
import unittest

from orvanel_host import colorkey, editfile, hostkit, outline
from orvanel_host.errors import EditError
from orvanel_host.preview import Preview
from orvanel_host.replay import Replay

from support import HostTest, clock_of, simple_edit, write_clip

WIDTH, HEIGHT = 64, 48


def picture_with(*boxes):
    """A dark picture with boxes of (left, top, width, height, (blue, green, red))."""
    image = hostkit.Image(WIDTH, HEIGHT)
    image.fill(30, 40, 20)
    for left, top, width, height, color in boxes:
        box = hostkit.Image(width, height)
        box.fill(*color)
        image.paste(box, left, top)
    return image


def box_pixels(left, top, width, height):
    return set(y * WIDTH + x for y in range(top, top + height) for x in range(left, left + width))


BRIGHT = (200, 210, 220)
AROUND = colorkey.runs_of(box_pixels(10, 8, 40, 30), (WIDTH, HEIGHT))


class ColorKeyTest(unittest.TestCase):

    def test_runs_and_pixels_are_the_same_thing(self):
        pixels = box_pixels(3, 4, 5, 6) | box_pixels(20, 4, 1, 1)
        runs = colorkey.runs_of(pixels, (WIDTH, HEIGHT))
        self.assertEqual(len(runs), 7)
        self.assertEqual(colorkey.pixels_of(runs, (WIDTH, HEIGHT)), pixels)

    def test_it_takes_what_has_the_colour(self):
        picture = picture_with((20, 12, 16, 10, BRIGHT))
        key = colorkey.derive(picture, AROUND, (25, 16), 10, 0)
        self.assertEqual(key, box_pixels(20, 12, 16, 10))

    def test_the_tolerance_counts_each_channel(self):
        near = tuple(value - 20 for value in BRIGHT)
        picture = picture_with((20, 12, 16, 10, BRIGHT), (20, 22, 16, 4, near))
        self.assertEqual(colorkey.derive(picture, AROUND, (25, 16), 19, 0), box_pixels(20, 12, 16, 10))
        self.assertEqual(colorkey.derive(picture, AROUND, (25, 16), 21, 0), box_pixels(20, 12, 16, 14))

    def test_only_near_the_outline(self):
        picture = picture_with((0, 20, WIDTH, 6, BRIGHT))
        drawn = colorkey.runs_of(box_pixels(20, 18, 10, 8), (WIDTH, HEIGHT))
        self.assertEqual(colorkey.derive(picture, drawn, (25, 22), 10, 0), box_pixels(20, 20, 10, 6))
        self.assertEqual(colorkey.derive(picture, drawn, (25, 22), 10, 3), box_pixels(17, 20, 16, 6))
        self.assertEqual(colorkey.derive(picture, drawn, (25, 22), 10, 100), box_pixels(0, 20, WIDTH, 6))

    def test_the_largest_piece_without_its_holes(self):
        picture = picture_with((20, 12, 16, 10, BRIGHT), (24, 15, 4, 3, (0, 0, 0)), (45, 30, 3, 3, BRIGHT))
        self.assertEqual(colorkey.derive(picture, AROUND, (30, 18), 10, 0), box_pixels(20, 12, 16, 10))

    def test_nothing_of_that_colour(self):
        drawn = colorkey.runs_of(box_pixels(2, 2, 5, 5), (WIDTH, HEIGHT))
        self.assertEqual(colorkey.derive(picture_with((20, 12, 16, 10, BRIGHT)), drawn, (25, 16), 10, 0), set())

    def test_enlargement_is_limited(self):
        _, times = colorkey.enlarged(picture_with())
        self.assertEqual(times, 4)
        wide, times = colorkey.enlarged(hostkit.Image(3000, 16))
        self.assertEqual((times, wide.width()), (1, 3000))

    def test_overlap(self):
        self.assertEqual(colorkey.overlap(set([1, 2, 3]), set([2, 3, 4])), 0.5)
        self.assertEqual(colorkey.overlap(set(), set()), 1)


class OnePicture(object):
    """What ClipPictures is to a clip: the same picture at every frame."""

    def __init__(self, picture):
        self._picture = picture

    def frame(self, number):
        return self._picture


ROUGH = [{'do': 'draw', 'points': [[0.25, 0.2], [0.5, 0.18], [0.62, 0.3], [0.6, 0.5], [0.4, 0.52], [0.27, 0.45]]}, {'do': 'close'}]
FIT = {'do': 'fit', 'at': [0.45, 0.35], 'tolerance': 30}


class ReplayTest(HostTest):

    PICTURE = picture_with((20, 12, 16, 10, BRIGHT))

    def replay(self, *gestures, **options):
        document = simple_edit(gestures=list(gestures))
        self.preview = Preview(clock_of(50))
        self.addCleanup(self.preview.close)
        replay = Replay(editfile.parse(json.dumps(document), 'test.json'), self.preview,
                        OnePicture(options.get('picture', self.PICTURE)))
        replay.run()
        return replay

    def assertMisses(self, message, *gestures, **options):
        with self.assertRaises(EditError) as caught:
            self.replay(*gestures, **options)
        self.assertEqual(str(caught.exception), "edit 'test.json': " + message)


class FitTest(ReplayTest):

    def test_the_outline_goes_to_the_colours_border(self):
        fit = self.replay(*ROUGH + [FIT]).fits[0]
        self.assertEqual((fit.frame, fit.size), (0, (256, 192)))
        self.assertGreater(fit.after, fit.before)
        self.assertGreater(fit.after, 0.93)
        # Columns 20 to 36 of 64, rows 12 to 22 of 48; the enlargement blurs a little.
        for anchor in outline.anchors(self.preview.points()):
            self.assertTrue(0.29 < anchor.x < 0.59 and 0.23 < anchor.y < 0.48, anchor)

    def test_the_same_seed_replays_the_same(self):
        points = []
        for seed in (4, 4, 5):
            self.replay(*ROUGH + [dict(FIT, seed=seed)])
            points.append(self.preview.points())
        self.assertEqual(points[0], points[1])
        self.assertNotEqual(points[0], points[2])

    def test_a_zoom_does_not_move_the_colour(self):
        zoomed = self.replay(*ROUGH + [{'do': 'zoom', 'factor': 2, 'center': [0.45, 0.35]}, FIT]).fits[0]
        plain = self.replay(*ROUGH + [FIT]).fits[0]
        self.assertEqual(zoomed.key, plain.key)

    def test_it_is_one_step_to_undo(self):
        self.replay(*ROUGH)
        before = self.preview.points()
        self.replay(*ROUGH + [FIT, {'do': 'undo'}])
        self.assertEqual([point[:3] for point in self.preview.points()], [point[:3] for point in before])

    def test_what_it_says_when_it_misses(self):
        self.assertMisses('gestures[0] (fit): an outline has to be closed before it can be fitted', FIT)
        self.assertMisses('gestures[2] (fit): nothing near the outline has that colour', *ROUGH + [dict(FIT, at=[0.9, 0.9])],
                          picture=picture_with((50, 38, 14, 10, BRIGHT)))
        self.assertMisses('gestures[2] (fit): there is no picture of frame 0 to take a colour from', *ROUGH + [FIT], picture=None)

    def test_three_cells_of_the_contact_sheet(self):
        fit = self.replay(*ROUGH + [FIT]).fits[0]
        sheet = hostkit.ContactSheet(3, 80, 60)
        colorkey.add_to_sheet(sheet, fit)
        self.assertEqual(sheet.count(), 3)

    def test_frames_of_a_clip(self):
        write_clip(self.path('clip.mp4'), 5)
        pictures = colorkey.ClipPictures(self.path('clip.mp4'))
        shades = [pictures.frame(number).pixel(150, 90) & 255 for number in range(5)]
        self.assertEqual(shades, sorted(shades))
        self.assertGreater(shades[4], shades[0])
        self.assertIsNone(pictures.frame(5))


class HoldTest(ReplayTest):

    def test_a_keyframe_stands_at_two_times(self):
        self.replay(*ROUGH + [{'do': 'hold', 'frame': 20}])
        self.assertEqual(self.preview.keyframes(), [0, 20])
        setting = self.preview.overlay.GetCurrentDevSetting()
        self.assertEqual(setting[3][0][5], setting[3][1][5])

    def test_it_replaces_what_stands_there(self):
        move = {'do': 'nudge', 'by': [0.1, 0.1]}
        self.replay(*ROUGH + [{'do': 'seek', 'frame': 20}, move, {'do': 'seek', 'frame': 0}, {'do': 'hold', 'frame': 20}])
        setting = self.preview.overlay.GetCurrentDevSetting()
        self.assertEqual(self.preview.keyframes(), [0, 20])
        self.assertEqual(setting[3][0][5], setting[3][1][5])

    def test_to_its_own_frame_nothing_changes(self):
        self.replay(*ROUGH + [{'do': 'hold', 'frame': 0}])
        self.assertEqual(self.preview.keyframes(), [0])

    def test_what_it_says_when_a_hold_misses(self):
        self.assertMisses('gestures[0] (hold): frame 0 is not a keyframe', {'do': 'hold', 'frame': 3})
        self.assertMisses("gestures[2] (hold): frame 50 lies beyond the clip's last frame 49", *ROUGH + [{'do': 'hold', 'frame': 50}])


if __name__ == '__main__':
    unittest.main()
