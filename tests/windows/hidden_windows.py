# SPDX-License-Identifier: MIT
"""The hidden windows of this process's objects, found as another program would find them."""
from __future__ import absolute_import

import ctypes
import os
from ctypes import wintypes

user32 = ctypes.WinDLL("user32")
for _name in ("GetWindowLongPtrW", "GetClassLongPtrW", "SendMessageW"):
    getattr(user32, _name).restype = ctypes.c_ssize_t
user32.GetWindowLongPtrW.argtypes = user32.GetClassLongPtrW.argtypes = [wintypes.HWND, ctypes.c_int]
user32.SendMessageW.argtypes = [wintypes.HWND, wintypes.UINT, ctypes.c_size_t, ctypes.c_ssize_t]
_VISITOR = ctypes.WINFUNCTYPE(wintypes.BOOL, ctypes.c_size_t, ctypes.c_ssize_t)


def hidden_windows():
    """Their handles. Other windows of the process are the system's."""
    found = set()

    def visit(window, _):
        process, name = wintypes.DWORD(), ctypes.create_unicode_buffer(64)
        user32.GetWindowThreadProcessId(ctypes.c_void_p(window), ctypes.byref(process))
        user32.GetClassNameW(ctypes.c_void_p(window), name, 64)
        if process.value == os.getpid() and name.value == "Callback Window":
            found.add(window)
        return True

    user32.EnumWindows(_VISITOR(visit), 0)
    return found
