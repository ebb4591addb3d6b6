# SPDX-License-Identifier: MIT
"""Whether the lock step would notice: small mistakes planted in the model have to be found."""
from __future__ import absolute_import

import unittest

from editor_model import keyframes, mask_runs, outline, records
from editor_model.interaction import Interaction
from lockstep.campaign import BATCH, find_failure, shrunk


class Watchfulness(unittest.TestCase):
    """Small mistakes planted in the model are found and shrunk to a few steps, so the comparison is not an empty one."""

    def _assert_noticed(self, owner, name, replacement):
        original = getattr(owner, name)
        if isinstance(owner, type):
            original = owner.__dict__[name]
        setattr(owner, name, replacement)
        try:
            for first in range(0, 300, BATCH):
                failure, _ = find_failure(range(first, first + BATCH))
                if failure:
                    break
            self.assertTrue(failure, "a wrong %s goes unnoticed" % name)
            self.assertLess(len(shrunk(failure[1])), 20)
        finally:
            setattr(owner, name, original)

    def test_a_tolerance_that_is_one_pixel_short(self):
        self._assert_noticed(records, "HIT_TOLERANCE", 9)

    def test_a_mirrored_handle_that_does_not_bend_its_segment(self):
        mirror = Interaction.__dict__["_mirror_handle"]
        self._assert_noticed(Interaction, "_mirror_handle", lambda self, bend: mirror(self, False))

    def test_an_interpolation_without_narrowing(self):
        self._assert_noticed(keyframes, "_between", lambda a, b, t: keyframes.single(a + (b - a) * t))

    def test_handles_that_do_not_survive_a_keyframe(self):
        def make_current(self, outline):
            self.geometry_changed = True
            self.live = outline.copy()
            self.signal_worker()
            if not self.preview_mode:
                self.mark_all_dirty()

        self._assert_noticed(keyframes.KeyframeTrack, "_make_current", make_current)

    def test_a_mask_of_chords(self):
        self._assert_noticed(mask_runs, "flatten", lambda xs, ys, surface: [(xs[3], ys[3])])

    def test_a_segment_that_is_not_straightened(self):
        self._assert_noticed(outline, "_were_neighbours", lambda pair, anchors: True)


if __name__ == "__main__":
    unittest.main()
