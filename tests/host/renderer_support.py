# SPDX-License-Identifier: MIT
"""What the tests of the renderer share: a small clip, an outline over it, a renderer that shows both."""
import time

from orvanel_host import hostkit
from orvanel_host.preview import Preview

from support import HostTest, write_clip

SIZE = 160, 96
FRAMES = 12
TRIANGLE = ((30, 20), (120, 25), (80, 80))
FULL_SPEED = float('inf')
# Ends a deadlock, not a slow machine.
_PATIENCE = 120


class RendererTest(HostTest):
    """A preview with a closed outline that moves from the first frame to the last, and a renderer that shows it."""

    def setUp(self):
        HostTest.setUp(self)
        self.clip = self.path('clip.mp4')
        self.clock = write_clip(self.clip, FRAMES, *SIZE)
        self.preview = Preview(self.clock)
        self.addCleanup(lambda: self.preview.close())
        self.preview.place(SIZE)
        self.preview.seek(0)
        for position in TRIANGLE + TRIANGLE[:1]:
            self.preview.click(position)
        self.preview.seek(FRAMES - 1)
        self.drag(TRIANGLE[0], (10, 10))
        self.renderer = self.open_renderer(self.clock)
        self.preview.attach(self.renderer)
        self.video, self.composed = hostkit.Image(), hostkit.Image()

    def open_renderer(self, clock):
        renderer = hostkit.PreviewRenderer(hostkit.VideoReader(self.clip), clock, self.preview.syncer)
        self.addCleanup(renderer.close)
        return renderer

    def drag(self, start, end):
        with self.preview.gesture():
            self.preview.hover(start)
            self.preview.press(start)
            self.preview.drag(start, end)
            self.preview.release(end)

    def render(self, number):
        self.assertTrue(self.renderer.render(number, self.video, self.composed))

    def wait_for(self, condition):
        end = time.time() + _PATIENCE
        while not condition():
            self.assertLess(time.time(), end, 'nothing happened')
            time.sleep(0.005)

    def wait_for_frames(self, count):
        """Waits for frames of a renderer that plays or holds. The second one began after the call, at the earliest."""
        frames = self.renderer.frames()
        self.wait_for(lambda: self.renderer.frames() >= frames + count)

    def bare_frames(self):
        reader, frames = hostkit.VideoReader(self.clip), []
        image = hostkit.Image()
        while reader.read(image):
            frames.append(hostkit.Image(image))
        return frames

    def under_overlay(self, frame, number):
        """A bare frame under what the module's buffer holds for that frame, without texture or renderer."""
        overlay, picture = self.preview.overlay, hostkit.Image(frame)
        with overlay.texture_locked():
            hostkit.compositeOverlay(picture, overlay.PrepareKeyframe(self.clock.startOf(number)), overlay.GetBufferLen())
        return picture
