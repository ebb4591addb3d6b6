# SPDX-License-Identifier: MIT
"""Clips that are truncated, damaged or change on the way: who is told what."""
import os
import re
import unittest

from clips import ffmpeg, make_clip
from kinds import KindsTest


class BrokenTest(KindsTest):

    def truncated(self, name, share, *options):
        clip = make_clip(self.path(name), frames=60, encoder=('-c:v', 'libx264', '-preset', 'veryfast', '-g', '10') + options)
        with open(clip, 'r+b') as stream:
            stream.truncate(int(os.path.getsize(clip) * share))
        return clip

    def assertWarnsOfMissingFrames(self, clip, expected):
        found, _ = self.render(clip)
        self.assertEqual(len(self.warnings), 1, self.warnings)
        match = re.match(r"clip '.*' is truncated or damaged: (\d+) of (\d+) frames could be read", self.warnings[0])
        self.assertTrue(match, self.warnings[0])
        read, promised = map(int, match.groups())
        self.assertEqual(int(found[0]['nb_frames']), read)
        self.assertEqual(len(os.listdir(self.path('out', 'masks'))), read)
        self.assertTrue(10 < read < 60, read)
        self.assertAlmostEqual(promised, expected, delta=1)

    def test_a_file_that_breaks_off(self):
        self.assertWarnsOfMissingFrames(self.truncated('clip.mp4', 0.7, '-movflags', '+faststart'), 60)
        self.assertWarnsOfMissingFrames(self.truncated('clip.mkv', 0.7), 60)

    def test_a_recording_without_its_end(self):
        clip = self.truncated('clip.mp4', 0.7)
        with self.assertRaises(Exception) as caught:
            self.render(clip)
        self.assertEqual(str(caught.exception), "clip '%s' cannot be read: it is truncated or damaged, its table of contents "
                                                'is missing' % clip)

    def test_damage_in_the_middle(self):
        clip = make_clip(self.path('clip.mp4'), frames=60, size='320x180',
                         encoder=('-c:v', 'libx264', '-preset', 'veryfast', '-g', '10', '-movflags', '+faststart'))
        size = os.path.getsize(clip)
        with open(clip, 'r+b') as stream:
            stream.seek(size // 2)
            stream.write(b'\x55' * (size // 10))
        self.render(clip)
        self.assertEqual(len(self.warnings), 1)
        self.assertIn('of 60 frames could be read', self.warnings[0])

    def test_a_whole_clip_has_no_warning(self):
        for name in ('clip.mp4', 'clip.mkv', 'clip.ts', 'clip.avi'):
            self.render(make_clip(self.path(name), frames=30, encoder=('-c:v', 'libx264', '-preset', 'veryfast')))
            self.assertEqual((self.warnings, len(os.listdir(self.path('out', 'masks')))), ([], 30))

    def test_a_whole_clip_may_be_cut_and_begin_at_any_time(self):
        clip = make_clip(self.path('clip.mp4'), frames=48, encoder=('-c:v', 'libx264', '-preset', 'veryfast', '-g', '48'))
        # Without encoding, the frames before the cut stay in the file, and an edit list says that they are not shown.
        ffmpeg('-ss', '1', '-i', clip, '-c', 'copy', self.path('cut.mp4'))
        self.render(self.path('cut.mp4'))
        self.assertEqual((self.warnings, len(os.listdir(self.path('out', 'masks')))), ([], 24))
        for name in ('late.mkv', 'late.ts', 'late.mp4'):
            ffmpeg('-i', clip, '-c', 'copy', '-output_ts_offset', '1000', self.path(name))
            self.render(self.path(name))
            self.assertEqual((self.warnings, len(os.listdir(self.path('out', 'masks')))), ([], 48), name)

    def test_a_clip_that_changes_its_size(self):
        parts = [make_clip(self.path('%d.h264' % i), frames=20, size=size, encoder=('-c:v', 'libx264', '-preset', 'veryfast', '-bf', '0'))
                 for i, size in enumerate(('160x96', '128x64'))]
        clip = self.write('clip.h264', b''.join(open(part, 'rb').read() for part in parts))
        with self.assertRaises(Exception) as caught:
            self.render(clip)
        self.assertEqual(str(caught.exception), "clip '%s' changes its size from 160x96 to 128x64 at frame 20" % clip)
        self.assertFalse(os.path.exists(self.path('out')))


if __name__ == '__main__':
    unittest.main()
