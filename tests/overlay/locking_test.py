# SPDX-License-Identifier: MIT
"""LockTexture and UnlockTexture: whose hold is whose, what a hold keeps alive, and when it ends without its holder."""
from __future__ import absolute_import

import unittest

from guarded import GuardedCase

_LOCKING = """
class Witness(object):
    '''A callable that goes with its object.'''
    def __init__(self): self.gone = threading.Event()
    def __call__(self, code): pass

def watched():
    '''An editor, and an event that is set when it is destroyed.'''
    editor, gone = closed(), threading.Event()
    class Callable(object):
        def __call__(self, code): pass
        def __del__(self): gone.set()
    o.Orvanel_SetCallbackFunc(editor, Callable())
    return editor, gone

class Holder(object):
    '''A thread that locks an editor's texture, and unlocks it when it is told to.'''
    def __init__(self, editor):
        self.locked, self.go = threading.Event(), threading.Event()
        def hold():
            try: o.Orvanel_LockTexture(editor)
            except (ValueError, RuntimeError): return # it was deleted before
            self.locked.set()
            self.go.wait(100)
            o.Orvanel_UnlockTexture(editor)
        self.thread = on_a_thread(hold)
    def unlock(self):
        self.go.set()
        return ends(self.thread)

def is_refused(editor):
    try: o.Orvanel_IsDirty(editor)
    except ValueError: return True
"""


class Holds(GuardedCase):

    def test_only_what_the_host_took_is_given_back(self):
        self.survives(_LOCKING + """
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
        self.survives(_LOCKING + """
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
        self.survives(_LOCKING + """
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
        self.survives(_LOCKING + """
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
        self.survives(_LOCKING + """
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
        self.survives(_LOCKING + """
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
        self.survives(_LOCKING + """
editor, gone = watched()
o.Orvanel_LockTexture(editor); o.Orvanel_LockTexture(editor)
del editor
assert gone.is_set()
print 'done'
""")

    def test_while_it_is_locked_and_unlocked_all_the_time(self):
        self.survives(_LOCKING + """
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


class EndsOfThreads(GuardedCase):

    def test_a_hold_ends_with_its_thread(self):
        self.survives(_LOCKING + """
def leave(): o.Orvanel_LockTexture(editor); o.Orvanel_LockTexture(editor)
def leave_by_exit(): leave(); sys.exit()
def leave_by_thread_exit(): leave(); thread.exit()
for way in (leave, leave_by_exit, leave_by_thread_exit):
    editor, gone = watched()
    waiting = on_a_thread(lambda: None)
    assert ends(on_a_thread(way))
    assert ends(on_a_thread(lambda: o.Orvanel_ReDraw(editor)))
    o.Orvanel_LockTexture(editor); o.Orvanel_UnlockTexture(editor)
    o.delete_Orvanel(editor)
    assert gone.is_set() and is_refused(editor), way
print 'done'
""")

    def test_a_waiter_gets_what_a_thread_left(self):
        self.survives(_LOCKING + """
editor, gone = watched()
locked, go = threading.Event(), threading.Event()
def leave(): o.Orvanel_LockTexture(editor); locked.set(); go.wait(60)
leaving = on_a_thread(leave)
assert locked.wait(60)
waiting = on_a_thread(lambda: o.Orvanel_ReDraw(editor))
o.delete_Orvanel(editor) # the hold keeps it
go.set()
assert ends(leaving) and ends(waiting)
assert gone.wait(60)
print 'done'
""")


class DeletedAndAbandoned(GuardedCase):
    """The object goes with its last hold although nobody calls it any more."""

    _LEAVING = _LOCKING + """
def leaving(editor, holds=1):
    locked, go = threading.Event(), threading.Event()
    def leave():
        for number in range(holds): o.Orvanel_LockTexture(editor)
        locked.set()
        go.wait(100)
    thread = on_a_thread(leave)
    assert locked.wait(60)
    return thread, go
"""

    def test_goes(self):
        self.survives(self._LEAVING + """
def uninitialised(editor): o.Orvanel_Uninitialize(editor)
def deleted_twice(editor): o.delete_Orvanel(editor)
for holds in (1, 3):
    for before, after in ((None, None), (uninitialised, None), (None, deleted_twice)):
        editor, gone = watched()
        if before: before(editor)
        thread, go = leaving(editor, holds)
        o.delete_Orvanel(editor)
        if after: after(editor)
        assert not gone.is_set()
        go.set()
        assert ends(thread) and gone.wait(60) and is_refused(editor)
print 'done'
""")

    def test_by_a_thread_that_has_just_ended(self):
        self.survives(self._LEAVING + """
for attempt in range(100):
    editor, gone = watched()
    thread, go = leaving(editor)
    go.set()
    time.sleep(0.0002 * (attempt % 7))
    o.delete_Orvanel(editor)
    assert gone.wait(60) and is_refused(editor) and ends(thread)
print 'done'
""")

    def test_while_others_wait_for_it(self):
        self.survives(self._LEAVING + """
for attempt in range(10):
    editor, gone = watched()
    thread, go = leaving(editor)
    others = [Holder(editor) for number in range(3)]
    time.sleep(0.01 * (attempt % 3))
    o.delete_Orvanel(editor)
    for other in others: other.go.set()
    go.set()
    assert ends(thread) and all(other.unlock() for other in others)
    assert gone.wait(60) and is_refused(editor)
print 'done'
""")

    def test_with_the_last_reference(self):
        self.survives(self._LEAVING + """
editor, gone = watched()
locked, go = threading.Event(), threading.Event()
def leave(editors):
    editor = editors.pop()
    o.Orvanel_LockTexture(editor)
    del editor
    locked.set()
    go.wait(100)
editors = [o.new_Orvanel()]
class Callable(object):
    def __call__(self, code): pass
    def __del__(self): gone.set()
gone = threading.Event()
o.Orvanel_SetCallbackFunc(editors[0], Callable())
kept = editors[0]
thread = on_a_thread(lambda: leave(editors))
assert locked.wait(60)
del kept
assert not gone.is_set()
go.set()
assert ends(thread) and gone.wait(60)
print 'done'
""")

    def test_keeps_nobody_waiting(self):
        # The worker's last event, which the destruction waits for, wants what the main thread has all the while.
        self.survives(self._LEAVING + """
other, mine = closed(), threading.Lock()
editor = closed()
arrived, gone = threading.Event(), threading.Event()
class Callable(object):
    def __call__(self, code):
        if threading.current_thread() is main: return
        arrived.set()
        o.Orvanel_ReDraw(other)
        with mine: pass
    def __del__(self): gone.set()
main = threading.current_thread()
o.Orvanel_SetCallbackFunc(editor, Callable())
o.Orvanel_LockTexture(other)
with mine:
    thread, go = leaving(editor)
    o.delete_Orvanel(editor)
    go.set()
    assert ends(thread) and arrived.wait(60)
    for entry in range(1000): o.Orvanel_ReDraw(other)
    assert not gone.is_set()
    o.Orvanel_UnlockTexture(other)
assert gone.wait(60)
print 'done'
""")

    def test_leaves_no_thread_behind(self):
        self.survives(self._LEAVING + """
def threads(): return len(os.listdir('/proc/self/task'))
if not os.path.isdir('/proc/self/task'): print 'done'; sys.exit()
editor, gone = watched(); o.delete_Orvanel(editor)
before = threads()
for way in range(10):
    editor, gone = watched()
    if way % 2:
        thread, go = leaving(editor)
        o.delete_Orvanel(editor)
        go.set()
        assert ends(thread)
    else:
        o.Orvanel_LockTexture(editor)
        o.delete_Orvanel(editor)
        o.Orvanel_UnlockTexture(editor)
    assert gone.wait(60)
limit = time.time() + 60
while threads() > before and time.time() < limit: time.sleep(0.01)
assert threads() <= before
print 'done'
""")

    def test_when_the_interpreter_ends(self):
        self.survives(self._LEAVING + """
go = thread.allocate_lock()
go.acquire()
def leave(editor, locked, Lock=o.Orvanel_LockTexture, go=go):
    Lock(editor)
    locked.release()
    go.acquire()
    go.release()
for attempt in range(3):
    editor, locked = closed(), thread.allocate_lock()
    locked.acquire()
    thread.start_new_thread(leave, (editor, locked))
    locked.acquire()
    o.delete_Orvanel(editor)
print 'done'
go.release()
""")


class InterpreterEnd(GuardedCase):

    _KEPT = _LOCKING + """
editor = closed()
locked = threading.Event()
def keep(): o.Orvanel_LockTexture(editor); locked.set(); time.sleep(1000)
on_a_thread(keep)
assert locked.wait(60)
"""

    def test_a_lock_that_is_never_released(self):
        self.survives(self._KEPT + "print 'done'\n")

    def test_a_thread_that_waits_for_such_a_lock(self):
        self.survives(self._KEPT + "on_a_thread(lambda: o.Orvanel_ReDraw(editor)); time.sleep(0.1)\nprint 'done'\n")

    def test_an_exit_function_that_needs_it_is_refused(self):
        self.survives(self._KEPT + """
import atexit
def finish():
    try: o.Orvanel_Uninitialize(editor); print 'got it'
    except RuntimeError as error: print error
atexit.register(finish)
print 'done'
""", "done\nthe interpreter is ending while another thread keeps the texture locked")

    def test_exit_while_holding(self):
        self.survives(_LOCKING + "editor = closed(); o.Orvanel_LockTexture(editor); print 'done'; sys.exit()\n")
        self.survives(_LOCKING + "editor = closed(); o.Orvanel_LockTexture(editor); o.delete_Orvanel(editor); print 'done'; sys.exit()\n")

    def test_threads_that_the_main_one_waits_for_while_it_holds(self):
        self.survives(_LOCKING + """
editor = closed()
o.Orvanel_LockTexture(editor)
def draw():
    try: o.Orvanel_ReDraw(editor); print 'got it'
    except RuntimeError as error: print error
threading.Thread(target=draw).start()
print 'done'
sys.exit()
""", "done\nthe interpreter is ending while another thread keeps the texture locked")

    def test_a_worker_that_waits_for_such_a_lock(self):
        self.survives(self._KEPT + """
arrived = threading.Event()
def draw(code, draw=o.Orvanel_ReDraw, editor=editor, Refused=RuntimeError):
    arrived.set()
    try: draw(editor)
    except Refused: pass
other = closed()
o.Orvanel_SetCallbackFunc(other, draw)
o.Orvanel_DrawExistKeyFrame(other, o.Orvanel_GetKeyFrameMaskInfo(other, 0))
assert arrived.wait(60)
print 'done'
""")


if __name__ == "__main__":
    unittest.main()
