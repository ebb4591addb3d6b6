# SPDX-License-Identifier: MIT
"""The main job, whole: the launch clip with its edit, and small clips of awkward shapes."""
import collections
import os
import re
import unittest

from orvanel_host import hostkit, job, outline, selection
from orvanel_host.orvanel import Orvanel

from support import (DEFAULT_CLIP, HostTest, clock_of, have_ffprobe, probe, read_grey_png, simple_edit, write_clip)


class JobTest(HostTest):

    def selection(self, out):
        with open(os.path.join(out, 'selection.json')) as stream:
            return selection.from_json(stream.read())

    def assertMasksAreTheRuns(self, out, clock, size):
        """Replays the saved selection through the module and compares every pixel of every mask picture."""
        overlay = Orvanel()
        overlay.SetVideoInfo(0, clock.end(), 0, clock.end())
        overlay.SetVideoCoordinate(size[0], size[1], 0, 0, size[0], size[1])
        setting = self.selection(out)
        overlay.SetDevSetting(setting)
        self.assertEqual(sorted(os.listdir(os.path.join(out, 'masks'))),
                         ['%04d.png' % number for number in range(clock.frameCount())])
        covered = 0
        for number in range(clock.frameCount()):
            overlay.PrepareKeyframe(clock.startOf(number))
            width, height, rows = read_grey_png(os.path.join(out, 'masks', '%04d.png' % number))
            # The video's size: 4:2:0 has none that is odd, so the last column and row stand there twice.
            self.assertEqual((width, height), tuple(side + side % 2 for side in size))
            expected = [bytearray(size[0]) for _ in range(size[1])]
            for x, y, length in overlay.Convert2SelectionLineUS(size):
                column, line, count = (int(round(value * extent)) for value, extent in
                                       ((x, size[0]), (y, size[1]), (length, size[0])))
                expected[line][column:column + count] = b'\xff' * count
                covered += count
            expected = [row + row[-1:] * (width - size[0]) for row in expected]
            expected += expected[-1:] * (height - size[1])
            for line, row in enumerate(rows):
                if overlay.GetInverse():
                    row = bytes(bytearray(255 - value for value in bytearray(row)))
                self.assertEqual(row, bytes(expected[line]), 'frame %d, row %d' % (number, line))
        self.assertGreater(covered, 0)

    def assertVideo(self, path, clock, size, codec='h264'):
        if not have_ffprobe():
            self.skipTest('ffprobe (package ffmpeg) is not installed')
        stream = probe(path)
        rate = '%d/%d' % (clock.rateNumerator(), clock.rateDenominator())
        self.assertEqual((stream['codec_name'], int(stream['nb_read_frames']), stream['avg_frame_rate']),
                         (codec, clock.frameCount(), rate))
        self.assertEqual((stream['width'], stream['height']), tuple(side + side % 2 for side in size))


@unittest.skipUnless(os.path.exists(DEFAULT_CLIP), 'the launch clip is missing: scripts/setup/clip.sh brings it')
class LaunchTest(JobTest):

    def test_the_launch_is_graded(self):
        os.environ['ORVANEL_DEFAULT_CLIP'] = DEFAULT_CLIP
        code, summary, error = self.run_host()
        self.assertEqual((code, error), (0, ''))
        out, clock = self.path('out'), clock_of(194)
        self.assertEqual(sorted(os.listdir(out)),
                         ['.orvanel-results.json', 'contact-sheet.png', 'graded.mp4', 'masks', 'overlay.mp4', 'selection.json'])

        setting = self.selection(out)
        keyframes = [clock.frameAt(keyframe[4]) for keyframe in setting[3]]
        # The cut lies between frames 73 and 74: the outline must not glide across it.
        self.assertGreaterEqual(len(keyframes), 4)
        self.assertIn(73, keyframes)
        self.assertIn(74, keyframes)
        for keyframe in setting[3]:
            anchors = outline.anchors(outline.unpack(keyframe[5]))
            self.assertGreaterEqual(len(anchors), 10)
            # The rocket stands in the middle of both shots.
            self.assertTrue(all(0.45 < anchor.x < 0.55 for anchor in anchors))
        # The first shot's outline was fitted to the rocket's white and stands still; the second shot's keeps its bends.
        self.assertEqual(setting[3][0][5], setting[3][1][5])
        self.assertTrue(any(point.curve_in or point.curve_out for point in outline.unpack(setting[3][2][5])))
        self.assertEqual(setting[6], [[0, 2, 2]])

        lines = dict(re.split(r' {2,}', line, 1) for line in summary.splitlines())
        self.assertEqual(lines['frames'], '194 at 640x360')
        self.assertEqual(lines['keyframes'], '%d at frames %s' % (len(keyframes), ' '.join(map(str, keyframes))))
        events = dict(pair.split() for pair in lines['events'].split(', '))
        # Thirteen drawn, one inserted, and the fit's extreme points: four to eight.
        self.assertIn(int(events['ECB_POINT_ADD']), range(18, 23))
        self.assertEqual(events['ECB_MASK_CREATE'], '1')
        overlap = re.match(r'frame 0: overlap of outline and colour key (\d+)%, as drawn (\d+)%$', lines['fit'])
        self.assertGreater(int(overlap.group(1)), int(overlap.group(2)))
        self.assertGreater(int(events['ECB_POINT_UPDATE']), 0)
        for line in ('clip', 'edit', 'runs a frame', 'ms a frame', 'module', 'results'):
            self.assertTrue(lines.get(line), line)

        self.assertVideo(os.path.join(out, 'graded.mp4'), clock, (640, 360))
        self.assertVideo(os.path.join(out, 'overlay.mp4'), clock, (640, 360))
        self.assertMasksAreTheRuns(out, clock, (640, 360))
        self.assertRocketIsBrighter(out)

    def assertRocketIsBrighter(self, out):
        """A visible grade inside of the mask, and none outside of it."""
        before, after = hostkit.VideoReader(DEFAULT_CLIP), hostkit.VideoReader(os.path.join(out, 'graded.mp4'))
        image, graded = hostkit.Image(16, 16), hostkit.Image(16, 16)
        before.read(image)
        after.read(graded)
        _, _, rows = read_grey_png(os.path.join(out, 'masks', '0000.png'))
        gain = collections.defaultdict(list)
        for y in range(0, 360, 3):
            for x in range(0, 640, 3):
                near = any('\xff' in rows[line][max(x - 4, 0):x + 5] for line in range(max(y - 4, 0), min(y + 5, 360)))
                kind = 'inside' if rows[y][x] == '\xff' else 'near' if near else 'outside'
                gain[kind].append((graded.pixel(x, y) >> 8 & 255) - (image.pixel(x, y) >> 8 & 255))
        self.assertGreater(sum(gain['inside']) / len(gain['inside']), 20)
        self.assertLess(abs(sum(gain['outside'])) / float(len(gain['outside'])), 2)


class AnyClipTest(JobTest):

    def job(self, frames, size, clock=None, edit=None, out_size=None, codec='h264'):
        clip, out = self.path('clip.mp4'), self.path('out')
        clock = write_clip(clip, frames, size[0], size[1], clock)
        edit_path = self.write_edit(edit) if edit else job.ANY_CLIP_EDIT
        summary = job.run(clip, edit_path, out, out_size, codec)
        # The clip itself was padded to even sides.
        actual = out_size or tuple(side + side % 2 for side in size)
        self.assertMasksAreTheRuns(out, clock, actual)
        name = 'graded.' + hostkit.VideoWriter.fileExtension(codec)
        self.assertVideo(os.path.join(out, name), clock, actual, codec)
        return summary

    def test_the_built_in_edit_fits_any_clip(self):
        self.assertIn('keyframes     4 at frames 0 13 26 39', self.job(40, (160, 96)))

    def test_a_clip_of_one_frame(self):
        self.assertIn('keyframes     1 at frames 0', self.job(1, (64, 48)))

    def test_an_upright_clip_at_television_rate(self):
        self.job(12, (90, 160), clock_of(12, 30000, 1001))

    def test_another_size_even_an_odd_one(self):
        self.job(5, (160, 96), out_size=(333, 155))

    def test_vp9(self):
        self.job(8, (160, 96), codec='vp9')

    def test_an_inverted_mask(self):
        gestures = simple_edit()['gestures'] + [{'do': 'invert'}]
        self.job(4, (160, 96), edit=simple_edit(gestures=gestures))

    def test_an_inverted_mask_before_the_first_keyframe_is_none(self):
        clip, out = self.path('clip.mp4'), self.path('out')
        write_clip(clip, 4)
        gestures = [{'do': 'seek', 'frame': 2}] + simple_edit()['gestures'][:2] + [{'do': 'invert'}]
        job.run(clip, self.write_edit(simple_edit(gestures=gestures)), out, None, 'h264')
        masks = [read_grey_png(os.path.join(out, 'masks', '%04d.png' % number))[2] for number in (1, 2)]
        self.assertEqual([rows[0][0] for rows in masks], ['\0', '\xff'])

    def test_more_keyframes_than_a_contact_sheet_holds(self):
        gestures = simple_edit()['gestures'][:2]
        for frame in range(0, 150, 2):
            gestures += [{'do': 'seek', 'frame': frame}, {'do': 'keyframe'}]
        self.assertIn('keyframes     75 at', self.job(150, (64, 48), edit=simple_edit(gestures=gestures)))

    def test_clips_of_extreme_shapes(self):
        for size in ((2000, 16), (16, 1000)):
            self.job(2, size)

    def test_an_edit_that_ends_without_a_mask(self):
        clip, out = self.path('clip.mp4'), self.path('out')
        write_clip(clip, 3)
        edit = self.write_edit(simple_edit(gestures=[{'do': 'draw', 'points': [[0.2, 0.2], [0.5, 0.5]]}]))
        self.assertIn('keyframes     0', job.run(clip, edit, out, None, 'h264'))
        _, _, rows = read_grey_png(os.path.join(out, 'masks', '0002.png'))
        self.assertEqual(set(b''.join(rows)), set([b'\0']))

    def test_a_second_run_replaces_the_first(self):
        self.job(6, (160, 96))
        self.job(3, (160, 96))
        self.assertEqual(len(os.listdir(self.path('out', 'masks'))), 3)


if __name__ == '__main__':
    unittest.main()
