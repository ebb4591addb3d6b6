# SPDX-License-Identifier: MIT
"""A host whose Python code does its worst at every chance: whenever an entry asks a value for something, a finaliser or a
callback runs, other entries run on the same object, it is deleted, threads switch, the collector runs, what was passed
changes.

What no caller may do is left out: objects that it keeps by contract (syncers, slots of records) live on, and nobody waits
without limit for another thread while holding a texture lock of its own, or on an object's worker, whose deliveries
Uninitialize waits for without limit.
"""

import gc
import random
import sys
import thread
import time

import _Orvanel
import swig_peer
import valid_calls

# Entries that are called from within one call, and how deep calls nest.
LARGEST_BUDGET = 10
LARGEST_DEPTH = 3
# Everybody's default.
THRESHOLDS = gc.get_threshold()
CHECK_INTERVAL = sys.getcheckinterval()


class Mischief(Exception):
    """What hostile code raises."""


class ApartThread(object):
    """A thread without the locks of the `threading` module: whoever meddles may stand in the middle of that module."""

    def __init__(self, work):
        self.work = work
        self.ended = False
        thread.start_new_thread(self._run, ())

    def _run(self):
        try:
            self.work()
        finally:
            self.ended = True

    def join(self, seconds=None):
        end = None if seconds is None else time.time() + seconds
        while not self.ended and (end is None or time.time() < end):
            time.sleep(0.0005)


class World(object):
    """The objects of one run and the code that meddles with them. `call` runs one random entry."""

    def __init__(self, seed, call):
        self.random = random.Random(seed)
        self.call = call
        self.local = thread._local()
        self.local.is_own = True
        self.threads = []
        self.ending = False
        self.budget = 0
        # What is passed to entries now, for meddling.
        self.containers = []
        self.owners = []
        self.targets = []
        for _ in range(2):
            self.renew()

    # --- objects ---

    def renew(self):
        self.targets.append(valid_calls.make_object())
        if len(self.targets) > 3:
            del self.targets[self.random.randrange(len(self.targets))]

    def target(self):
        return self.random.choice(self.targets)

    def keep(self, container):
        """Remembers a list or dictionary that goes into a call."""
        self.containers.append(container)
        del self.containers[:-20]
        return container

    def own(self, owner):
        """Remembers what owns an object behind a pointer; its last reference may go at any time."""
        self.owners.append(owner)
        del self.owners[:-6]
        return owner

    def record(self):
        """A record of a caller's own, filled."""
        record = self.own(swig_peer.KeyFrameMaskInfo())
        slot = swig_peer.RecordSlot()
        self.attempt(_Orvanel.Orvanel_UpdateKeyFrameInCurrent, self.target(), slot.address(), 7L)
        return record if self.random.random() < 0.5 else _Orvanel.Orvanel_GetKeyFrameMaskInfo(self.target(), 5L)

    @staticmethod
    def attempt(function, *arguments):
        try:
            return function(*arguments)
        except (TypeError, ValueError, RuntimeError):
            return None

    # --- meddling ---

    def depth(self):
        return getattr(self.local, 'depth', 0)

    def holds(self):
        return getattr(self.local, 'holds', 0)

    def meddle(self):
        """What hostile code does: a few of these, each of which may end in more of the same."""
        if self.ending or self.budget <= 0 or self.depth() >= LARGEST_DEPTH:
            return
        self.local.depth = self.depth() + 1
        try:
            for _ in range(self.random.randrange(1, 4)):
                self.budget -= 1
                self.random.choice(self.MEDDLING)(self)
        finally:
            self.local.depth -= 1

    def call_entry(self):
        self.call(self)

    def delete_object(self):
        self.attempt(_Orvanel.delete_Orvanel, self.target())

    def delete_twice(self):
        victim = self.target()
        self.attempt(_Orvanel.delete_Orvanel, victim)
        self.attempt(_Orvanel.delete_Orvanel, victim)

    def replace_object(self):
        self.renew()
        del self.targets[0]

    def drop_owner(self):
        if self.owners:
            self.owners.pop(self.random.randrange(len(self.owners)))

    def mutate(self):
        if not self.containers:
            return
        victim = self.random.choice(self.containers)
        filler = self.random.choice((None, 1, 0.5, (), [], 'text'))
        if isinstance(victim, dict):
            if self.random.random() < 0.3:
                victim.clear()
            else:
                victim[self.random.randrange(11)] = filler
        else:
            self.random.choice((lambda: victim.__delslice__(0, len(victim)), lambda: victim.append(filler),
                                lambda: victim.insert(0, filler), lambda: victim.__delslice__(1, 3), victim.reverse))()

    def collect(self):
        gc.collect()

    def change_threshold(self):
        gc.set_threshold(*self.random.choice((THRESHOLDS, (1, 1, 1), (3, 2, 2), (0, 0, 0))))

    def change_interval(self):
        sys.setcheckinterval(self.random.choice((1, 2, 10, CHECK_INTERVAL)))

    def switch(self):
        time.sleep(0.0001)

    def other_thread(self):
        """Another thread runs entries of the same objects; whoever keeps nobody else waiting may wait until it is through."""
        if len(self.threads) >= 4:
            return
        other = ApartThread(self._run_apart)
        self.threads.append(other)
        is_own = getattr(self.local, 'is_own', False)
        other.join(None if is_own and not self.holds() else 0.002)
        if other.ended:
            self.threads.remove(other)

    def _run_apart(self):
        self.local.is_own = True
        self.local.depth = LARGEST_DEPTH - 1
        for _ in range(self.random.randrange(1, 4)):
            self.call(self)

    def hold(self):
        """Work under the host's own hold of the texture lock, which whoever holds can give back."""
        victim = self.target()
        if self.attempt(lambda: _Orvanel.Orvanel_LockTexture(victim) or True) is None:
            return
        self.local.holds = self.holds() + 1
        try:
            self.meddle()
        finally:
            self.local.holds -= 1
            self.attempt(_Orvanel.Orvanel_UnlockTexture, victim)

    def unlock_without_hold(self):
        if not self.holds():
            self.attempt(_Orvanel.Orvanel_UnlockTexture, self.target())

    def drop_cycle(self):
        """Garbage whose finaliser or weak reference meddles when the collector finds it."""
        from hostile_values import Cycle
        Cycle(self)

    def unregister(self):
        self.attempt(_Orvanel.Orvanel_SetCallbackFunc, self.target(), None)

    def fail(self):
        raise self.random.choice((Mischief, KeyError, AttributeError, RuntimeError, MemoryError))('mischief')

    MEDDLING = (call_entry, call_entry, call_entry, call_entry, delete_object, delete_twice, replace_object, drop_owner, mutate,
                mutate, collect, change_threshold, change_interval, switch, other_thread, hold, unlock_without_hold, drop_cycle,
                unregister, fail)

    # --- the end ---

    def end(self):
        """Nothing meddles any more; threads come home, and the interpreter is as it was."""
        self.ending = True
        gc.set_threshold(*THRESHOLDS)
        sys.setcheckinterval(CHECK_INTERVAL)
        for other in self.threads:
            other.join()
        for target in self.targets:
            self.attempt(_Orvanel.Orvanel_SetCallbackFunc, target, None)
        del self.containers[:], self.owners[:]
        gc.collect()
