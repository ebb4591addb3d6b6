# SPDX-License-Identifier: MIT
"""Whoever waits for a job sees how far it is."""
import contextlib
import os
import unittest

from orvanel_host import clipindex, colorkey, job, outputs, progress, render, replay

from clips import ffmpeg
from support import HostTest, have_ffprobe, simple_edit, write_clip


class ProgressTest(HostTest):

    def setUp(self):
        """Notes each stage with how often it went on."""
        HostTest.setUp(self)
        self.shown = []
        original = progress.progress

        @contextlib.contextmanager
        def watched(what, total=None, unit='frames'):
            steps = []
            with original(what, total, unit) as advance:
                yield lambda: (steps.append(1), advance())
            self.shown.append((what, len(steps)))
        for module in (clipindex, colorkey, outputs, render, replay):
            module.progress = watched
            self.addCleanup(setattr, module, 'progress', original)

    def run_job(self, clip):
        del self.shown[:]
        job.run(clip, self.write_edit(simple_edit()), self.path('out'), None, 'h264')
        return [what for what, _ in self.shown], dict(self.shown)

    def test_every_stage_that_can_be_long_shows_how_far_it_is(self):
        clip = self.path('clip.mp4')
        write_clip(clip, 6)
        stages, steps = self.run_job(clip)
        self.assertEqual(stages, ['reading', 'replaying', 'rendering', 'finishing', 'checking', 'comparing'])
        self.assertEqual((steps['replaying'], steps['rendering']), (4, 6))
        # Two videos, six masks, the sheet and the selection: less than a megabyte each.
        self.assertEqual((steps['checking'], steps['comparing']), (10, 0))

    def test_results_that_look_younger_are_read_for_a_comparison(self):
        clip = self.path('clip.mp4')
        write_clip(clip, 6)
        self.run_job(clip)
        os.utime(self.path('out', 'graded.mp4'), None)
        stages, _ = self.run_job(clip)
        self.assertEqual(stages[0], 'comparing')
        self.assertEqual(self.shown[0][1], 1)

    @unittest.skipUnless(have_ffprobe(), 'ffmpeg and ffprobe (package ffmpeg) are not installed')
    def test_a_clip_whose_container_knows_no_times(self):
        write_clip(self.path('clip.mp4'), 6)
        # Packets and nothing else.
        ffmpeg('-i', self.path('clip.mp4'), '-c', 'copy', self.path('clip.h264'))
        stages, steps = self.run_job(self.path('clip.h264'))
        self.assertEqual((stages[:2], steps['decoding']), (['reading', 'decoding'], 6))

    def test_a_picture_far_into_the_clip(self):
        write_clip(self.path('clip.mp4'), 6)
        self.assertTrue(colorkey.ClipPictures(self.path('clip.mp4')).frame(5))
        self.assertEqual(self.shown, [('looking for frame 5', 5)])


if __name__ == '__main__':
    unittest.main()
