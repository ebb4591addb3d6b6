# SPDX-License-Identifier: MIT
"""Choices of docs/deviations.md that no other test holds."""
from __future__ import absolute_import

import threading
import time
import unittest

from fixture import EditorCase, hostkit, needs_records


class DrawingTakesTheTextureLock(EditorCase):
    """What draws or fills records waits for whoever holds the texture, and draws at once for the holder itself."""

    def setUp(self):
        EditorCase.setUp(self)
        self.editor.PrepareKeyframe(0)
        self.editor.draw(self.TRIANGLE)

    def assertWaits(self, name, *arguments):
        order = []
        self.editor.LockTexture()
        try:
            # The holder does not wait for itself.
            getattr(self.editor, name)(*arguments)
            other = threading.Thread(target=lambda: order.append(getattr(self.editor, name)(*arguments)))
            other.start()
            # Long enough for the thread to come to its wait; too short a time would only see less.
            time.sleep(0.05)
            self.assertEqual(order, [], name)
        finally:
            self.editor.UnlockTexture()
        other.join()
        self.assertEqual(len(order), 1)

    def test_drawing_marks(self):
        self.assertWaits('DrawHoverPoint')
        self.assertWaits('DrawSelectedRegion')
        self.assertWaits('HideAllPoints')

    @needs_records
    def test_drawing_keyframes(self):
        first, second = hostkit.KeyFrameMaskInfo(), hostkit.KeyFrameMaskInfo()
        self.assertWaits('DrawExistKeyFrame', first)
        self.assertWaits('DrawSpecificKeyFrame', first, second, 5)

    @needs_records
    def test_filling_records(self):
        self.assertWaits('UpdateKeyFrameInSize', hostkit.KeyFrameMaskInfo())
        self.assertWaits('GetKeyFrameMaskInfo', 7)


if __name__ == "__main__":
    unittest.main()
