# SPDX-License-Identifier: MIT
"""Makes a failing session short: leaves out steps, in ever smaller runs, as long as what remains still fails."""
from __future__ import absolute_import, division


def shrink(steps, fails):
    """The shortest session found; `fails` tells whether a list of steps still shows a difference."""
    run = max(1, len(steps) // 2)
    while True:
        shorter = _without_runs(steps, run, fails)
        if len(shorter) == len(steps) and run == 1:
            return steps
        steps = shorter
        run = max(1, min(run // 2, len(steps)))


def _without_runs(steps, run, fails):
    at = 0
    while at < len(steps):
        shorter = steps[:at] + steps[at + run:]
        if shorter and fails(shorter):
            steps = shorter
        else:
            at += run
    return steps
