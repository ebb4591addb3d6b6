# SPDX-License-Identifier: MIT
"""Eight Python threads with all entries on one object, a renderer's thread at full speed, the object's worker, and a callable
that calls back into the object, all at once; in the end everybody uninitializes and deletes the object. Nothing may hang, crash
or race.

ORVANEL_LONG_TESTS=1 goes on for ORVANEL_MINUTES (30). ORVANEL_FUZZ_SEED chooses the first round's seed.
"""

import os
import random
import shutil
import sys
import tempfile
import threading
import time
import unittest

sys.path.insert(0, os.path.join(os.environ['ORVANEL_SOURCE_DIR'], 'tests', 'binding'))
sys.path.insert(0, os.path.join(os.environ['ORVANEL_BUILD_DIR'], 'tests', 'concurrency'))

import _Orvanel
import _watchdog
import support
import swig_peer
from grammar import drop_pending_error, Grammar, harmless, Silence
from long_runs import minutes
from orvanel_host import hostkit

THREADS = 8
QUICK_ROUNDS = 3
CALLS_A_ROUND = 250
FRAMES = 6
SIZES = (160, 96), (80, 48), (33, 17)
OUTLINE = (30, 20), (120, 25), (80, 80)
FULL_SPEED = float('inf')
# Seconds in which every thread has to make a step: ends a hang, not a slow machine.
PATIENCE = 240

TABLE = support.load_table()
# What the host does at set times only: see Round.
APART = ('new_Orvanel', 'delete_Orvanel', 'Orvanel_swigregister', 'Orvanel_Create', 'Orvanel_Uninitialize', 'Orvanel_LockTexture',
         'Orvanel_UnlockTexture', 'Orvanel_SetCallbackFunc', 'Orvanel_VideoTextureSyncerClosed', 'Orvanel_DumpBitmap')
ENTRIES = [entry for entry in TABLE.entries if entry.name not in APART]
REFUSALS = (TypeError, ValueError, OverflowError, NotImplementedError)


def write_clip(path):
    unit = hostkit.FrameClock.kUnitsPerSecond
    clock = hostkit.FrameClock(24, 1, [number * unit // 24 for number in range(FRAMES)])
    writer = hostkit.VideoWriter(path, 'h264', SIZES[0][0], SIZES[0][1], clock, 1, 1, 6)
    picture = hostkit.Image(*SIZES[0])
    for number in range(FRAMES):
        picture.fill(number * 40, 128, 90)
        writer.write(picture)
    writer.finish()
    return clock


class OwnGrammar(Grammar):
    """Random arguments of one thread, whose records and vectors no other thread has."""

    def __init__(self, seed, target):
        Grammar.__init__(self, seed)
        self.target = target
        self.slot, self.hover = swig_peer.RecordSlot(), swig_peer.HoverPoint()
        self.syncer = swig_peer.TenUnitSyncer()
        self.own = {'_p_Orvanel': target, '_p_MPoint': swig_peer.MPoint(), '_p_HoverPoint': self.hover,
                    '_p_IVideoTextureSyncer': self.syncer, '_p_Quill__KeyFrameMaskInfo': swig_peer.KeyFrameMaskInfo(),
                    '_p_p_Quill__KeyFrameMaskInfo': self.slot.address(), '_p_std__vectorTMPointF_t': swig_peer.MPointFVector(),
                    '_p_std__vectorTunsigned_int_t': swig_peer.UIntVector([0, 3])}

    def arguments(self, entry):
        made = [self.argument(shape) for shape in entry.arguments]
        if entry.name == 'Orvanel_SetVideoCoordinate' and self.random.random() < 0.9:
            width, height = self.random.choice(SIZES)
            made[1:] = [width, height, 0, 0, width, height]
        elif entry.name in ('Orvanel_SetVideoInfo', 'Orvanel_SetSizeScaler') and self.random.random() < 0.9:
            made[1:] = [0, 0, 0, 10 ** 12] if entry.name == 'Orvanel_SetVideoInfo' else [self.random.choice((0.5, 1.0, 2.0))]
        self.hover.lineIndex = self.random.randrange(-1, 12)
        return made

    def argument(self, shape):
        if shape.type in self.own:
            return self.own[shape.type]
        if shape.kind == 'longlong':
            return long(self.random.randrange(-1, 8)) * hostkit.FrameClock.kUnitsPerSecond // 24
        return Grammar.argument(self, shape)

    def leaf(self):
        """No object of another thread's."""
        return self.random.choice((self.integer, self.number, lambda: None, lambda: True, lambda: 'text'))()


class Round(object):
    """One object's life under eight threads."""

    def __init__(self, seed, calls, clock, renderer):
        self.seed, self.calls, self.clock, self.renderer = seed, calls, clock, renderer
        self.accepted, self.callbacks = {}, 0
        self.failures = []
        self.local = threading.local()
        # GetAllocator gives no reference, so a map may not be replaced before the renderer has taken its own.
        self.map_lock = threading.Lock()
        self.window, self.syncer = hostkit.Window(), hostkit.VideoSyncer(clock)
        self.object = _Orvanel.new_Orvanel()
        self.at_rest = _Barrier(THREADS)
        self.steps = [0] * THREADS
        self.call('SetCallbackFunc', self.called_back)
        self.call('SetVideoCoordinate', SIZES[0][0], SIZES[0][1], 0, 0, *SIZES[0])
        self.call('SetVideoInfo', 0, 0, 0, 10 ** 12)
        for x, y in OUTLINE + OUTLINE[:1]:
            self.click(x, y)
        self.create()

    def call(self, name, *arguments):
        name = name if name.endswith('_Orvanel') else 'Orvanel_' + name
        result = getattr(_Orvanel, name)(self.object, *arguments)
        self.accepted[name] = self.accepted.get(name, 0) + 1
        return result

    def click(self, x, y):
        for state in (_Orvanel.ECS_MOUSE_MOVE, _Orvanel.ECS_MOUSE_DOWN, _Orvanel.ECS_MOUSE_UP):
            self.call('Interactive', state, x, y)

    def create(self):
        if self.map_lock.acquire(False):
            try:
                self.call('Create', self.window, self.renderer, self.syncer)
                self.renderer.setOverlay(self.call('GetAllocator'))
            finally:
                self.map_lock.release()

    def called_back(self, code):
        """Calls back, not deeper than once: an event may lead to an event."""
        self.callbacks += 1
        if getattr(self.local, 'is_called_back', False):
            return
        self.local.is_called_back = True
        try:
            grammar = OwnGrammar(self.seed + self.callbacks, self.object)
            for _ in range(2):
                self.random_call(grammar)
        finally:
            self.local.is_called_back = False

    # --- one thread ---

    def random_call(self, grammar):
        entry = grammar.random.choice(ENTRIES)
        made = grammar.arguments(entry)
        if not harmless(entry, made):
            return
        try:
            getattr(_Orvanel, entry.name)(*made)
            if entry.name == 'Orvanel_Convert2SelectionLineUS':
                # A malformed size leaves its error on purpose.
                drop_pending_error()
            self.accepted[entry.name] = self.accepted.get(entry.name, 0) + 1
        except REFUSALS:
            pass

    def locked(self, grammar):
        """Work under the host's own hold; nothing in it waits for the renderer, which waits for the hold."""
        self.call('LockTexture')
        try:
            for _ in range(3):
                self.random_call(grammar)
        finally:
            self.call('UnlockTexture')

    def step(self, grammar):
        kind = grammar.random.randrange(100)
        if kind < 3:
            self.create()
        elif kind < 4:
            self.call('VideoTextureSyncerClosed')
        elif kind < 10:
            self.locked(grammar)
        elif kind < 12:
            self.call('SetCallbackFunc', self.called_back)
        elif kind < 30:
            self.click(grammar.random.randrange(160), grammar.random.randrange(96))
        else:
            self.random_call(grammar)

    def work(self, number):
        try:
            grammar = OwnGrammar(1000 * self.seed + number, self.object)
            for _ in xrange(self.calls):
                self.step(grammar)
                self.steps[number] += 1
            self.at_rest.wait()
            # Everybody at once; each returns when it is done, whoever did it.
            assert self.call('Uninitialize') == 0
            self.steps[number] += 1
            for _ in range(20):
                self.random_call(grammar)
                self.steps[number] += 1
            self.at_rest.wait()
            # The first one does it; there is nothing left for the others.
            self.call('delete_Orvanel')
        except BaseException as failure:
            self.failures.append('thread %d: %r' % (number, failure))
            self.at_rest.give_up()
        self.steps[number] = None

    def run(self):
        threads = [threading.Thread(target=self.work, args=(number,)) for number in range(THREADS)]
        for thread in threads:
            thread.start()
        self.watch()
        for thread in threads:
            thread.join()

    def watch(self):
        """Goes through the clip meanwhile. The watchdog is put off whenever every thread has made a step."""
        seen = None
        while any(step is not None for step in self.steps):
            steps = list(self.steps)
            if seen is None or all(step is None or step > before for step, before in zip(steps, seen)):
                _watchdog.arm(PATIENCE, 'round %d' % self.seed)
                seen = steps
            self.renderer.hold(random.randrange(FRAMES), FULL_SPEED)
            time.sleep(0.01)
        _watchdog.arm(PATIENCE, 'the end of round %d' % self.seed)


class _Barrier(object):
    """Where threads wait for each other. One that fails sets everybody free."""

    def __init__(self, count):
        self.count, self.waiting, self.round, self.broken = count, 0, 0, False
        self.changed = threading.Condition()

    def wait(self):
        with self.changed:
            self.waiting += 1
            mine = self.round
            if self.waiting == self.count:
                self.waiting, self.round = 0, self.round + 1
                self.changed.notify_all()
            while self.round == mine and not self.broken:
                self.changed.wait(1)

    def give_up(self):
        with self.changed:
            self.broken = True
            self.changed.notify_all()


class EightThreads(unittest.TestCase):
    def setUp(self):
        folder = tempfile.mkdtemp(prefix='orvanel-threads-')
        self.addCleanup(shutil.rmtree, folder, True)
        self.clip = os.path.join(folder, 'clip.mp4')
        self.clock = write_clip(self.clip)
        # Wrong values that callables and settings print.
        self.errors, sys.stderr = sys.stderr, Silence()
        interval = sys.getcheckinterval()
        sys.setcheckinterval(10)
        self.addCleanup(sys.setcheckinterval, interval)
        self.addCleanup(_watchdog.disarm)

    def tearDown(self):
        sys.stderr = self.errors

    def run_round(self, seed, accepted):
        renderer_syncer = hostkit.VideoSyncer(self.clock)
        reader = hostkit.VideoReader(self.clip)
        renderer = hostkit.PreviewRenderer(reader, self.clock, renderer_syncer)
        try:
            renderer.hold(0, FULL_SPEED)
            round_ = Round(seed, CALLS_A_ROUND, self.clock, renderer)
            round_.run()
        finally:
            renderer.close()
        self.assertEqual(round_.failures, [], 'round %d' % seed)
        self.assertRaises(ValueError, _Orvanel.Orvanel_IsMask, round_.object)
        self.assertGreater(renderer.frames(), 0)
        self.assertGreater(round_.callbacks, 0)
        for name, count in round_.accepted.items():
            accepted[name] = accepted.get(name, 0) + count

    def test_everybody_at_once(self):
        accepted = {}
        seed = int(os.environ.get('ORVANEL_FUZZ_SEED', '1'))
        if not support.LONG_TESTS:
            for number in range(QUICK_ROUNDS):
                self.run_round(seed + number, accepted)
        else:
            end = time.time() + 60 * minutes(30)
            while time.time() < end:
                self.run_round(seed, accepted)
                seed += 1
        print '%d calls, the last round was %d' % (sum(accepted.values()), seed)
        never = [entry.name for entry in TABLE.entries if entry.name not in accepted]
        # Those without an object among their arguments have nothing to share.
        self.assertEqual(never, ['new_Orvanel', 'Orvanel_DumpBitmap', 'Orvanel_swigregister'])


if __name__ == '__main__':
    unittest.main()
