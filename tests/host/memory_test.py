# SPDX-License-Identifier: MIT
"""A job holds a few frames, however long its clip is."""
import os
import subprocess
import sys
import unittest

from clips import make_clip
from support import HostTest

_WIDTH, _HEIGHT = 640, 360
# Both are longer than what encoders look ahead and what the host's pools keep.
_SHORT, _LONG = 60, 300
_BYTES_OF_A_FRAME = _WIDTH * _HEIGHT * 3 // 2


class MemoryTest(HostTest):

    def peak(self, frames):
        """The most memory that a job over that many frames had at a time, in bytes."""
        clip = make_clip(self.path('clip.mp4'), frames, '%dx%d' % (_WIDTH, _HEIGHT),
                         encoder=('-c:v', 'libx264', '-preset', 'ultrafast'))
        with open(os.devnull, 'w') as nowhere:
            process = subprocess.Popen([sys.executable, '-B', '-m', 'orvanel_host', '--clip', clip, '--out', self.path('out'),
                                        '--force'], stdout=nowhere)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = status
        self.assertEqual(status, 0)
        self.assertEqual(len(os.listdir(self.path('out', 'masks'))), frames)
        return usage.ru_maxrss * 1024

    def test_five_times_the_frames_take_no_more_memory(self):
        short = min(self.peak(_SHORT) for _ in range(2))
        long_ = min(self.peak(_LONG) for _ in range(2))
        # Threads are not always equally far ahead, and allocators keep what they like: a few frames either way.
        # Whoever kept a picture or a mask of every frame would need hundreds more.
        kept = (long_ - short) / float(_BYTES_OF_A_FRAME)
        self.assertLess(kept, (_LONG - _SHORT) / 8.0, 'the longer job takes %.1f frames more' % kept)


if __name__ == '__main__':
    unittest.main()
