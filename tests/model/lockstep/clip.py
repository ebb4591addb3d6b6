# SPDX-License-Identifier: MIT
"""A clip as the host's syncer knows it: frames of one length, from time 0 on."""
from __future__ import absolute_import


class Clip(object):

    FRAMES = 30

    def __init__(self, frame_length):
        self.frame_length = frame_length

    def frame_of(self, time):
        """The number of the frame that is shown: -1 before the clip, the number of frames behind it."""
        return max(-1, min(time // self.frame_length, self.FRAMES))

    def tolerance(self, time):
        """How far a later time may lie and still be on the same frame."""
        frame = self.frame_of(time)
        return (frame + 1) * self.frame_length - 1 - time if 0 <= frame < self.FRAMES else 0

    def starts(self):
        return range(0, self.FRAMES * self.frame_length, self.frame_length)
