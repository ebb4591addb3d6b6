# SPDX-License-Identifier: MIT
"""The threads that render a clip: whatever ends them, they end; and a reader's end while it is being rewound."""
import os
import random
import threading
import time
import unittest

from orvanel_host import clipindex, hostkit, job

from renderer_support import FRAMES, FULL_SPEED, RendererTest, SIZE
from support import HostTest, clock_of, read_grey_png, simple_edit, write_clip

_OVAL = [(0.25, y / 96.0, 0.5) for y in range(24, 72)]


class PipelineTest(RendererTest):

    def setUp(self):
        RendererTest.setUp(self)
        self.sheet = hostkit.ContactSheet(2, 80, 48)
        self.reader = hostkit.VideoReader(self.clip)

    def job(self, folder='.'):
        result = hostkit.RenderJob()
        result.gradedPath, result.overlayPath = self.path(folder, 'graded.mp4'), self.path(folder, 'overlay.mp4')
        result.maskFolder = self.path(folder)
        return result

    def pipeline(self, clock=None, positions=(), folder='.'):
        made = hostkit.RenderPipeline(self.reader, clock or self.clock, hostkit.LongLongVector(positions),
                                      hostkit.Grade(1, 1), self.job(folder), self.sheet)
        self.addCleanup(made.close)
        return made

    def submit(self, pipeline, number):
        self.renderer.refresh(number)
        pipeline.submit(_OVAL, True, self.renderer, 'frame' if number == 2 else '', False)

    def end(self, pipeline):
        while not pipeline.finish(0.05):
            pass

    def frames_of(self, name):
        reader, image, frames = hostkit.VideoReader(self.path(name)), hostkit.Image(), []
        while reader.read(image):
            frames.append(hostkit.Image(image))
        return frames

    def test_all_results(self):
        pipeline = self.pipeline()
        for number in range(FRAMES):
            self.submit(pipeline, number)
        self.end(pipeline)
        self.assertEqual((pipeline.framesDone(), self.sheet.count(), pipeline.clipDiffers()), (FRAMES, 1, False))
        bare, graded, overlaid = self.bare_frames(), self.frames_of('graded.mp4'), self.frames_of('overlay.mp4')
        self.assertEqual((len(graded), len(overlaid)), (FRAMES, FRAMES))
        for number in range(FRAMES):
            width, height, rows = read_grey_png(self.path('%04d.png' % number))
            self.assertEqual((width, height), SIZE)
            self.assertEqual([row.count(b'\xff') for row in rows], [80 if 24 <= y < 72 else 0 for y in range(96)])
            green = [image.pixel(100, 60) >> 8 & 255 for image in (bare[number], graded[number])]
            self.assertGreater(green[1], green[0] + 10)
            # Inside of the overlay video there is what the renderer shows.
            shown = self.under_overlay(bare[number], number)
            differing = sum(abs((shown.pixel(x, y) >> 8 & 255) - (overlaid[number].pixel(x, y) >> 8 & 255)) > 60
                            for x in range(0, 160, 3) for y in range(0, 96, 3))
            self.assertLess(differing, 20)
        for stage in ('read', 'mask', 'grade', 'encode', 'composite', 'contact sheet'):
            self.assertGreater(pipeline.seconds(stage), 0)

    def test_closing_anywhere(self):
        for frames in range(0, FRAMES + 1, 3):
            self.reader.rewind()
            pipeline = self.pipeline()
            for number in range(frames):
                self.submit(pipeline, number)
            pipeline.close()
            pipeline.close()
            with self.assertRaises(RuntimeError) as caught:
                self.submit(pipeline, 0)
            self.assertEqual(str(caught.exception), 'the pipeline is closed')

    def hold_mask(self, name):
        """Whoever writes that mask waits until somebody reads it, or the test ends."""
        def release():
            reader = os.open(self.path(name), os.O_RDONLY | os.O_NONBLOCK)
            os.unlink(self.path(name))
            os.close(reader)
        os.mkfifo(self.path(name))
        self.addCleanup(release)

    def test_a_thread_that_waits_does_not_keep_the_others(self):
        """What one frame waits for, here somebody who takes its mask, the frames before it and after it do not."""
        pipeline = self.pipeline()
        self.hold_mask('0004.png')
        # The fifth frame's mask waits; two more orders fit between the threads.
        for number in range(7):
            self.submit(pipeline, number)
        self.wait_for(lambda: pipeline.framesDone() == 4)
        with open(self.path('0004.png'), 'rb') as stream:
            self.assertTrue(stream.read().startswith(b'\x89PNG'))
        for number in range(7, FRAMES):
            self.submit(pipeline, number)
        self.end(pipeline)
        self.assertEqual(pipeline.framesDone(), FRAMES)

    def test_whoever_is_ahead_waits(self):
        """However slow one thread is: the frames and orders that wait for it are few."""
        pipeline, submitted = self.pipeline(), []

        def submit_all():
            for number in range(FRAMES):
                self.submit(pipeline, number)
                submitted.append(number)
        thread = threading.Thread(target=submit_all)
        # The mask is released first, whatever happens.
        self.addCleanup(lambda: thread.ident and thread.join())
        self.hold_mask('0000.png')
        thread.start()
        # One order is at work and two wait; the fourth does not get in before the mask is taken. The pause is a chance for
        # it to get in wrongly.
        self.wait_for(lambda: len(submitted) >= 3)
        time.sleep(0.1)
        self.assertEqual(len(submitted), 3)
        with open(self.path('0000.png'), 'rb') as stream:
            stream.read()
        thread.join()
        self.end(pipeline)
        self.assertEqual(pipeline.framesDone(), FRAMES)

    def test_a_pipeline_that_nobody_closes(self):
        pipeline = self.pipeline()
        self.submit(pipeline, 0)
        self._cleanups.pop()
        del pipeline
        self.reader.rewind()

    def assertEnds(self, pipeline, error, message):
        """Whoever goes on learns what went wrong, however many frames later."""
        with self.assertRaises(error) as caught:
            for number in range(FRAMES):
                self.submit(pipeline, number)
            self.end(pipeline)
        self.assertIn(message, str(caught.exception))
        with self.assertRaises(error):
            pipeline.finish(0)

    def test_masks_that_cannot_be_written(self):
        os.mkdir(self.path('0003.png'))
        self.assertEnds(self.pipeline(), IOError, "cannot write '%s': Is a directory" % self.path('./0003.png'))

    def test_videos_that_cannot_be_written(self):
        with self.assertRaises(IOError) as caught:
            self.pipeline(folder='nowhere')
        self.assertIn('No such file or directory', str(caught.exception))

    def test_a_run_outside_of_the_picture(self):
        pipeline = self.pipeline()
        with self.assertRaises(ValueError):
            pipeline.submit([(0.9, 0.5, 0.5)], True, self.renderer, '', False)
            self.end(pipeline)

    def test_another_clip_than_promised(self):
        for clock, positions in ((clock_of(FRAMES + 2), ()), (clock_of(FRAMES - 2), ()), (None, [5 * n for n in range(FRAMES)])):
            self.reader.rewind()
            pipeline = self.pipeline(clock, positions)
            self.assertEnds(pipeline, IOError, 'has other frames now than a moment ago')
            self.assertTrue(pipeline.clipDiffers())

    def test_an_overlay_of_another_size(self):
        self.preview.place((80, 48))
        self.preview.attach(self.renderer)
        self.assertEnds(self.pipeline(), ValueError, 'the overlay and the frame have different sizes')


class ClosingReaderTest(RendererTest):

    def test_a_renderer_that_goes_on_rewinding_while_it_closes(self):
        for _ in range(5):
            self.close_while_rewinding()

    def close_while_rewinding(self):
        renderer = hostkit.PreviewRenderer(hostkit.VideoReader(self.clip), self.clock, self.preview.syncer)
        begun = threading.Event()

        def rewind():
            video, composed = hostkit.Image(), hostkit.Image()
            try:
                # Backwards: each frame decodes from the start.
                while True:
                    for number in range(FRAMES - 1, -1, -1):
                        renderer.render(number, video, composed)
                        begun.set()
            except RuntimeError:
                pass
        thread = threading.Thread(target=rewind)
        thread.start()
        begun.wait()
        renderer.play(FULL_SPEED)
        renderer.close()
        thread.join()

    def test_readers_that_go_anywhere(self):
        image = hostkit.Image()
        for reads in range(FRAMES + 1):
            reader = hostkit.VideoReader(self.clip)
            for _ in range(reads):
                reader.read(image)
            if reads % 2:
                reader.rewind()
            del reader


class IndexTest(HostTest):

    def test_an_index_that_the_decoder_contradicts(self):
        """The whole job goes by the decoder then."""
        clip = self.path('clip.mp4')
        write_clip(clip, 12)
        original = clipindex.read

        def wrong(clip, reader):
            index = original(clip, reader)
            return index._replace(positions=list(index.positions) + [index.positions[-1] + 416667])
        clipindex.read = wrong
        try:
            warnings = []
            summary = job.run(clip, self.write_edit(simple_edit()), self.path('out'), None, 'h264', warn=warnings.append)
        finally:
            clipindex.read = original
        self.assertIn('12 at 160x96', summary)
        self.assertEqual((len(os.listdir(self.path('out', 'masks'))), warnings), (12, []))

    def test_the_container_knows_what_the_decoder_gives(self):
        for codec in ('h264', 'vp9'):
            clip = self.path('clip.' + hostkit.VideoWriter.fileExtension(codec))
            write_clip(clip, 23, clock=clock_of(23, 30000, 1001), codec=codec)
            reader = hostkit.VideoReader(clip)
            quick = clipindex.read(clip, reader)
            self.assertEqual((quick.promised, quick.missing, quick.is_reliable), (23, 0, True))
            self.assertEqual(list(quick.positions), clipindex.decoded(clip, reader, quick).positions)


class MaskPictureTest(HostTest):

    def test_any_mask_comes_back(self):
        generator = random.Random(20261122)
        for size in ((1, 1), (3, 7), (16, 300), (259, 33), (1000, 17)):
            for kind in range(3):
                mask = hostkit.Mask(*size)
                for y in range(0, size[1], 2):
                    start = generator.randrange(size[0])
                    mask.setRuns([(start / float(size[0]), line / float(size[1]), (size[0] - start) / float(size[0]))
                                  for line in range(y + 1)])
                if kind:
                    mask.invert()
                if kind == 2:
                    # Soft edges have every value.
                    mask.feather(9, 2)
                hostkit.writePng(self.path('mask.png'), mask)
                width, height, rows = read_grey_png(self.path('mask.png'))
                self.assertEqual((width, height, b''.join(rows)), size + (mask.bytes(),))
                hostkit.writePng(self.path('mask.png'), mask, size[0] + 1, size[1] + 1)
                width, height, padded = read_grey_png(self.path('mask.png'))
                self.assertEqual((width, height), (size[0] + 1, size[1] + 1))
                self.assertEqual(padded, [row + row[-1] for row in rows + rows[-1:]])

    def test_flat_masks_are_small(self):
        hostkit.writePng(self.path('mask.png'), hostkit.Mask(3840, 2160))
        self.assertLess(os.path.getsize(self.path('mask.png')), 10000)
        _, _, rows = read_grey_png(self.path('mask.png'))
        self.assertEqual(set(rows), set([b'\0' * 3840]))


if __name__ == '__main__':
    unittest.main()
