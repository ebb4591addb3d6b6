# SPDX-License-Identifier: MIT
"""A process that forks with objects alive: the child has their memory and none of their threads."""
from __future__ import absolute_import

import os
import unittest

from guarded import GuardedCase

# The thread sanitizer ends a child that starts threads unless it is told not to.
os.environ["TSAN_OPTIONS"] = os.environ.get("TSAN_OPTIONS", "") + ":die_after_fork=0"
# It also keeps the identities of the threads that stayed behind, which the system gives to new ones in the child.
_child_threads = unittest.skipIf("libtsan" in os.environ.get("LD_PRELOAD", ""),
                                 "the thread sanitizer takes a forked child's new threads for its parent's")

_FORKING = """
import inspect, signal, traceback

def ended_well(pid):
    limit = time.time() + 60
    while time.time() < limit:
        ended, status = os.waitpid(pid, os.WNOHANG)
        if ended: return status == 0
        time.sleep(0.005)
    os.kill(pid, signal.SIGKILL)
    os.waitpid(pid, 0)
    print 'the child hangs'

def in_child(work, leave=os._exit):
    '''Whether a child that does the work ends well.'''
    pid = os.fork()
    if pid: return ended_well(pid)
    try:
        work()
        status = 0
    except:
        traceback.print_exc()
        status = 1
    sys.stdout.flush()
    leave(status)

def delivered(editor):
    '''Has the worker deliver once.'''
    arrived = threading.Event()
    o.Orvanel_SetCallbackFunc(editor, lambda code: arrived.set())
    o.Orvanel_DrawExistKeyFrame(editor, o.Orvanel_GetKeyFrameMaskInfo(editor, 0))
    return arrived.wait(60)
"""


class Child(GuardedCase):

    def test_deletes_an_object(self):
        self.survives(_FORKING + """
editor = closed()
assert delivered(editor)
assert in_child(lambda: o.delete_Orvanel(editor))
assert in_child(lambda: o.Orvanel_Uninitialize(editor))
assert in_child(lambda: (o.Orvanel_Uninitialize(editor), o.Orvanel_Uninitialize(editor), o.delete_Orvanel(editor)))
o.Orvanel_Uninitialize(editor)
assert in_child(lambda: o.delete_Orvanel(editor))
print 'done'
""")

    def test_exits(self):
        self.survives(_FORKING + """
editor = closed()
assert delivered(editor)
assert in_child(lambda: None, sys.exit)
assert in_child(lambda: o.delete_Orvanel(editor), sys.exit)
print 'done'
""")

    def test_drops_the_callable_of_what_it_deletes(self):
        self.survives(_FORKING + """
gone = []
class Callable(object):
    def __call__(self, code): pass
    def __del__(self, gone=gone): gone.append(1)
editor = closed()
o.Orvanel_SetCallbackFunc(editor, Callable())
def work(): o.delete_Orvanel(editor); assert gone
assert in_child(work) and not gone
print 'done'
""")

    def test_calls_every_entry(self):
        self.survives(_FORKING + """
editor = closed()
o.Orvanel_Create(editor, None, None, None)
assert delivered(editor)
heard = []
o.Orvanel_SetCallbackFunc(editor, heard.append)
def every_entry():
    record = o.Orvanel_GetKeyFrameMaskInfo(editor, 0)
    for name in sorted(dir(o)):
        if not name.startswith('Orvanel_') or name in ('Orvanel_swigregister', 'Orvanel_Uninitialize'): continue
        for arguments in ((), (1,), (1, 1), (1, 1, 1, 1), (100, 100, 0, 0, 100, 100), (record,), (record, record, 3), ((9, 9),),
                          ((1, 1), [(0.1, 0.1, 0.1)], (9, 9)), ([[1, 2, 3]],), ({0: False, 2: 'x' * 48},), (1, None), (None, None, None),
                          (lambda code: None,)):
            try: getattr(o, name)(editor, *arguments)
            except (TypeError, ValueError, NotImplementedError, OverflowError, SystemError): pass
    o.Orvanel_Uninitialize(editor)
assert in_child(every_entry)
assert in_child(every_entry, sys.exit)
print 'done'
""")

    @_child_threads
    def test_makes_objects_of_its_own(self):
        self.survives(_FORKING + """
editor = closed()
def work():
    own = closed()
    assert delivered(own)
    o.Orvanel_Create(own, None, None, None); o.Orvanel_ForceUpdateFrame(own)
    o.Orvanel_Uninitialize(own)
    o.delete_Orvanel(own)
    assert in_child(lambda: (o.delete_Orvanel(editor), closed()))
assert in_child(work)
assert in_child(work, sys.exit)
print 'done'
""")

    def test_of_a_process_that_holds_a_lock(self):
        self.survives(_FORKING + """
editor, free = closed(), closed()
locked, go = threading.Event(), threading.Event()
def keep(): o.Orvanel_LockTexture(editor); locked.set(); go.wait(100); o.Orvanel_UnlockTexture(editor)
keeper = on_a_thread(keep)
assert locked.wait(60)
o.Orvanel_LockTexture(free)
def work():
    for entry in (o.Orvanel_ReDraw, o.Orvanel_IsHoverControlPoint, o.Orvanel_GetCentroidUS, o.Orvanel_GetCurrentDevSetting,
                  o.Orvanel_LockTexture, o.Orvanel_Uninitialize):
        try: entry(editor); print entry, 'got it'
        except RuntimeError as error: assert 'fork' in str(error), error
    o.delete_Orvanel(editor)
    o.Orvanel_ReDraw(free); o.Orvanel_UnlockTexture(free) # the thread that forked keeps its own
assert in_child(work)
assert in_child(work, sys.exit)
go.set()
assert ends(keeper)
o.Orvanel_ReDraw(editor)
print 'done'
""")

    @_child_threads
    def test_of_a_process_that_deleted_what_a_thread_holds(self):
        self.survives(_FORKING + """
def leaving(editor):
    locked, go = threading.Event(), threading.Event()
    def leave(): o.Orvanel_LockTexture(editor); locked.set(); go.wait(100)
    thread = on_a_thread(leave)
    assert locked.wait(60)
    return thread, go
class Callable(object):
    def __init__(self, gone): self.gone = gone
    def __call__(self, code): pass
    def __del__(self): self.gone.set()
def watched():
    editor, gone = closed(), threading.Event()
    o.Orvanel_SetCallbackFunc(editor, Callable(gone))
    return editor, gone
def goes():
    editor, gone = watched()
    thread, go = leaving(editor)
    o.delete_Orvanel(editor)
    go.set()
    assert ends(thread) and gone.wait(60)
before = closed()
editor, gone = watched()
thread, go = leaving(editor)
o.delete_Orvanel(editor)
def leave_what_was_before(): # it stays, and the thread ends all the same
    thread, go = leaving(before)
    o.delete_Orvanel(before)
    go.set()
    assert ends(thread)
for leave in (os._exit, sys.exit):
    assert in_child(goes, leave)
    assert in_child(leave_what_was_before, leave)
go.set()
assert ends(thread) and gone.wait(60)
goes()
print 'done'
""")

    @_child_threads
    def test_at_any_moment(self):
        self.survives(_FORKING + """
editor = closed()
o.Orvanel_Create(editor, None, None, None)
o.Orvanel_SetCallbackFunc(editor, lambda code: None)
record = o.Orvanel_GetKeyFrameMaskInfo(editor, 0)
stop = []
def edit():
    step = 0
    while not stop:
        step += 1
        o.Orvanel_Interactive(editor, step % 3, step % 300, 50)
        o.Orvanel_DrawExistKeyFrame(editor, record)
        o.Orvanel_SetVideoCoordinate(editor, 400, 300, 0, 0, 400 + step % 2, 300)
        time.sleep(0)
threads = [on_a_thread(edit) for number in range(3)]
def work():
    try: o.Orvanel_ReDraw(editor); o.Orvanel_IsNeedHandleMouseEvent(editor)
    except RuntimeError as error: assert 'fork' in str(error), error
    assert delivered(closed())
    o.delete_Orvanel(editor)
for attempt in range(25):
    assert in_child(work, (os._exit, sys.exit)[attempt % 2])
stop.append(1)
assert all(map(ends, threads))
print 'done'
""")


if __name__ == "__main__":
    unittest.main()
