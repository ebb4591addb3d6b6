# SPDX-License-Identifier: MIT
"""A thousand objects leave nothing behind: handles, GDI objects and windows are as many as before.

The system's own counters are asked, and, since not every version of it keeps them, the places that are left as well.
"""
from __future__ import absolute_import

import ctypes
import unittest
from ctypes import wintypes

import _Orvanel
from hidden_windows import hidden_windows

OBJECTS = 1000
# One leak an object would be a thousand. What grows once, such as a class or a cache, stays far below.
FEW = 20

kernel32, user32, gdi32 = ctypes.WinDLL("kernel32"), ctypes.WinDLL("user32"), ctypes.WinDLL("gdi32")
kernel32.GetCurrentProcess.restype = kernel32.CreateEventW.restype = ctypes.c_void_p
kernel32.GetProcessHandleCount.argtypes = [ctypes.c_void_p, ctypes.POINTER(wintypes.DWORD)]
kernel32.CloseHandle.argtypes = gdi32.DeleteObject.argtypes = [ctypes.c_void_p]
gdi32.CreateSolidBrush.restype = ctypes.c_void_p
user32.GetGuiResources.argtypes = [ctypes.c_void_p, wintypes.DWORD]
_GDI, _USER = 0, 1


def counters():
    """Handles, GDI and user objects as the system counts them; 0 where it does not."""
    process, handles = kernel32.GetCurrentProcess(), wintypes.DWORD()
    kernel32.GetProcessHandleCount(process, ctypes.byref(handles))
    return [handles.value, user32.GetGuiResources(process, _GDI), user32.GetGuiResources(process, _USER)]


def highest_new_handle():
    """The table of handles fills from below, so a new one's number tells how many there are."""
    events = [kernel32.CreateEventW(None, 0, 0, None) for _ in range(16)]
    for event in events:
        kernel32.CloseHandle(event)
    return max(events) // 4


def room_for_brushes():
    """How many GDI objects can still be made."""
    brushes = []
    while True:
        brush = gdi32.CreateSolidBrush(len(brushes))
        if not brush:
            break
        brushes.append(brush)
    for brush in brushes:
        gdi32.DeleteObject(brush)
    return len(brushes)


def measure():
    return counters() + [highest_new_handle(), -room_for_brushes(), len(hidden_windows())]


NAMES = ("handles", "GDI objects", "user objects", "numbers of handles", "GDI objects (by the room left)", "windows")


def use(number):
    """One object's life: drawn on, closed, turned into a mask, saved and restored, drawn for a time."""
    editor = _Orvanel.new_Orvanel()
    _Orvanel.Orvanel_SetCallbackFunc(editor, lambda code: None)
    _Orvanel.Orvanel_SetVideoCoordinate(editor, 64, 48, 0, 0, 64, 48)
    for x, y in ((8, 8), (56, 8), (30, 40), (8, 8)):
        _Orvanel.Orvanel_Interactive(editor, _Orvanel.ECS_MOUSE_DOWN, x, y)
        _Orvanel.Orvanel_Interactive(editor, _Orvanel.ECS_MOUSE_UP)
    assert _Orvanel.Orvanel_IsMask(editor)
    assert _Orvanel.Orvanel_Convert2SelectionLineUS(editor, (64, 48))
    assert _Orvanel.Orvanel_PrepareKeyframe(editor, 0) is not None, "the drawing component is not registered"
    _Orvanel.Orvanel_CacheCurrentKeyframe(editor)
    setting = _Orvanel.Orvanel_GetCurrentDevSetting(editor)
    _Orvanel.Orvanel_SetDevSetting(editor, setting)
    _Orvanel.Orvanel_PrepareKeyframe(editor, number)
    _Orvanel.Orvanel_SetCallbackFunc(editor, None)
    _Orvanel.delete_Orvanel(editor)


class Resources(unittest.TestCase):

    def test_a_thousand_objects_leave_nothing(self):
        for number in range(50):
            use(number)
        before = measure()
        for number in range(OBJECTS):
            use(number)
        after = measure()
        for name, first, last in zip(NAMES, before, after):
            print "%-32s %7d before, %7d after" % (name, first, last)
        for name, first, last in zip(NAMES, before, after):
            self.assertLess(last - first, FEW, name)

    def test_the_measure_sees_what_is_left_behind(self):
        before = measure()
        events = [kernel32.CreateEventW(None, 0, 0, None) for _ in range(100)]
        brushes = [gdi32.CreateSolidBrush(0) for _ in range(100)]
        editors = [_Orvanel.new_Orvanel() for _ in range(30)]
        after = measure()
        for event in events:
            kernel32.CloseHandle(event)
        for brush in brushes:
            gdi32.DeleteObject(brush)
        for editor in editors:
            _Orvanel.delete_Orvanel(editor)
        grown = dict((name, last - first) for name, first, last in zip(NAMES, before, after))
        self.assertGreaterEqual(grown["numbers of handles"], 100)
        self.assertGreaterEqual(grown["GDI objects (by the room left)"], 100)
        self.assertEqual(grown["windows"], 30)


if __name__ == "__main__":
    unittest.main()
