# SPDX-License-Identifier: MIT
"""LockTexture and UnlockTexture: whose hold is whose, and what a hold keeps alive."""
from __future__ import absolute_import

import unittest

from guarded import GuardedCase
from locking import LOCKING


class Holds(GuardedCase):

    def test_only_what_the_host_took_is_given_back(self):
        self.survives(LOCKING + """
editor = closed()
o.Orvanel_LockTexture(editor); o.Orvanel_LockTexture(editor)
waiting = on_a_thread(lambda: o.Orvanel_ReDraw(editor))
o.Orvanel_UnlockTexture(editor)
waiting.join(0.1)
assert waiting.is_alive()
for number in range(5): o.Orvanel_UnlockTexture(editor)
assert ends(waiting)
holder = Holder(editor)
assert holder.locked.wait(60)
o.Orvanel_UnlockTexture(editor) # another thread's hold stays
waiting = on_a_thread(lambda: o.Orvanel_ReDraw(editor))
waiting.join(0.1)
assert waiting.is_alive()
assert holder.unlock() and ends(waiting)
print 'done'
""")

    def test_a_conversion_that_unlocks_gives_nothing_of_the_entry_away(self):
        self.survives(LOCKING + """
class Unlocking(object):
    def __int__(self): o.Orvanel_UnlockTexture(editor); return 3
    def __float__(self): o.Orvanel_UnlockTexture(editor); return 0.3
n = Unlocking()
editor = closed()
stop = []
def draw():
    while not stop: o.Orvanel_ReDraw(editor); o.Orvanel_PrepareKeyframe(editor, 3)
threads = [on_a_thread(draw) for number in range(3)]
for attempt in range(300):
    o.Orvanel_SetDevSetting(editor, {0: attempt % 2 == 0, 2: [(n, n, n, n, n)] * 9, 3: [{4: n, 5: [(n, n, n, n, n)] * 9}]})
    o.Orvanel_AdjustPoints(editor, (n, n), [(n, n, n)], (n, n))
stop.append(1)
assert all(map(ends, threads))
print 'done'
""")


class Deletion(GuardedCase):

    def test_while_another_thread_holds(self):
        self.survives(LOCKING + """
editor, gone = watched()
holder = Holder(editor)
assert holder.locked.wait(60)
o.delete_Orvanel(editor)
o.delete_Orvanel(editor)
assert not gone.is_set() and not is_refused(editor)
assert holder.unlock()
assert gone.wait(60) and is_refused(editor)
print 'done'
""")

    def test_gives_no_other_thread_a_hold(self):
        self.survives(LOCKING + """
editor, gone = watched()
o.Orvanel_LockTexture(editor)
o.delete_Orvanel(editor)
refused = []
def lock():
    try: o.Orvanel_LockTexture(editor)
    except RuntimeError as error: refused.append(str(error))
assert ends(on_a_thread(lock)) and refused == ['the object has been deleted'], refused
o.Orvanel_LockTexture(editor) # whoever has one may nest
o.Orvanel_UnlockTexture(editor); o.Orvanel_UnlockTexture(editor)
assert gone.is_set() and is_refused(editor)
print 'done'
""")

    def test_waiters_get_on(self):
        self.survives(LOCKING + """
for attempt in range(10):
    editor, gone = watched()
    holder = Holder(editor)
    assert holder.locked.wait(60)
    drawing = on_a_thread(lambda: o.Orvanel_ReDraw(editor))
    others = [Holder(editor) for number in range(3)]
    time.sleep(0.01 * (attempt % 3))
    o.delete_Orvanel(editor)
    for other in others: other.go.set()
    assert holder.unlock() and ends(drawing) and all(other.unlock() for other in others)
    assert gone.wait(60) and is_refused(editor)
print 'done'
""")

    def test_by_the_thread_that_holds(self):
        self.survives(LOCKING + """
editor, gone = watched()
o.Orvanel_LockTexture(editor); o.Orvanel_LockTexture(editor)
o.delete_Orvanel(editor)
o.Orvanel_UnlockTexture(editor)
assert not gone.is_set()
o.Orvanel_UnlockTexture(editor)
assert gone.is_set() and is_refused(editor)
print 'done'
""")

    def test_of_the_last_reference_by_the_thread_that_holds(self):
        self.survives(LOCKING + """
editor, gone = watched()
o.Orvanel_LockTexture(editor); o.Orvanel_LockTexture(editor)
del editor
assert gone.is_set()
print 'done'
""")

    def test_of_an_object_whose_callable_waits_for_the_lock_of_another(self):
        self.survives(LOCKING + """
first = closed()
arrived = threading.Event()
def want(code):
    arrived.set()
    o.Orvanel_LockTexture(first)
    o.Orvanel_UnlockTexture(first)
o.Orvanel_LockTexture(first)
for attempt in range(1000): # a worker that has not begun yet delivers no last event
    second = closed()
    o.Orvanel_SetCallbackFunc(second, want)
    time.sleep(0.001 * attempt)
    o.delete_Orvanel(second)
    if arrived.is_set(): break
assert arrived.is_set()
waiting = on_a_thread(lambda: o.Orvanel_ReDraw(first))
waiting.join(0.1)
assert waiting.is_alive() # the hold is there again
o.Orvanel_UnlockTexture(first)
assert ends(waiting)
print 'done'
""")

    def test_while_it_is_locked_and_unlocked_all_the_time(self):
        self.survives(LOCKING + """
for attempt in range(30):
    editor, gone = watched()
    def lock():
        try:
            while True:
                o.Orvanel_LockTexture(editor)
                o.Orvanel_IsDirty(editor)
                o.Orvanel_UnlockTexture(editor)
        except (ValueError, RuntimeError): pass # it has gone, or is about to
    threads = [on_a_thread(lock) for number in range(3)]
    time.sleep(0.002 * (attempt % 5))
    o.delete_Orvanel(editor)
    assert all(map(ends, threads)) and gone.wait(60)
print 'done'
""")


if __name__ == "__main__":
    unittest.main()
