# SPDX-License-Identifier: MIT
"""The end of an object, asked for by several at once."""
from __future__ import absolute_import

import unittest

from guarded import GuardedCase


class Uninitialize(GuardedCase):

    def test_many_threads_at_once(self):
        self.survives("""
for attempt in range(60):
    editor = closed()
    # The worker is delivering when they come, so that they all wait for it together.
    arrived, go = threading.Event(), threading.Event()
    def deliver(code): arrived.set(); go.wait(60)
    o.Orvanel_SetCallbackFunc(editor, deliver)
    o.Orvanel_DrawExistKeyFrame(editor, o.Orvanel_GetKeyFrameMaskInfo(editor, 0))
    assert arrived.wait(60)
    threads = [on_a_thread(lambda: o.Orvanel_Uninitialize(editor)) for number in range(2 + attempt % 5)]
    go.set()
    assert all(map(ends, threads)), attempt
    assert o.Orvanel_Uninitialize(editor) == 0
    o.delete_Orvanel(editor)
print 'done'
""")

    def test_inside_a_delivery_while_others_wait(self):
        self.survives("""
for attempt in range(20):
    editor = closed()
    arrived, go, left = threading.Event(), threading.Event(), threading.Event()
    def deliver(code):
        arrived.set(); go.wait(60)
        o.Orvanel_Uninitialize(editor); o.Orvanel_Uninitialize(editor)
        left.set()
    o.Orvanel_SetCallbackFunc(editor, deliver)
    o.Orvanel_DrawExistKeyFrame(editor, o.Orvanel_GetKeyFrameMaskInfo(editor, 0))
    assert arrived.wait(60)
    threads = [on_a_thread(lambda: o.Orvanel_Uninitialize(editor)) for number in range(3)]
    go.set()
    assert left.wait(60) and all(map(ends, threads)), attempt
    o.delete_Orvanel(editor)
print 'done'
""")


if __name__ == "__main__":
    unittest.main()
