# SPDX-License-Identifier: MIT
"""Random tuples to random entries. Nothing is asserted but that the process lives, that what is raised is what entries raise,
and that refusals agree with the oracle. ORVANEL_LONG_TESTS=1: a million calls, meant for the address sanitizer."""

import os
import shutil
import sys
import tempfile
import unittest

import _Orvanel
import support
from grammar import drop_pending_error, Grammar, harmless, Silence

TABLE = support.load_table()
CALLS = 1000000 if support.LONG_TESTS else 20000
SEED = int(os.environ.get('ORVANEL_FUZZ_SEED', '20270'))
EXPECTED = (TypeError, ValueError, OverflowError, NotImplementedError)


class Fuzz(unittest.TestCase):
    def setUp(self):
        # Most objects cannot be called with an event.
        self.errors, sys.stderr = sys.stderr, Silence()
        # What DumpBitmap writes.
        self.folder = tempfile.mkdtemp(prefix='orvanel-fuzz-')
        self.before = os.getcwd()
        os.chdir(self.folder)

    def tearDown(self):
        sys.stderr = self.errors
        os.chdir(self.before)
        shutil.rmtree(self.folder, ignore_errors=True)

    def test_random_calls(self):
        grammar = Grammar(SEED)
        accepted = 0
        for number in xrange(CALLS):
            if number % 2000 == 0:
                grammar.renew()
            entry = grammar.random.choice(TABLE.entries)
            made = grammar.arguments(entry)
            if not harmless(entry, made):
                continue
            try:
                getattr(_Orvanel, entry.name)(*made)
            except EXPECTED as raised:
                self.assertTrue(str(raised), (entry.name, made))
            else:
                accepted += 1
                # A malformed size gives no runs, and leaves its error; no other entry may.
                if entry.name == 'Orvanel_Convert2SelectionLineUS':
                    drop_pending_error()
                _Orvanel.Orvanel_UnlockTexture(grammar.target)
                if entry.name == 'Orvanel_swigregister':
                    _Orvanel.Orvanel_swigregister(support.Orvanel)
        print '%d calls, %d accepted, seed %d' % (CALLS, accepted, SEED)
        self.assertGreater(accepted, CALLS // 3)


if __name__ == '__main__':
    unittest.main()
