# SPDX-License-Identifier: MIT
"""Arguments and collections that run code of the host's in the middle of a call."""
from __future__ import absolute_import

import unittest

from guarded import GuardedCase

# Numbers whose conversion does something.
_HOSTILE = """
class Number(object):
    def __init__(self, act): self.act = act
    def __int__(self): self.act(); return 7
    __long__ = __int__
    def __float__(self): self.act(); return 0.5

class Index(object):
    '''Equal to a key of the setting: the look-up of that key runs the comparison.'''
    def __init__(self, key, act): self.key, self.act = key, act
    def __hash__(self): return hash(self.key)
    def __eq__(self, other): self.act(); return False

def churn():
    '''Fills the places of what was freed.'''
    return [[number] * size for number in range(200) for size in (8, 300)], ['%d' % number * 9 for number in range(200)]
"""


class CallersContainers(GuardedCase):

    def test_a_list_that_leaves_the_setting_while_it_is_read(self):
        self.survives(_HOSTILE + """
for key in (6, 8, 2, 3):
    for clear_the_list in (False, True):
        setting = {0: key == 3}
        def leave():
            held = setting.pop(key, None)
            if clear_the_list and held: del held[:]
            del held
            churn()
        hostile = Number(leave)
        if key in (6, 8): setting[key] = [[hostile, hostile, hostile] for number in range(300)]
        if key == 2: setting[key] = [(hostile, hostile, hostile, hostile, hostile) for number in range(300)]
        if key == 3: setting[key] = [{4: hostile, 5: [(hostile, 0.5, 0, 0, 0)] * 3} for number in range(300)]
        editor = o.new_Orvanel()
        o.Orvanel_SetDevSetting(editor, setting)
        o.Orvanel_GetCurrentDevSetting(editor)
        o.delete_Orvanel(editor)
print 'done'
""")

    def test_a_keyframe_that_empties_itself_while_it_is_read(self):
        self.survives(_HOSTILE + """
def frame(act_on):
    made = {}
    def leave(): made.clear(); churn()
    made.update({4: Number(leave), 5: [(Number(leave), 0.5, 0, 0, 0) for number in range(9)]})
    return made
editor = o.new_Orvanel()
o.Orvanel_SetDevSetting(editor, {0: True, 3: [frame(0) for number in range(20)]})
assert len(o.Orvanel_GetKeyFrameDurationList(editor)) == 20
o.Orvanel_GenerateSpecificKeyFrame(frame(0), frame(1), 3)
print 'done'
""")

    def test_a_key_that_is_compared(self):
        self.survives(_HOSTILE + """
for key in range(10):
    setting = {}
    def leave(): setting.clear(); churn()
    setting[Index(key, leave)] = 0
    for value in (True, [[1, 2, 3]], 'x' * 48):
        setting.update({0: True, 2: 'x' * 48, 3: [{4: 1, 5: 'x' * 48}], 6: [[1, 2, 3]], 8: [[1, 2, 3]], 1: True, 9: True})
        o.Orvanel_SetDevSetting(o.new_Orvanel(), setting)
        setting[Index(key, leave)] = 0
print 'done'
""")

    def test_lists_of_the_other_entries(self):
        self.survives(_HOSTILE + """
editor = closed()
def leave(): del items[:]; churn()
for entry in (o.Orvanel_SetFeathers, o.Orvanel_SetFeatherShifts):
    items = [[Number(leave), Number(leave), 1] for number in range(40)]
    entry(editor, items)
items = [(Number(leave), Number(leave), 0.5) for number in range(40)]
o.Orvanel_AdjustPoints(editor, (Number(leave), 0.5), items, (Number(leave), 10))
items = [(Number(leave), Number(leave), 0.5) for number in range(40)]
o.Orvanel_DumpBitmap(items, (Number(leave), 10), None)
print 'done'
""")

    def test_what_was_saved_before_a_hostile_setting_is_there_until_it_has_been_read(self):
        self.survives(_HOSTILE + """
editor = closed()
seen = []
look = Number(lambda: seen.append((o.Orvanel_IsMask(editor), len(o.Orvanel_GetKeyFrameDurationList(editor)))))
o.Orvanel_SetDevSetting(editor, {0: True, 3: [{4: look, 5: 'x' * 24}, {4: 9, 5: 'x' * 24}]})
assert seen == [(True, 1)], seen
assert o.Orvanel_GetKeyFrameDurationList(editor) == [7, 9]
print 'done'
""")


class PendingErrors(GuardedCase):

    # A collection that begins with an error pending ends the process.

    def test_between_the_arguments_of_a_fit(self):
        self.survives(_HOSTILE + """
editor = closed()
bad, collecting = 'no pair', Number(gc.collect)
for ignored in (bad, (1.0, bad), (collecting, collecting)):
    for runs in (bad, [bad, (collecting, 0.5, 0.5)], [(collecting, bad, 0.5)] * 3):
        for size in (bad, (bad, 3), (collecting, collecting)):
            assert o.Orvanel_AdjustPoints(editor, ignored, runs, size) is None
            for none in (): pass # a loop's end meets an error that was left
            assert o.Orvanel_DumpBitmap(runs, size, None) == 0
            for none in (): pass
print 'done'
""")

    def test_while_runs_are_listed(self):
        """The error that a malformed size leaves behind stays; the list is built without it."""
        self.survives(_HOSTILE + """
editor = closed()
for size in ('no pair', (300, 'x'), (300,)):
    gc.disable()
    kept = [[] for number in range(500)] # the next list is a new one, and begins a collection
    gc.set_threshold(1)
    gc.enable()
    try:
        o.Orvanel_Convert2SelectionLineUS(editor, size)
        for none in (): pass
        print 'no error was left'
    except (TypeError, SystemError): pass
print 'done'
""")


class Collections(GuardedCase):

    # Collections begin at every possible allocation of the entry, and what they run changes the object and looks at every
    # container there is.
    _SWEEP = _HOSTILE + """
class Thing(object): pass
RECORD = 'x' * 24

def full(editor):
    o.Orvanel_SetDevSetting(editor, {0: True, 3: [{4: number, 5: RECORD * 9} for number in range(30)],
                                     6: [[number, 1, 2] for number in range(30)], 8: [[number, 1, 2] for number in range(30)]})

def change(editor):
    o.Orvanel_SetFeathers(editor, [[1, 2, 3]] * 3)
    o.Orvanel_SetFeatherShifts(editor, [[1, 2, 3]] * 300)
    o.Orvanel_ClearPointsAndKeyFrame(editor)
    o.Orvanel_AddPoint(editor, 3, 4)

def look():
    for container in gc.get_objects():
        if type(container) in (list, tuple): [type(item) for item in container]
        elif type(container) is dict: container.values()

def sweep(call, prepare):
    gc.disable()
    fired = 0
    for allocation in range(1, 120):
        editor = o.new_Orvanel()
        prepare(editor)
        gc.collect()
        happened = []
        thing = Thing(); thing.me = thing
        witness = weakref.ref(thing, lambda gone: (happened.append(1), change(editor), look(), churn()))
        del thing
        gc.set_threshold(allocation)
        gc.enable()
        # Kept, so that the interpreter has to allocate.
        results = [call(editor) for number in range(12)]
        gc.disable()
        look()
        fired += len(happened)
        gc.collect()
        o.delete_Orvanel(editor)
    assert fired
"""

    def _sweeps(self, entry, prepare="full"):
        self.survives(self._SWEEP + "sweep(%s, %s)\nprint 'done'\n" % (entry, prepare))

    def test_feathers(self):
        self._sweeps("o.Orvanel_GetFeathers")

    def test_feather_shifts(self):
        self._sweeps("o.Orvanel_GetFeatherShifts")

    def test_positions_of_keyframes(self):
        self._sweeps("o.Orvanel_GetKeyFrameDurationList")

    def test_a_saved_mask(self):
        self._sweeps("o.Orvanel_GetCurrentDevSetting")

    def test_a_saved_outline(self):
        self._sweeps("o.Orvanel_GetCurrentDevSetting", "lambda editor: [o.Orvanel_AddPoint(editor, n, n) for n in range(9)]")

    def test_points(self):
        self._sweeps("lambda editor: [o.Orvanel_GetCurrentPoints(editor)]")

    def test_the_dirty_rectangle_and_the_centroid(self):
        self._sweeps("lambda editor: (o.Orvanel_GetDirtyRect(editor), o.Orvanel_GetCentroidUS(editor))")

    def test_runs(self):
        self._sweeps("lambda editor: o.Orvanel_Convert2SelectionLineUS(editor, (90, 90))", "closed")

    def test_a_generated_keyframe(self):
        self._sweeps("lambda editor: o.Orvanel_GenerateSpecificKeyFrame({4: 1, 5: RECORD * 30}, {4: 2, 5: RECORD * 30}, 1)")

    def test_restoring_a_setting(self):
        self._sweeps("full", "closed")


class WhileTheLockIsWanted(GuardedCase):
    """Code of the host's waits for a thread that needs the object: no lock may be held around it."""

    _WAITS = _HOSTILE + """
def elsewhere(editor):
    '''Another thread draws the object, which takes the lock, and is waited for.'''
    assert ends(on_a_thread(lambda: o.Orvanel_ReDraw(editor)))
"""

    def test_while_arguments_are_converted(self):
        self.survives(self._WAITS + """
editor = closed()
wait = Number(lambda: elsewhere(editor))
o.Orvanel_SetFeathers(editor, [[wait, wait, wait]])
o.Orvanel_SetDevSetting(editor, {0: True, 3: [{4: wait, 5: [(wait, wait, wait, wait, wait)]}], 6: [[wait, 1, 1]]})
o.Orvanel_SetDevSetting(editor, {0: False, 2: [(wait, wait, wait, wait, wait)], Index(2, lambda: elsewhere(editor)): 0})
editor = closed()
o.Orvanel_Convert2SelectionLineUS(editor, (wait, wait))
o.Orvanel_AdjustPoints(editor, (wait, wait), [(wait, wait, wait)], (wait, wait))
print 'done'
""")

    def test_while_results_are_built(self):
        self.survives(self._WAITS + """
class Thing(object): pass
entries = [lambda: o.Orvanel_GetCurrentDevSetting(editor), lambda: o.Orvanel_GetKeyFrameDurationList(editor),
           lambda: o.Orvanel_GetFeathers(editor), lambda: o.Orvanel_GetDirtyRect(editor), lambda: o.Orvanel_GetCentroidUS(editor),
           lambda: o.Orvanel_Convert2SelectionLineUS(editor, (50, 50)), lambda: o.Orvanel_GetCurrentPoints(editor)]
for entry in entries:
    for allocation in range(1, 12):
        gc.disable()
        editor = closed()
        thing = Thing(); thing.me = thing
        witness = weakref.ref(thing, lambda gone: elsewhere(editor))
        del thing
        gc.set_threshold(allocation); gc.enable()
        entry()
        gc.disable()
        gc.collect()
        o.delete_Orvanel(editor)
print 'done'
""")

    def test_a_callable_that_is_dropped(self):
        self.survives(self._WAITS + """
class Callable(object):
    def __call__(self, code): pass
    def __del__(self): elsewhere(editor)
editor = closed()
for number in range(3):
    o.Orvanel_SetCallbackFunc(editor, Callable())
o.Orvanel_SetCallbackFunc(editor, None)
print 'done'
""")


if __name__ == "__main__":
    unittest.main()
