# SPDX-License-Identifier: MIT
"""All entries under a host whose code meddles whenever it gets the word (hostile_world.py), in processes of their own: one
that crashes or hangs names its seed.

ORVANEL_LONG_TESTS=1 goes on for ORVANEL_MINUTES (60), from a random seed or from ORVANEL_FUZZ_SEED; meant for the address
sanitizer. One seed again:

    ORVANEL_FUZZ_SEED=123 ctest --preset asan -R '^binding_hostile_fuzz$' -V
"""

import json
import os
import random
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import unittest

import support
from long_runs import minutes

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'hostile_run.py')
CALLS = 400
SEEDS_A_PROCESS = 5
QUICK_PROCESSES = 4
# Seconds without progress: ends a hang, not a slow machine.
PATIENCE = 240


class Died(Exception):
    """A process that did not come to its end."""


class HostileFuzz(unittest.TestCase):
    def setUp(self):
        # What DumpBitmap writes.
        self.folder = tempfile.mkdtemp(prefix='orvanel-hostile-')
        self.addCleanup(shutil.rmtree, self.folder, True)
        self.accepted = {}
        self.calls = 0

    def run_seeds(self, seeds):
        command = [sys.executable, '-B', SCRIPT, str(CALLS), str(PATIENCE)] + [str(seed) for seed in seeds]
        with tempfile.TemporaryFile() as errors:
            process = subprocess.Popen(command, cwd=self.folder, stdout=subprocess.PIPE, stderr=errors, universal_newlines=True)
            # Later than the process itself would end a hang and show where it stands.
            killer = threading.Timer(PATIENCE * (len(seeds) + 1), process.kill)
            killer.start()
            lines = process.communicate()[0].splitlines()
            killer.cancel()
            errors.seek(0)
            if process.returncode:
                begun = [line for line in lines if line.startswith('seed ')][-1:]
                raise Died('status %d in %s\n%s' % (process.returncode, ''.join(begun) or 'no seed yet', errors.read()))
        for name, count in json.loads(lines[-1][len('accepted '):]).items():
            self.accepted[name] = self.accepted.get(name, 0) + count
        self.calls += CALLS * len(seeds)

    def test_nothing_meddles_it_to_death(self):
        if not support.LONG_TESTS:
            first = int(os.environ.get('ORVANEL_FUZZ_SEED', '1'))
            for number in range(QUICK_PROCESSES):
                self.run_seeds(range(first + number * SEEDS_A_PROCESS, first + (number + 1) * SEEDS_A_PROCESS))
        else:
            seed = int(os.environ.get('ORVANEL_FUZZ_SEED', random.SystemRandom().randrange(10 ** 9)))
            end = time.time() + 60 * minutes(60)
            while time.time() < end:
                self.run_seeds(range(seed, seed + SEEDS_A_PROCESS))
                seed += SEEDS_A_PROCESS
        print '%d calls, %d accepted' % (self.calls, sum(self.accepted.values()))
        self.assertGreater(sum(self.accepted.values()), self.calls // 5)
        never = [entry.name for entry in support.load_table().entries if entry.name not in self.accepted]
        # These two are called by the world itself.
        self.assertEqual(never, ['new_Orvanel', 'Orvanel_LockTexture'])


if __name__ == '__main__':
    unittest.main()
