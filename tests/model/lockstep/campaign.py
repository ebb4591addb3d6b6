# SPDX-License-Identifier: MIT
"""Many sessions, in processes of their own: finds the first that fails and reports it in its shortest form."""
from __future__ import absolute_import

import collections

from lockstep.isolation import Died, isolated
from lockstep.session import play, play_random, steps_of
from lockstep.shrink import shrink

#: Sessions of one process.
BATCH = 50
_STEPS = 60


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


def report(seed, steps, difference):
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
    except Died as death:
        for seed in seeds:
            steps = steps_of(seed, _STEPS)
            difference = _difference_of(steps)
            if difference is not None:
                return (seed, steps, difference), collections.Counter()
        raise death
