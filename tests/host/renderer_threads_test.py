# SPDX-License-Identifier: MIT
"""The renderer's thread at full speed, the Python thread, a second one and the worker, all at once.

ORVANEL_LONG_TESTS=1 makes a minute of it.
"""
import os
import random
import threading
import time
import unittest

from _Orvanel import ECS_DELETE_LAST_POINT, ECS_MOUSE_DOWN, ECS_MOUSE_MOVE, ECS_MOUSE_UP
from orvanel_host.preview import Preview

from renderer_support import FRAMES, FULL_SPEED, RendererTest, SIZE, TRIANGLE

_STRESS_SECONDS = 60 if os.environ.get('ORVANEL_LONG_TESTS') == '1' else 2


class EverybodyTest(RendererTest):
    """The renderer plays at full speed; the Python thread edits and makes maps anew; the worker delivers; the callable
    calls back; a second thread reads. Nothing may hang, crash or leave the module unusable."""

    def test_everybody_at_once(self):
        self.random = random.Random(20260601)
        self.calls = 0
        self.ending = False
        reading = threading.Thread(target=self.read_along)
        self.renderer.play(FULL_SPEED)
        reading.start()
        try:
            end = time.time() + _STRESS_SECONDS
            steps = 0
            while time.time() < end or steps < 300:
                self.step()
                steps += 1
        finally:
            self.ending = True
            reading.join()
        frames = self.renderer.frames()
        self.assertGreater(frames, 20)
        self.assertGreater(self.renderer.overlaidFrames(), 0)
        self.assertGreater(self.calls, 0)
        # Still in order after all of it.
        self.renderer.pause()
        self.replace_preview()
        self.render(3)
        self.assertEqual(self.composed.bytes(), self.under_overlay(self.bare_frames()[3], 3).bytes())

    def read_along(self):
        while not self.ending:
            overlay = self.preview.overlay
            overlay.GetCurrentDevSetting()
            with overlay.texture_locked():
                overlay.GetCurrentPoints()
            time.sleep(0.001)

    def called_back(self, code):
        self.calls += 1
        if self.calls % 8 == 0:
            overlay = self.preview.overlay
            overlay.GetCurrentPoints()
            overlay.ForceUpdateFrame()

    def replace_preview(self):
        """Destroys the overlay, map and all, while the renderer goes on, and edits another one."""
        old = self.preview
        fresh = Preview(self.clock)
        # The renderer's syncer stays: it goes by the renderer's frames.
        fresh.syncer = old.syncer
        fresh.events.listen(self.called_back)
        fresh.place(SIZE)
        for position in TRIANGLE + TRIANGLE[:1]:
            fresh.click(position)
        fresh.attach(self.renderer)
        self.preview = fresh
        old.close()

    def resize(self):
        self.preview.place(self.random.choice((SIZE, SIZE, (80, 48), (200, 120), (33, 17))))
        if self.random.random() < 0.7:
            self.preview.attach(self.renderer)

    def close_syncer(self):
        self.preview.overlay.VideoTextureSyncerClosed()
        self.preview.overlay.ForceUpdateFrame()
        self.preview.attach(self.renderer)

    def step(self):
        kind = self.random.randrange(40)
        if kind == 0:
            self.replace_preview()
        elif kind in (1, 2):
            self.close_syncer()
        elif kind in (3, 4):
            self.preview.attach(self.renderer)
        elif kind in (5, 6, 7):
            self.resize()
        elif kind == 8:
            self.preview.overlay.Interactive(ECS_DELETE_LAST_POINT)
        elif kind == 9:
            self.preview.undo()
        elif kind == 10:
            self.render_if_it_fits()
        else:
            self.gesture()

    def render_if_it_fits(self):
        try:
            self.render(self.random.randrange(FRAMES))
        except ValueError as error:
            self.assertIn('does not fit a frame', str(error))

    def gesture(self):
        overlay = self.preview.overlay
        width, height = self.preview.display
        x, y = self.random.randrange(width), self.random.randrange(height)
        overlay.Interactive(ECS_MOUSE_MOVE, x, y)
        overlay.Interactive(ECS_MOUSE_DOWN, x, y)
        for _ in range(4):
            overlay.Interactive(ECS_MOUSE_MOVE, self.random.randrange(width), self.random.randrange(height))
        overlay.Interactive(ECS_MOUSE_UP, x, y)


if __name__ == '__main__':
    unittest.main()
