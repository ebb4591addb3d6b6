# SPDX-License-Identifier: MIT
"""The module and the model of the editor in lock step over random sessions.

ORVANEL_LONG_TESTS=1 plays 10,000 sessions instead of 300. ORVANEL_LOCKSTEP_SEED=N plays the session of one seed.
"""
from __future__ import absolute_import, division

import collections
import os
import sys
import time
import unittest

from editor_model import keyframes, outline, records
from editor_model.interaction import Interaction
from lockstep.isolation import Died, isolated
from lockstep.session import play, play_random, steps_of
from lockstep.shrink import shrink
from lockstep.sides import hostkit

_LONG = os.environ.get("ORVANEL_LONG_TESTS") == "1"
_STEPS = 60
_BATCH = 50


def _play_batch(seeds):
    """Plays sessions up to the first difference; gives the failing (seed, steps, difference) or None, and counts."""
    counts = collections.Counter()
    for seed in seeds:
        outcome = play_random(seed, _STEPS)
        counts["sessions"] += 1
        counts["steps"] += len(outcome.steps)
        counts["undefined"] += outcome.undefined
        counts.update(outcome.events)
        if outcome.difference:
            return (seed, outcome.steps, outcome.difference), counts
    return None, counts


def _difference_of(steps):
    """What is wrong with a session, played in a process of its own; None when nothing is."""
    try:
        return isolated(_play_one, steps)
    except Died as death:
        return "the process ended: %s" % death


def _play_one(steps):
    return play(steps).difference


def shrunk(steps):
    """The shortest session found that shows a difference of the same kind."""
    kind = _kind(_difference_of(steps))
    return shrink(steps, lambda shorter: _kind(_difference_of(shorter)) == kind)


def _kind(difference):
    return difference and difference.split("\n")[0]


def _report(seed, steps, difference):
    """The text for a failing session: the shortest one found and its difference."""
    if _difference_of(steps) is None:
        return "session %d failed once and then no more: %s\n%r" % (seed, difference, steps)
    shortest = shrunk(steps)
    listing = "\n".join("    %r," % (step,) for step in shortest)
    return "session %d, %d of %d steps:\n[\n%s\n]\n%s" % (seed, len(shortest), len(steps), listing, _difference_of(shortest))


def find_failure(seeds):
    """(seed, steps, difference) of the first failing session among `seeds`, or None; and the counts of what was played."""
    try:
        return isolated(_play_batch, seeds)
    except Died:
        for seed in seeds:
            steps = steps_of(seed, _STEPS)
            difference = _difference_of(steps)
            if difference is not None:
                return (seed, steps, difference), collections.Counter()
        raise


class LockStep(unittest.TestCase):

    def setUp(self):
        if hostkit is None:
            print("_hostkit is not built: entries that take records are left out")

    def test_random_sessions(self):
        if "ORVANEL_LOCKSTEP_SEED" in os.environ:
            seeds = [int(os.environ["ORVANEL_LOCKSTEP_SEED"])]
        else:
            seeds = list(range(10000 if _LONG else 300))
        total = collections.Counter()
        started = time.time()
        for first in range(0, len(seeds), _BATCH):
            failure, counts = find_failure(seeds[first:first + _BATCH])
            if failure:
                self.fail(_report(*failure))
            total.update(counts)
            if _LONG:
                sys.stderr.write("\r%d sessions, %.0f s " % (total["sessions"], time.time() - started))
        print("%(sessions)d sessions, %(steps)d steps, %(undefined)d ended early where the rules end" % total)
        if len(seeds) > 1:
            self.assertLess(total["undefined"], len(seeds) // 20)
            for code in range(5):
                self.assertGreater(total[code], len(seeds) // 10, "event %d is hardly ever raised" % code)
            self.assertGreater(total["reports"], len(seeds))


class Watchfulness(unittest.TestCase):
    """Small mistakes planted in the model are found and shrunk to a few steps, so the comparison is not an empty one."""

    def _assert_noticed(self, owner, name, replacement):
        original = getattr(owner, name)
        if isinstance(owner, type):
            original = owner.__dict__[name]
        setattr(owner, name, replacement)
        try:
            for first in range(0, 300, _BATCH):
                failure, _ = find_failure(range(first, first + _BATCH))
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

    def test_a_segment_that_is_not_straightened(self):
        self._assert_noticed(outline, "_were_neighbours", lambda pair, anchors: True)


if __name__ == "__main__":
    unittest.main()
