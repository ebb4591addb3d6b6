# SPDX-License-Identifier: MIT
"""The hidden window of an object, as another program would see it."""
from __future__ import absolute_import

import ctypes
import unittest
from ctypes import wintypes

import _Orvanel
from hidden_windows import hidden_windows, user32

GWL_STYLE, GCL_STYLE, GWLP_USERDATA = -16, -26, -21
WS_CAPTION, WS_VISIBLE, WS_CLIPSIBLINGS, WS_CLIPCHILDREN = 0x00C00000, 0x10000000, 0x04000000, 0x02000000
WM_QUERYENDSESSION, WM_USER = 0x0011, 0x0400
CS_VREDRAW, CS_HREDRAW, CS_DBLCLKS = 1, 2, 8


class HiddenWindow(unittest.TestCase):

    def setUp(self):
        self.before = hidden_windows()
        self.editor = _Orvanel.new_Orvanel()
        self.window, = hidden_windows() - self.before

    def tearDown(self):
        if self.editor is not None:
            _Orvanel.delete_Orvanel(self.editor)

    def test_class_and_style(self):
        name = ctypes.create_unicode_buffer(64)
        user32.GetClassNameW(self.window, name, 64)
        title = ctypes.create_unicode_buffer(64)
        user32.GetWindowTextW(self.window, title, 64)
        self.assertEqual((name.value, title.value), ("Callback Window",) * 2)
        style = user32.GetWindowLongPtrW(self.window, GWL_STYLE)
        self.assertEqual(style & WS_CAPTION, 0)
        self.assertEqual(style & WS_VISIBLE, 0)
        self.assertEqual(style & (WS_CLIPSIBLINGS | WS_CLIPCHILDREN), WS_CLIPSIBLINGS | WS_CLIPCHILDREN)
        self.assertEqual(user32.GetClassLongPtrW(self.window, GCL_STYLE), CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS)

    def test_place(self):
        place = wintypes.RECT()
        user32.GetWindowRect(self.window, ctypes.byref(place))
        # The system enlarges the 10 by 10 pixels that were asked for to what a title bar would need.
        self.assertEqual((place.left, place.top), (0, 0))
        self.assertTrue(10 <= place.right and 10 <= place.bottom)

    def test_user_data_is_the_address_of_the_object(self):
        other = _Orvanel.new_Orvanel()
        second, = hidden_windows() - self.before - {self.window}
        data = [user32.GetWindowLongPtrW(window, GWLP_USERDATA) for window in (self.window, second)]
        addresses = [int(self.editor), int(other)]
        _Orvanel.delete_Orvanel(other)
        self.assertEqual(data, addresses)

    def test_messages_get_the_default_answer(self):
        self.assertEqual(user32.SendMessageW(self.window, WM_USER + 7, 1, 2), 0)
        self.assertEqual(user32.SendMessageW(self.window, WM_QUERYENDSESSION, 0, 0), 1)

    def test_dies_with_the_object(self):
        self.assertTrue(user32.IsWindow(self.window))
        _Orvanel.delete_Orvanel(self.editor)
        self.editor = None
        self.assertFalse(user32.IsWindow(self.window))
        self.assertEqual(hidden_windows(), self.before)


if __name__ == "__main__":
    unittest.main()
