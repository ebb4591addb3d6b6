# SPDX-License-Identifier: MIT
"""The whole job on one clip of a kind, and what comes of it."""
import re
import unittest

from orvanel_host import hostkit, job

from clips import streams
from support import HostTest, have_ffprobe, read_grey_png, simple_edit

NEUTRAL = {'exposure': 0, 'saturation': 1}


@unittest.skipUnless(have_ffprobe(), 'ffmpeg and ffprobe (package ffmpeg) are not installed')
class KindsTest(HostTest):

    def render(self, clip, codec='h264', size=None, grade=None):
        """(streams of the graded video, the line "not kept")"""
        edit = simple_edit(grade=grade) if grade else simple_edit()
        self.warnings = []
        summary = job.run(clip, self.write_edit(edit), self.path('out'), size, codec, warn=self.warnings.append)
        self.graded = self.path('out', 'graded.' + hostkit.VideoWriter.fileExtension(codec))
        found = re.search(r'^not kept +(.*)$', summary, re.MULTILINE)
        return streams(self.graded), found.group(1) if found else ''

    def assertMasksHaveTheVideosSize(self, stream):
        width, height, _ = read_grey_png(self.path('out', 'masks', '0000.png'))
        self.assertEqual((width, height), (stream['width'], stream['height']))

    def assertOutsideIsUntouched(self, clip):
        """The upper left corner lies outside of the edit's outline."""
        before, after = hostkit.VideoReader(clip), hostkit.VideoReader(self.graded)
        self.assertEqual((before.width(), before.height()), (after.width(), after.height()))
        one, other = hostkit.Image(), hostkit.Image()
        while before.read(one):
            self.assertTrue(after.read(other))
            differences = [abs((one.pixel(x, y) >> shift & 255) - (other.pixel(x, y) >> shift & 255))
                           for x in range(2, one.width() // 8, 3) for y in range(2, one.height() // 8, 3) for shift in (0, 8, 16)]
            self.assertLess(sum(differences) / float(len(differences)), 12)
        self.assertFalse(after.read(other))
