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

from lockstep.campaign import BATCH, find_failure, report
from lockstep.module_side import hostkit

_LONG = os.environ.get("ORVANEL_LONG_TESTS") == "1"


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
        for first in range(0, len(seeds), BATCH):
            failure, counts = find_failure(seeds[first:first + BATCH])
            if failure:
                self.fail(report(*failure))
            total.update(counts)
            if _LONG:
                sys.stderr.write("\r%d sessions, %.0f s " % (total["sessions"], time.time() - started))
        print("%(sessions)d sessions, %(steps)d steps, %(undefined)d ended early where the rules end" % total)
        if len(seeds) > 1:
            self.assertLess(total["undefined"], len(seeds) // 20)
            for code in range(5):
                self.assertGreater(total[code], len(seeds) // 10, "event %d is hardly ever raised" % code)
            self.assertGreater(total["reports"], len(seeds))


if __name__ == "__main__":
    unittest.main()
