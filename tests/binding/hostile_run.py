# SPDX-License-Identifier: MIT
"""One process of the hostile fuzzer: hostile_run.py CALLS PATIENCE SEED... makes so many calls for each seed, and says
before each which one comes, so that whoever started this knows what it died of."""

import json
import os
import sys

import _Orvanel
import support
import valid_calls
from grammar import drop_pending_error, harmless, Silence
from hostile_values import HostileGrammar, proxy_class
from hostile_world import LARGEST_BUDGET, Mischief, World

if os.name == 'posix':
    sys.path.insert(0, os.path.join(support.BUILD_DIR, 'tests', 'concurrency'))
    import _watchdog
else:
    # Who started this process ends it then, and has no stacks to show.
    _watchdog = None

TABLE = support.load_table()
# What entries raise, and what hostile code raises inside of them. A SystemError is neither: the interpreter raises it when
# an entry broke a rule of its interface.
EXPECTED = (TypeError, ValueError, OverflowError, NotImplementedError, KeyError, AttributeError, RuntimeError, MemoryError, Mischief)
# A texture lock is taken and given back by World.hold alone.
ENTRIES = [entry for entry in TABLE.entries if entry.name not in ('Orvanel_LockTexture', 'new_Orvanel')]
# How often each entry took what it was given.
accepted = {}


def look_at(result, depth=0):
    """Touches everything in a result: an item that was never filled in shows here."""
    if depth > 6:
        return
    if isinstance(result, dict):
        for key, value in result.items():
            look_at(key, depth + 1)
            look_at(value, depth + 1)
    elif isinstance(result, (list, tuple)):
        for item in result:
            look_at(item, depth + 1)
    else:
        type(result)


class Run(object):
    def __init__(self, seed):
        self.world = World(seed, self.call_quietly)
        self.grammar = HostileGrammar(seed + 1, self.world)

    def call(self):
        random = self.grammar.random
        entry = random.choice(ENTRIES)
        if entry.name == 'Orvanel_swigregister':
            made = [proxy_class(self.world) if random.random() < 0.7 else self.grammar.value()]
        else:
            made = self.grammar.arguments(entry)
        if entry.name != 'delete_Orvanel' and not harmless(entry, made):
            return
        if entry.name == 'Orvanel_SetSizeScaler' and made and isinstance(made[-1], float) and made[-1] > 8:
            return
        try:
            result = getattr(_Orvanel, entry.name)(*made)
            if entry.name == 'Orvanel_Convert2SelectionLineUS':
                # A malformed size leaves its error on purpose.
                drop_pending_error()
            look_at(result)
            accepted[entry.name] = accepted.get(entry.name, 0) + 1
        except EXPECTED:
            pass
        if entry.name == 'Orvanel_swigregister':
            _Orvanel.Orvanel_swigregister(support.Orvanel)

    def call_quietly(self, world):
        try:
            self.call()
        except EXPECTED:
            pass

    def step(self):
        self.world.budget = LARGEST_BUDGET
        self.call_quietly(self.world)
        if not self.world.targets or self.grammar.random.random() < 0.02:
            self.world.renew()

    def end(self):
        self.world.end()
        del self.world.targets[:]
        # What is left behind has to be good for another object.
        check_usable(valid_calls.make_object())


def check_usable(target):
    """An object that nobody meddles with does what it always does."""
    call = lambda name, *arguments: getattr(_Orvanel, 'Orvanel_' + name)(target, *arguments)
    assert call('IsMask') and call('GetKeyFrameDurationList') == [-1L, 1000L], call('GetKeyFrameDurationList')
    assert len(call('GetCurrentPoints')) == 9 * 24
    assert call('DeleteAllPoints') == 0 and call('GetCurrentPoints') is None
    call('AddPoint', 5, 5)
    assert len(call('GetCurrentPoints')) == 24
    assert call('Uninitialize') == 0


def main(calls, patience, seeds):
    errors = sys.stderr
    for seed in seeds:
        print 'seed %d' % seed
        sys.stdout.flush()
        if _watchdog:
            _watchdog.arm(patience, 'seed %d' % seed)
        run = Run(seed)
        # Errors of callables, finalisers and weak references are printed.
        sys.stderr = Silence()
        try:
            for number in xrange(calls):
                if _watchdog and number % 20 == 0:
                    _watchdog.arm(patience, 'seed %d, call %d' % (seed, number))
                run.step()
            run.end()
        finally:
            sys.stderr = errors
    if _watchdog:
        _watchdog.arm(patience, 'the end of the interpreter')
    print 'accepted %s' % json.dumps(accepted)
    sys.stdout.flush()


if __name__ == '__main__':
    main(int(sys.argv[1]), float(sys.argv[2]), [int(seed) for seed in sys.argv[3:]])
