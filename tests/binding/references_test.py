# SPDX-License-Identifier: MIT
"""Every entry a thousand times, in success and in failure, under the interpreter that counts references: the total stays."""

import gc
import itertools
import sys
import unittest

import _Orvanel
import specimens
import support
import valid_calls

TABLE = support.load_table()
ROUNDS = 1000
counting = unittest.skipUnless(hasattr(sys, 'gettotalrefcount'), 'this interpreter does not count references')
# Their effect is a reference more or less, or an object.
OF_THEIR_OWN = ('new_Orvanel', 'delete_Orvanel')


def settled_total():
    gc.collect()
    return sys.gettotalrefcount()


class References(unittest.TestCase):
    def setUp(self):
        self.target = valid_calls.make_object()

    def growth(self, call, rounds):
        """How much the total of all references changes over so many calls."""
        before = after = 0
        for _ in xrange(20):
            call()
        before = settled_total()
        for _ in xrange(rounds):
            call()
        after = settled_total()
        return after - before

    def assert_steady(self, call, description, rounds=ROUNDS):
        expected = self.growth(lambda: None, rounds)
        # The worker's thread state may be there at the moment of counting, so a count that is off is taken again.
        for attempt in range(5):
            growth = self.growth(call, rounds) - expected
            if growth == 0:
                return
        self.fail('%s: %+d references in %d calls' % (description, growth, rounds))

    def refused_arguments(self, entry, index):
        valid = valid_calls.arguments(entry, self.target)
        return [valid[:index] + (specimen.value,) + valid[index + 1:] for specimen in specimens.SPECIMENS
                if specimens.refusal(entry.arguments[index], specimen) is not None]

    def refusal_of(self, entry, choices):
        """A call that goes through the choices in turn; each has to be refused."""
        function, turns = getattr(_Orvanel, entry.name), itertools.cycle(choices)

        def call():
            try:
                function(*next(turns))
            except (TypeError, ValueError, OverflowError, NotImplementedError):
                sys.exc_clear()
            else:
                raise AssertionError('%s was not refused' % entry.name)
        return call

    @counting
    def test_success(self):
        for entry in TABLE.entries:
            if entry.name in OF_THEIR_OWN:
                continue
            self.target = valid_calls.make_object()
            function = getattr(_Orvanel, entry.name)
            arguments = valid_calls.arguments(entry, self.target)
            self.assert_steady(lambda: function(*arguments), entry.name)

    @counting
    def test_failure(self):
        for entry in TABLE.entries:
            valid = valid_calls.arguments(entry, self.target)
            self.assert_steady(self.refusal_of(entry, [valid + (None, None), valid + (None, None, None)]), entry.name + ', count')
            for index in range(len(entry.arguments)):
                choices = self.refused_arguments(entry, index)
                if choices:
                    self.assert_steady(self.refusal_of(entry, choices), '%s, argument %d' % (entry.name, index + 1))

    @counting
    def test_making_and_destroying(self):
        def make():
            made = support.Orvanel()
            _Orvanel.Orvanel_SetCallbackFunc(made, valid_calls.ignore)
        self.assert_steady(make, 'made and dropped', 200)

        def delete():
            made = support.Orvanel()
            _Orvanel.delete_Orvanel(made)
        self.assert_steady(delete, 'made and deleted', 200)

    @counting
    def test_a_short_outline_takes_one_reference_a_call(self):
        _Orvanel.Orvanel_DeleteAllPoints(self.target)
        before = sys.getrefcount(None)
        for _ in xrange(ROUNDS):
            _Orvanel.Orvanel_Convert2SelectionLineUS(self.target, (64, 64))
        self.assertAlmostEqual(sys.getrefcount(None) - before, -ROUNDS, delta=20)

    @counting
    def test_events(self):
        _Orvanel.Orvanel_SetCallbackFunc(self.target, lambda code: None)
        self.assert_steady(lambda: _Orvanel.Orvanel_CallBack(self.target, 1), 'CallBack')

    @counting
    def test_proxies(self):
        for name, proxy, keep in support.proxies_of(self.target.this):
            self.assert_steady(lambda: _Orvanel.Orvanel_IsMask(proxy), name)


if __name__ == '__main__':
    unittest.main()
