# SPDX-License-Identifier: MIT
"""The renderer's thread at full speed, the Python thread, a second one and the worker, all at once.

ORVANEL_LONG_TESTS=1 makes a minute of it.
"""
import json
import os
import random
import threading
import time
import unittest

from _Orvanel import ECB_POINT_UPDATE, ECS_DELETE_LAST_POINT, ECS_MOUSE_DOWN, ECS_MOUSE_MOVE, ECS_MOUSE_UP
from orvanel_host import editfile, hostkit, job
from orvanel_host.colorkey import ClipPictures
from orvanel_host.preview import Preview
from orvanel_host.replay import Replay

from renderer_support import FRAMES, FULL_SPEED, RendererTest, SIZE, TRIANGLE
from support import DEFAULT_CLIP, HostTest, simple_edit, write_clip

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


class LivePreview(Preview):
    """A preview that is on the screen while somebody edits: the renderer shows the frame again and again."""

    def __init__(self, clip, clock):
        Preview.__init__(self, clock)
        self.renderer = hostkit.PreviewRenderer(hostkit.VideoReader(clip), clock, self.syncer)

    def place(self, display, rect=None):
        resized = display != self.display
        Preview.place(self, display, rect)
        if resized:
            self.attach(self.renderer)

    def seek(self, frame):
        self.renderer.hold(frame, FULL_SPEED)
        return Preview.seek(self, frame)

    def close(self):
        self.renderer.close()
        Preview.close(self)


class RefreshedPreview(Preview):
    """Brings its texture map up to date after each mouse event, on the thread that edits."""

    def place(self, display, rect=None):
        resized = display != self.display
        Preview.place(self, display, rect)
        if resized:
            self.overlay.Create(self.window, None, self.syncer)

    def _send(self, state, position):
        Preview._send(self, state, position)
        self.overlay.ForceUpdateFrame()


class WatchedEditTest(HostTest):
    """A refresh loads the outline of the frame's time. In the middle of a gesture that must not take anything back."""

    def setUp(self):
        HostTest.setUp(self)
        self.clip = self.path('clip.mp4')
        self.clock = write_clip(self.clip, 194, 32, 18)

    def result(self, preview, edit, pictures):
        """What an edit leaves behind, and the events on the way there."""
        try:
            Replay(edit, preview, pictures).run()
            events = [event.code for event in preview.events.events if event.code != ECB_POINT_UPDATE]
            return preview.overlay.GetCurrentDevSetting(), preview.points(), events
        finally:
            preview.close()

    def assertNothingChanges(self, edit, pictures=None):
        alone = self.result(Preview(self.clock), edit, pictures)
        live = LivePreview(self.clip, self.clock)
        self.assertEqual(self.result(live, edit, pictures), alone)
        self.assertGreater(live.renderer.updateCounter(), 0)
        self.assertEqual(self.result(RefreshedPreview(self.clock), edit, pictures), alone)

    @unittest.skipUnless(os.path.exists(DEFAULT_CLIP), 'the launch clip is missing: scripts/setup/clip.sh brings it')
    def test_the_launch(self):
        self.assertNothingChanges(editfile.load(job.DEFAULT_CLIP_EDIT), ClipPictures(DEFAULT_CLIP))

    def test_the_edit_for_any_clip(self):
        self.assertNothingChanges(editfile.load(job.ANY_CLIP_EDIT))

    def test_a_handle_dragged_with_shift(self):
        self.assertNothingChanges(editfile.parse(json.dumps(simple_edit(coordinates='display', gestures=[
            {'do': 'draw', 'points': [[200, 100], [400, 100], [400, 300], [200, 300]]}, {'do': 'close'},
            {'do': 'pick', 'at': {'anchor': 1}},
            {'do': 'drag', 'from': {'anchor': 1, 'handle': 'in'}, 'to': [350, 60], 'shift': True}])), 'mirrored.json'))


if __name__ == '__main__':
    unittest.main()
