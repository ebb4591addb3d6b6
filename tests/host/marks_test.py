# SPDX-License-Identifier: MIT
"""Marks have the same share of every picture: an anchor that can be seen on a small one can be seen on one of 4320 lines."""
import unittest

from orvanel_host import hostkit, job

from support import HostTest, simple_edit, write_clip


class MarksTest(HostTest):

    def mark_height(self, height):
        """Lines of the overlay that an anchor in the middle covers, in a picture that is narrow and as high as that."""
        clip = self.path('clip%d.mp4' % height)
        write_clip(clip, 1, 96, height)
        edit = self.write_edit(simple_edit(gestures=[{'do': 'draw', 'points': [[0.5, 0.5]]}]))
        out = self.path('out%d' % height)
        job.run(clip, edit, out, None, 'h264', warn=lambda line: None)
        plain, marked = hostkit.Image(16, 16), hostkit.Image(16, 16)
        self.assertTrue(hostkit.VideoReader(clip).read(plain))
        self.assertTrue(hostkit.VideoReader(out + '/overlay.mp4').read(marked))
        return sum(self.differs(plain.pixel(48, y), marked.pixel(48, y)) for y in range(height))

    def differs(self, a, b):
        return any(abs((a >> shift & 255) - (b >> shift & 255)) > 40 for shift in (0, 8, 16))

    def test_anchors_grow_with_the_picture_up_to_8k(self):
        heights = [self.mark_height(lines) for lines in (720, 2160, 4320)]
        for times, height in zip((1, 3, 6), heights):
            self.assertLess(abs(height - 11 * times), 2 + times, heights)


if __name__ == '__main__':
    unittest.main()
