# SPDX-License-Identifier: MIT
"""The renderer against the module: what it shows, and what it says when it cannot."""
import os
import time
import unittest
import weakref

from orvanel_host import hostkit, job
from orvanel_host.errors import HostError
from orvanel_host.orvanel import Orvanel
from orvanel_host.preview import Preview

from renderer_support import FRAMES, FULL_SPEED, RendererTest, TRIANGLE
from support import HostTest, clock_of, write_clip


class FrameTest(RendererTest):

    def test_a_frame_is_the_clips_under_the_overlay_of_its_time(self):
        bare = self.bare_frames()
        shown = []
        # In order, as it is played, then there and back.
        for number in list(range(FRAMES)) + [3, 2, 2, 11, 0, 7]:
            self.render(number)
            self.assertEqual(self.preview.syncer.GetVideoTime(), self.clock.startOf(number))
            shown.append((number, self.video.bytes(), self.composed.bytes()))
        overlays = set()
        for number, video, composed in shown:
            self.assertEqual(video, bare[number].bytes(), number)
            self.assertEqual(composed, self.under_overlay(bare[number], number).bytes(), number)
            overlays.add(composed)
        self.assertEqual(len(overlays), FRAMES)
        self.assertEqual((self.renderer.frames(), self.renderer.overlaidFrames()), (FRAMES + 6, FRAMES + 6))

    def test_the_counter_grows_with_time_and_edits_only(self):
        counters = []
        self.render(0)
        counters.append(self.renderer.updateCounter())
        self.render(0)
        counters.append(self.renderer.updateCounter())
        self.render(1)
        counters.append(self.renderer.updateCounter())
        self.preview.overlay.ForceUpdateFrame()
        self.render(1)
        counters.append(self.renderer.updateCounter())
        self.preview.hover(TRIANGLE[1])
        self.render(1)
        counters.append(self.renderer.updateCounter())
        first = counters[0]
        self.assertEqual([counter - first for counter in counters], [0, 0, 1, 2, 3])

    def test_an_edit_shows_in_the_next_frame(self):
        self.render(0)
        before = self.composed.bytes()
        self.drag(TRIANGLE[1], (140, 60))
        self.render(0)
        self.assertNotEqual(self.composed.bytes(), before)
        self.assertEqual(self.composed.bytes(), self.under_overlay(self.video, 0).bytes())

    def test_the_preview_is_where_the_renderer_is(self):
        self.render(FRAMES - 1)
        self.assertEqual(self.preview.to_pixels(self.preview.points()[0].x, self.preview.points()[0].y), (10, 10))
        self.render(0)
        self.assertEqual(self.preview.to_pixels(self.preview.points()[0].x, self.preview.points()[0].y), TRIANGLE[0])

    def test_without_an_overlay_frames_are_bare(self):
        self.renderer.setOverlay(None)
        self.render(4)
        self.assertEqual(self.composed.bytes(), self.video.bytes())
        self.assertEqual((self.renderer.overlaidFrames(), self.renderer.updateCounter()), (0, 0))
        self.preview.attach(self.renderer)
        self.render(4)
        self.assertNotEqual(self.composed.bytes(), self.video.bytes())

    def test_times_of_a_frame_are_measured(self):
        self.render(0)
        for seconds in (self.renderer.readSeconds(), self.renderer.refreshSeconds(), self.renderer.compositeSeconds()):
            self.assertGreater(seconds, 0)


class MapTest(RendererTest):
    """The module's side of the texture map goes its own ways."""

    def test_a_map_that_was_replaced_shows_its_last_picture(self):
        self.render(0)
        before = self.composed.bytes()
        self.assertEqual(self.preview.overlay.Create(self.preview.window, self.renderer, self.preview.syncer), 1)
        self.drag(TRIANGLE[1], (140, 60))
        self.render(0)
        self.assertEqual(self.composed.bytes(), before)
        self.renderer.setOverlay(self.preview.overlay.GetAllocator())
        self.render(0)
        self.assertEqual(self.composed.bytes(), self.under_overlay(self.video, 0).bytes())

    def test_a_closed_syncer_holds_the_picture(self):
        self.render(0)
        counter = self.renderer.updateCounter()
        self.preview.overlay.VideoTextureSyncerClosed()
        self.render(5)
        self.assertEqual(self.renderer.updateCounter(), counter)

    def test_a_syncer_that_says_no_holds_the_picture(self):
        self.render(0)
        counter = self.renderer.updateCounter()
        self.preview.syncer.setRefreshAllowed(False)
        self.render(5)
        self.assertEqual(self.renderer.updateCounter(), counter)
        self.preview.syncer.setRefreshAllowed(True)
        self.render(5)
        self.assertEqual(self.composed.bytes(), self.under_overlay(self.video, 5).bytes())

    def test_a_renderer_outlives_the_overlay(self):
        self.render(0)
        counter = self.renderer.updateCounter()
        self.preview.overlay.Uninitialize()
        self.render(1)
        overlay = weakref.ref(self.preview.overlay)
        self.preview = Preview(self.clock)
        self.assertIsNone(overlay())
        self.render(2)
        self.assertEqual(self.renderer.updateCounter(), counter)

    def test_an_overlay_outlives_the_renderer(self):
        self.render(0)
        self.renderer.close()
        self.renderer = None
        self.preview.overlay.ForceUpdateFrame()
        self.preview.attach(self.open_renderer(self.clock))

    def test_an_overlay_of_another_size_is_refused(self):
        self.preview.place((0, 48))
        with self.assertRaises(HostError) as caught:
            self.preview.attach(self.renderer)
        self.assertEqual(str(caught.exception), 'the renderer cannot make an overlay of 0x48 pixels')
        self.preview.place((80, 48))
        self.preview.attach(self.renderer)
        with self.assertRaises(ValueError) as caught:
            self.renderer.render(0, self.video, self.composed)
        self.assertEqual(str(caught.exception), 'an overlay of 80x48 pixels does not fit a frame of 160x96')
        self.assertEqual(self.renderer.overlaidFrames(), 0)


class ClipTest(RendererTest):
    """What can be wrong with the clip is said to whoever wants the frame."""

    def test_frames_that_the_clock_does_not_know(self):
        for number in (-1, FRAMES, 10 ** 12):
            with self.assertRaises(ValueError) as caught:
                self.renderer.render(number, self.video, self.composed)
            self.assertEqual(str(caught.exception), "frame %d is not one of the clip's 12 frames" % number)

    def test_a_clip_shorter_than_its_clock(self):
        self.renderer = self.open_renderer(clock_of(FRAMES + 3))
        self.render(FRAMES - 1)
        self.assertFalse(self.renderer.render(FRAMES, self.video, self.composed))
        self.assertFalse(self.renderer.render(FRAMES + 2, self.video, self.composed))
        self.render(0)

    def test_a_clip_that_disappears(self):
        self.render(5)
        os.rename(self.clip, self.path('elsewhere.mp4'))
        with self.assertRaises(IOError) as caught:
            self.renderer.render(0, self.video, self.composed)
        self.assertEqual(str(caught.exception), "clip '%s' does not exist" % self.clip)
        os.rename(self.path('elsewhere.mp4'), self.clip)
        self.render(0)

    def test_a_closed_renderer(self):
        self.renderer.close()
        self.renderer.close()
        with self.assertRaises(RuntimeError) as caught:
            self.renderer.render(0, self.video, self.composed)
        self.assertEqual(str(caught.exception), 'the renderer is closed')


class PlayTest(RendererTest):

    def test_a_clip_plays_over_and_over(self):
        self.assertFalse(self.renderer.latest(self.composed))
        self.renderer.play(FULL_SPEED)
        self.wait_for(lambda: self.renderer.frames() > 3 * FRAMES)
        self.renderer.pause()
        frames = self.renderer.frames()
        self.assertEqual(self.renderer.overlaidFrames(), frames)
        self.assertTrue(self.renderer.latest(self.composed))
        # The frame after `frames` others.
        number = (frames - 1) % FRAMES
        self.assertEqual(self.preview.syncer.GetVideoTime(), self.clock.startOf(number))
        self.assertEqual(self.composed.bytes(), self.under_overlay(self.bare_frames()[number], number).bytes())
        time.sleep(0.02)
        self.assertEqual(self.renderer.frames(), frames)

    def test_a_frame_can_be_asked_for_while_the_clip_plays(self):
        bare = self.bare_frames()
        self.renderer.play(1000)
        for number in (4, 4, 9, 1):
            self.render(number)
            self.assertEqual(self.video.bytes(), bare[number].bytes())
        self.renderer.pause()

    def test_a_rate_is_positive(self):
        for rate in (0, -1, float('nan')):
            with self.assertRaises(ValueError) as caught:
                self.renderer.play(rate)
            self.assertEqual(str(caught.exception), 'a clip is played at a positive rate')

    def test_an_overlay_of_another_size_is_left_out(self):
        self.preview.place((80, 48))
        self.preview.attach(self.renderer)
        self.renderer.play(FULL_SPEED)
        self.wait_for(lambda: self.renderer.frames() > 10)
        self.renderer.pause()
        self.assertEqual(self.renderer.overlaidFrames(), 0)

    def test_a_clip_that_disappears_ends_playing(self):
        self.render(5)
        os.rename(self.clip, self.path('elsewhere.mp4'))
        self.renderer.play(FULL_SPEED)
        self.wait_for(lambda: self.renderer.frames() == FRAMES - 5)
        with self.assertRaises(IOError) as caught:
            while True:
                self.renderer.pause()
                self.renderer.play(FULL_SPEED)
                time.sleep(0.005)
        self.assertEqual(str(caught.exception), "clip '%s' does not exist" % self.clip)
        self.renderer.pause()

    def test_a_held_frame_shows_edits(self):
        bare = self.bare_frames()
        for number in (7, 7, 2):
            self.renderer.hold(number, FULL_SPEED)
            self.assertTrue(self.renderer.latest(self.composed))
            self.assertEqual(self.composed.bytes(), self.under_overlay(bare[number], number).bytes())
        # Looking at the overlay has drawn it anew.
        self.wait_for_frames(2)
        counter = self.renderer.updateCounter()
        self.wait_for_frames(5)
        self.assertEqual(self.renderer.updateCounter(), counter)
        self.drag(TRIANGLE[1], (140, 60))
        self.wait_for_frames(2)
        self.assertGreater(self.renderer.updateCounter(), counter)
        self.renderer.pause()
        self.renderer.latest(self.composed)
        self.assertEqual(self.composed.bytes(), self.under_overlay(bare[2], 2).bytes())
        self.assertIn(2, self.preview.keyframes())

    def test_frames_that_cannot_be_held(self):
        with self.assertRaises(ValueError):
            self.renderer.hold(FRAMES, FULL_SPEED)
        with self.assertRaises(ValueError):
            self.renderer.hold(0, 0)
        self.renderer = self.open_renderer(clock_of(FRAMES + 3))
        with self.assertRaises(IOError) as caught:
            self.renderer.hold(FRAMES + 1, FULL_SPEED)
        self.assertEqual(str(caught.exception), 'the clip has no frame %d' % (FRAMES + 1))
        self.renderer.close()
        with self.assertRaises(RuntimeError):
            self.renderer.hold(0, FULL_SPEED)

    def test_closing_ends_playing(self):
        self.renderer.play(FULL_SPEED)
        self.renderer.close()
        frames = self.renderer.frames()
        time.sleep(0.02)
        self.assertEqual(self.renderer.frames(), frames)


class JobTest(HostTest):
    """The main job does not write what the renderer could not show."""

    def assertNothingIsWritten(self, spoil):
        clip, original = self.path('clip.mp4'), Preview.attach
        write_clip(clip, 3)

        def attach_and_spoil(preview, renderer):
            original(preview, renderer)
            spoil(preview.overlay)
        Preview.attach = attach_and_spoil
        try:
            with self.assertRaises(HostError) as caught:
                job.run(clip, job.ANY_CLIP_EDIT, self.path('out'), None, 'h264')
        finally:
            Preview.attach = original
        self.assertEqual(str(caught.exception), 'the overlay of frame 0 could not be drawn')
        self.assertFalse(os.path.exists(self.path('out')))

    def test_an_overlay_that_is_not_drawn(self):
        self.assertNothingIsWritten(Orvanel.Hide)

    def test_a_map_that_was_taken_away(self):
        self.assertNothingIsWritten(Orvanel.VideoTextureSyncerClosed)


if __name__ == '__main__':
    unittest.main()
