# SPDX-License-Identifier: MIT
"""Events from the object to Python: order, threads, callables that misbehave, and the interpreter's end."""

import sys
import threading
import unittest

import _Orvanel
import support
from support import run_script

SETUP = '''
import sys, threading, time, _Orvanel as o
class Proxy(object):
    __swig_destroy__ = o.delete_Orvanel
    def __init__(self): self.this = o.new_Orvanel()
o.Orvanel_swigregister(Proxy)
def closed(object):
    o.Orvanel_SetVideoCoordinate(object, 100, 100, 0, 0, 100, 100)
    for x, y in ((10, 10), (90, 10), (50, 90), (10, 10)):
        o.Orvanel_Interactive(object, o.ECS_MOUSE_DOWN, x, y)
        o.Orvanel_Interactive(object, o.ECS_MOUSE_UP, x, y)
    return object
'''
EXEC = {}
exec SETUP in EXEC
closed = EXEC['closed']


class Events(unittest.TestCase):
    def setUp(self):
        self.object = support.Orvanel()
        self.events = []
        _Orvanel.Orvanel_SetCallbackFunc(self.object, self.events.append)

    def test_call_back_passes_one_argument(self):
        heard = []
        _Orvanel.Orvanel_SetCallbackFunc(self.object, lambda *arguments: heard.append(arguments))
        self.assertIsNone(_Orvanel.Orvanel_CallBack(self.object, 3))
        self.assertEqual(heard, [(3,)])
        self.assertIs(type(heard[0][0]), int)

    def test_none_unregisters(self):
        self.assertEqual(_Orvanel.Orvanel_SetCallbackFunc(self.object, None), 0)
        _Orvanel.Orvanel_CallBack(self.object, 3)
        _Orvanel.Orvanel_AddPoint(self.object, 1, 1)
        self.assertEqual(self.events, [])

    def test_replacing_drops_one_reference(self):
        def callable(code):
            pass
        before = sys.getrefcount(callable)
        _Orvanel.Orvanel_SetCallbackFunc(self.object, callable)
        self.assertEqual(sys.getrefcount(callable), before + 1)
        _Orvanel.Orvanel_SetCallbackFunc(self.object, callable)
        self.assertEqual(sys.getrefcount(callable), before + 1)
        _Orvanel.Orvanel_SetCallbackFunc(self.object, repr)
        self.assertEqual(sys.getrefcount(callable), before)

    def test_drawing_and_closing(self):
        closed(self.object)
        self.assertEqual(self.events[:3], [_Orvanel.ECB_POINT_ADD] * 3)
        self.assertEqual(self.events[3], _Orvanel.ECB_MASK_CREATE)

    def test_interactive_delivers_on_the_calling_thread_before_it_returns(self):
        threads = []
        _Orvanel.Orvanel_SetCallbackFunc(self.object, lambda code: threads.append(threading.current_thread()))
        _Orvanel.Orvanel_SetVideoCoordinate(self.object, 100, 100, 0, 0, 100, 100)
        _Orvanel.Orvanel_Interactive(self.object, _Orvanel.ECS_MOUSE_DOWN, 10, 10)
        self.assertEqual(threads, [threading.current_thread()])

    def test_a_drawn_keyframe_is_reported_by_the_worker(self):
        closed(self.object)
        arrived = threading.Event()
        where = []

        def note(code):
            where.append((code, threading.current_thread()))
            arrived.set()
        _Orvanel.Orvanel_SetCallbackFunc(self.object, note)
        record = _Orvanel.Orvanel_GetKeyFrameMaskInfo(self.object, 0)
        _Orvanel.Orvanel_DrawExistKeyFrame(self.object, record)
        self.assertTrue(arrived.wait(20))
        self.assertEqual(where[0][0], _Orvanel.ECB_POINT_UPDATE)
        self.assertIsNot(where[0][1], threading.current_thread())

    def test_a_callable_may_use_the_object(self):
        def use(code):
            self.events.append((code, _Orvanel.Orvanel_IsMask(self.object), len(_Orvanel.Orvanel_GetCurrentPoints(self.object) or '')))
            if len(self.events) < 3:
                _Orvanel.Orvanel_AddPoint(self.object, 5, 5)
        _Orvanel.Orvanel_SetCallbackFunc(self.object, use)
        _Orvanel.Orvanel_AddPoint(self.object, 1, 1)
        self.assertEqual([event[2] // 24 for event in self.events], [1, 4, 7])

    def test_a_callable_may_replace_and_unregister_itself(self):
        def first(code):
            _Orvanel.Orvanel_SetCallbackFunc(self.object, second)
            self.events.append('first')

        def second(code):
            _Orvanel.Orvanel_SetCallbackFunc(self.object, None)
            self.events.append('second')
        _Orvanel.Orvanel_SetCallbackFunc(self.object, first)
        for _ in range(3):
            _Orvanel.Orvanel_CallBack(self.object, 1)
        self.assertEqual(self.events, ['first', 'second'])


class Script(unittest.TestCase):
    """Runs in an interpreter of its own that must end by itself, with this output."""

    def check(self, script, out='done\n', errors=None):
        found = run_script(SETUP + script)
        self.assertEqual((found[0], found[2]), (out, 0), found)
        if errors is None:
            self.assertEqual(found[1], '')
        else:
            for text, counts in errors:
                self.assertIn(found[1].count(text), counts, found[1])



class Callables(Script):
    def test_a_callable_that_raises(self):
        self.check('''
object = Proxy()
def bad(code): raise ValueError('code %d' % code)
o.Orvanel_SetCallbackFunc(object, bad)
assert o.Orvanel_AddPoint(object, 1, 1) == -2147467259
assert o.Orvanel_AddPoint(object, 2, 2) == -2147467259
assert len(o.Orvanel_GetCurrentPoints(object)) == 4 * 24
print 'done'
''', errors=[('ValueError: code 0', (2,)), ('Traceback', (2,))])

    def test_a_callable_that_exits(self):
        self.check('''
object = Proxy()
o.Orvanel_SetCallbackFunc(object, sys.exit)
o.Orvanel_CallBack(object, 3)
print 'done'
''', errors=[('SystemExit: 3', (1,))])

    def test_a_callable_that_raises_on_the_worker(self):
        self.check('''
object = closed(Proxy())
def bad(code):
    try: raise KeyError(code)
    finally: heard.set()
heard = threading.Event()
o.Orvanel_SetCallbackFunc(object, bad)
o.Orvanel_DrawExistKeyFrame(object, o.Orvanel_GetKeyFrameMaskInfo(object, 0))
assert heard.wait(20)
# The worker may report once more when it is told to stop.
o.Orvanel_Uninitialize(object)
o.Orvanel_SetCallbackFunc(object, None)
print 'done'
''', errors=[('KeyError: 5', (1, 2)), ('Traceback', (1, 2))])

    def test_a_callable_that_drops_the_last_reference(self):
        self.check('''
holder = [Proxy()]
def drop(code):
    if holder: print 'dropped'
    del holder[:]
o.Orvanel_SetCallbackFunc(holder[0], drop)
o.Orvanel_CallBack(holder[0], 1)
assert not holder
print 'done'
''', 'dropped\ndone\n')

    def test_a_callable_that_takes_the_pointer_out_of_the_proxy(self):
        self.check('''
proxy = Proxy()
o.Orvanel_SetVideoCoordinate(proxy, 100, 100, 0, 0, 100, 100)
def drop(code):
    if code != o.ECB_POINT_UPDATE: del proxy.this; print code
o.Orvanel_SetCallbackFunc(proxy, drop)
o.Orvanel_Interactive(proxy, o.ECS_MOUSE_DOWN, 10, 10)
assert not hasattr(proxy, 'this')
print 'done'
''', '0\ndone\n')

    def test_a_callable_that_deletes_the_object(self):
        self.check('''
proxy = Proxy()
o.Orvanel_SetVideoCoordinate(proxy, 100, 100, 0, 0, 100, 100)
def delete(code):
    if code != o.ECB_POINT_UPDATE: o.delete_Orvanel(proxy); print code
for call, arguments in ((o.Orvanel_Interactive, (o.ECS_MOUSE_DOWN, 10, 10)), (o.Orvanel_AddPoint, (1, 1)), (o.Orvanel_CallBack, (4,))):
    proxy = Proxy()
    o.Orvanel_SetVideoCoordinate(proxy, 100, 100, 0, 0, 100, 100)
    o.Orvanel_SetCallbackFunc(proxy, delete)
    call(proxy, *arguments)
    assert not proxy.this.own()
print 'done'
''', '0\n0\n4\ndone\n')

    def test_a_worker_whose_callable_drops_the_last_reference(self):
        self.check('''
for way in ('drop', 'delete') * 5:
    holder = [closed(Proxy())]
    gone = threading.Event()
    class Callable(object):
        def __call__(self, code):
            if code != o.ECB_POINT_UPDATE: return
            if way == 'delete': o.delete_Orvanel(holder[0])
            del holder[:]
        def __del__(self): gone.set()
    o.Orvanel_SetCallbackFunc(holder[0], Callable())
    o.Orvanel_DrawExistKeyFrame(holder[0], o.Orvanel_GetKeyFrameMaskInfo(holder[0], 0))
    assert gone.wait(20)
print 'done'
''')

    def test_deleting_while_another_thread_is_inside(self):
        self.check('''
proxy = Proxy()
o.Orvanel_SetVideoCoordinate(proxy, 100, 100, 0, 0, 100, 100)
inside, go = threading.Event(), threading.Event()
def wait(code): inside.set(); go.wait(20)
o.Orvanel_SetCallbackFunc(proxy, wait)
thread = threading.Thread(target=lambda: o.Orvanel_Interactive(proxy, o.ECS_MOUSE_DOWN, 10, 10))
thread.start()
assert inside.wait(20)
o.delete_Orvanel(proxy)
go.set()
thread.join()
print 'done'
''')

    def test_uninitialize_while_the_worker_delivers(self):
        self.check('''
for round in range(20):
    object = closed(Proxy())
    record = o.Orvanel_GetKeyFrameMaskInfo(object, 0)
    o.Orvanel_SetCallbackFunc(object, lambda code: time.sleep(0.002))
    o.Orvanel_DrawExistKeyFrame(object, record)
    if round % 2: time.sleep(0.001)
    o.Orvanel_Uninitialize(object)
print 'done'
''')

    def test_many_threads(self):
        self.check('''
object = closed(Proxy())
heard = []
o.Orvanel_SetCallbackFunc(object, heard.append)
record = o.Orvanel_GetKeyFrameMaskInfo(object, 0)
def edit():
    for step in range(200):
        o.Orvanel_Interactive(object, step % 3, step % 100, 50)
        o.Orvanel_AddPoint(object, step % 100, step % 100)
        o.Orvanel_PrepareKeyframe(object, step)
def draw():
    for step in range(200):
        o.Orvanel_DrawExistKeyFrame(object, record)
        o.Orvanel_SetCallbackFunc(object, heard.append if step % 2 else None)
def lock():
    for step in range(200):
        o.Orvanel_LockTexture(object); o.Orvanel_IsDirty(object); o.Orvanel_UnlockTexture(object)
threads = [threading.Thread(target=work) for work in (edit, edit, draw, lock)]
for thread in threads: thread.start()
for thread in threads: thread.join(100)
assert not any(thread.is_alive() for thread in threads)
print 'done'
''')


class InterpreterEnd(Script):
    def test_an_object_left_over(self):
        self.check('object = closed(Proxy())\no.Orvanel_SetCallbackFunc(object, len)\nprint "done"\n')

    def test_an_object_in_a_circle_that_is_never_collected(self):
        self.check('''
class Circle(object):
    def __del__(self): pass
circle = Circle()
circle.me, circle.object = circle, closed(Proxy())
o.Orvanel_SetCallbackFunc(circle.object, lambda code: circle)
print 'done'
''')

    def test_an_object_that_outlives_the_interpreter(self):
        self.check('''
import ctypes
object = closed(Proxy())
o.Orvanel_SetCallbackFunc(object, lambda code: object)
ctypes.pythonapi.Py_IncRef(ctypes.py_object(object))
print 'done'
''')

    def test_a_worker_that_delivers_while_the_interpreter_ends(self):
        # The daemon thread keeps the object, or loses it with the names of the main module.
        for names, errors in (('draw=o.Orvanel_DrawExistKeyFrame, object=object, record=record', None), ('draw=lambda *pair: o.Orvanel_DrawExistKeyFrame(*pair)', None)):
            for pause in (0, 0.001, 0.01):
                self.check('''
object = closed(Proxy())
record = o.Orvanel_GetKeyFrameMaskInfo(object, 0)
def busy(code, sleep=time.sleep): sleep(%r)
o.Orvanel_SetCallbackFunc(object, busy)
def trigger(%s, sleep=time.sleep):
    try:
        while True: draw(object, record)
    except: sleep(1000) # what is left of the interpreter is no place to run in
thread = threading.Thread(target=trigger)
thread.daemon = True
thread.start()
time.sleep(0.05)
print 'done'
''' % (pause, names), errors=errors)

    def test_a_callable_that_raises_events_when_it_dies(self):
        self.check('''
class Dying(object):
    def __call__(self, code): pass
    def __del__(self):
        # The module's names may be gone by now.
        if o: o.Orvanel_CallBack(other, 1)
object, other = Proxy(), Proxy()
o.Orvanel_SetCallbackFunc(object, Dying())
o.Orvanel_SetCallbackFunc(other, lambda code: sys.stdout.write('too late'))
print 'done'
''')

    def test_events_in_exit_functions(self):
        self.check('''
import atexit
object = Proxy()
o.Orvanel_SetCallbackFunc(object, lambda code: sys.stdout.write('event %d\\n' % code))
atexit.register(o.Orvanel_CallBack, object, 2)
print 'done'
''', 'done\nevent 2\n')

    def test_an_exit_function_of_its_own(self):
        self.check('''
object = closed(Proxy())
sys.exitfunc = lambda: sys.stdout.write('mine\\n')
o.Orvanel_SetCallbackFunc(object, lambda code: time.sleep(0.001))
record = o.Orvanel_GetKeyFrameMaskInfo(object, 0)
def trigger(draw=o.Orvanel_DrawExistKeyFrame, object=object, record=record):
    while True: draw(object, record)
thread = threading.Thread(target=trigger); thread.daemon = True; thread.start()
time.sleep(0.03)
print 'done'
''', 'done\nmine\n')

    def test_exit_with_a_status(self):
        out, errors, status = run_script(SETUP + 'object = closed(Proxy())\no.Orvanel_SetCallbackFunc(object, len)\nsys.exit(7)\n')
        self.assertEqual((out, errors, status), ('', '', 7))


if __name__ == '__main__':
    unittest.main()
