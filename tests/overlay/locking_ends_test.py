# SPDX-License-Identifier: MIT
"""Holds that end without UnlockTexture: with their thread, with the interpreter, or never."""
from __future__ import absolute_import

import unittest

from guarded import GuardedCase
from locking import LOCKING


class EndsOfThreads(GuardedCase):

    def test_a_hold_ends_with_its_thread(self):
        self.survives(LOCKING + """
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
        self.survives(LOCKING + """
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

    _LEAVING = LOCKING + """
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
other, mine, main = closed(), threading.Lock(), threading.current_thread()
class Callable(object):
    def __init__(self): self.arrived, self.gone = threading.Event(), threading.Event()
    def watch(self, editor):
        def call(code, arrived=self.arrived):
            if threading.current_thread() is main: return
            arrived.set()
            o.Orvanel_ReDraw(other)
            with mine: pass
        o.Orvanel_SetCallbackFunc(editor, call)
        self.call = weakref.ref(call, lambda ref: self.gone.set())
def last_event_came(attempt):
    editor, callable = closed(), Callable()
    callable.watch(editor)
    time.sleep(0.001 * attempt)
    o.Orvanel_LockTexture(other)
    with mine:
        thread, go = leaving(editor)
        o.delete_Orvanel(editor)
        go.set()
        assert ends(thread)
        while not (callable.arrived.is_set() or callable.gone.is_set()): time.sleep(0.001)
        for entry in range(1000): o.Orvanel_ReDraw(other)
        came = callable.arrived.is_set()
        assert came != callable.gone.is_set()
        o.Orvanel_UnlockTexture(other)
    assert callable.gone.wait(60)
    return came
# A worker that has not begun yet delivers no last event.
assert any(last_event_came(attempt) for attempt in range(1000))
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

    _KEPT = LOCKING + """
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
        self.survives(LOCKING + "editor = closed(); o.Orvanel_LockTexture(editor); print 'done'; sys.exit()\n")
        self.survives(LOCKING + "editor = closed(); o.Orvanel_LockTexture(editor); o.delete_Orvanel(editor); print 'done'; sys.exit()\n")

    def test_threads_that_the_main_one_waits_for_while_it_holds(self):
        self.survives(LOCKING + """
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
