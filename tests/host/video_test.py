# SPDX-License-Identifier: MIT
"""Clips in and out: what was written is what is read, at every rate and size."""
import os
import unittest
import wave

from orvanel_host import hostkit

from support import BT601, HostTest, UNIT, clock_of, have_ffprobe, picture, probe, write_clip


def channels(pixel):
    return [pixel >> shift & 255 for shift in (16, 8, 0)]


class RoundTripTest(HostTest):

    def read_all(self, path, *size):
        reader, image, frames, positions = hostkit.VideoReader(path, *size), hostkit.Image(16, 16), [], []
        while reader.read(image):
            frames.append(hostkit.Image(image))
            positions.append(reader.position())
        return reader, frames, positions

    def test_pictures_survive(self):
        for codec in ('h264', 'vp9'):
            path = self.path('clip.' + hostkit.VideoWriter.fileExtension(codec))
            write_clip(path, 10, 160, 96, codec=codec)
            reader, frames, _ = self.read_all(path)
            self.assertEqual((reader.width(), reader.height(), reader.codecName()), (160, 96, codec))
            self.assertEqual(len(frames), 10)
            for number, frame in enumerate(frames):
                wanted = picture(160, 96, number * 255 // 10)
                for x, y in ((5, 5), (150, 90), (40, 24)):
                    for a, b in zip(channels(frame.pixel(x, y)), channels(wanted.pixel(x, y))):
                        self.assertLess(abs(a - b), 12, (codec, number, x, y))

    def test_rates_and_counts_are_exact(self):
        for numerator, denominator in ((24, 1), (25, 1), (30000, 1001), (24000, 1001), (60, 1)):
            clock = clock_of(23, numerator, denominator)
            path = self.path('clip.mp4')
            write_clip(path, 23, clock=clock)
            reader, frames, positions = self.read_all(path)
            self.assertEqual((reader.rateNumerator(), reader.rateDenominator()), (numerator, denominator))
            self.assertEqual(len(frames), 23)
            again = hostkit.FrameClock(reader.rateNumerator(), reader.rateDenominator(), positions)
            self.assertTrue(again.isConstant())
            self.assertEqual([again.startOf(n) for n in range(23)], [clock.startOf(n) for n in range(23)])

    def test_ffprobe_agrees(self):
        if not have_ffprobe():
            self.skipTest('ffprobe (package ffmpeg) is not installed')
        for codec, size in (('h264', (160, 96)), ('h264', (101, 75)), ('vp9', (33, 16))):
            path = self.path('clip.' + hostkit.VideoWriter.fileExtension(codec))
            write_clip(path, 31, size[0], size[1], clock_of(31, 30000, 1001), codec)
            stream = probe(path)
            self.assertEqual(stream['codec_name'], codec)
            self.assertEqual(int(stream['nb_read_frames']), 31)
            self.assertEqual(stream['avg_frame_rate'], '30000/1001')
            self.assertEqual(stream['r_frame_rate'], '30000/1001')
            self.assertEqual(stream['pix_fmt'], 'yuv420p')
            self.assertEqual((stream['width'], stream['height']), tuple(side + side % 2 for side in size))

    def test_variable_times_are_kept(self):
        positions = [0, UNIT // 10, UNIT // 2, UNIT * 2, UNIT * 2 + UNIT // 25, UNIT * 5]
        clock = hostkit.FrameClock(25, 1, positions)
        self.assertFalse(clock.isConstant())
        for codec in ('h264', 'vp9'):
            path = self.path('clip.' + hostkit.VideoWriter.fileExtension(codec))
            write_clip(path, len(positions), clock=clock, codec=codec)
            _, frames, read = self.read_all(path)
            self.assertEqual(len(frames), len(positions))
            for a, b in zip(read, positions):
                self.assertLessEqual(abs(a - read[0] - b), UNIT // 1000)

    def test_frames_are_resampled_and_keep_their_shape_on_screen(self):
        path = self.path('clip.mp4')
        write_clip(path, 2, 160, 96)
        reader, frames, _ = self.read_all(path, 320, 96)
        self.assertEqual((frames[0].width(), frames[0].height()), (320, 96))
        self.assertEqual((reader.clipWidth(), reader.clipHeight()), (160, 96))
        self.assertEqual((reader.pixelAspectNumerator(), reader.pixelAspectDenominator()), (1, 2))

    def test_rewind_and_skip(self):
        path = self.path('clip.mp4')
        write_clip(path, 5)
        reader, image = hostkit.VideoReader(path), hostkit.Image(16, 16)
        count = 0
        while reader.skip():
            count += 1
        self.assertEqual(count, 5)
        self.assertFalse(reader.read(image))
        reader.rewind()
        self.assertTrue(reader.skip())
        self.assertTrue(reader.read(image))
        self.assertLess(abs(channels(image.pixel(5, 5))[2] - 51), 12)

    def test_a_file_that_breaks_off_gives_the_frames_it_has(self):
        path = self.path('clip.mp4')
        write_clip(path, 60)
        size = os.path.getsize(path)
        with open(path, 'r+b') as stream:
            stream.truncate(size * 3 // 4)
        _, frames, _ = self.read_all(path)
        self.assertTrue(0 < len(frames) < 60, len(frames))


class RefusalTest(HostTest):

    def assertRefused(self, path, message):
        with self.assertRaises(IOError) as caught:
            hostkit.VideoReader(path)
        self.assertEqual(str(caught.exception), "clip '%s' %s" % (path, message))

    def test_what_is_not_a_video(self):
        self.assertRefused('/nowhere/clip.mp4', 'does not exist')
        self.assertRefused(self.folder, 'is a folder, not a video')
        os.mkfifo(self.path('pipe.mp4'))
        self.assertRefused(self.path('pipe.mp4'), 'is a pipe or a device: save it to a file first')
        self.assertRefused(self.write('empty.mp4', ''), 'is not a video: its format is unknown')
        self.assertRefused(self.write('noise.mp4', 'x' * 5000), 'is not a video: its format is unknown')
        self.assertRefused(self.write('letter.txt', 'Dear reader,\n' * 50), 'is not a video: it holds a still picture or text')
        hostkit.writePng(self.path('still.png'), hostkit.Image(32, 32))
        self.assertRefused(self.path('still.png'), 'is not a video: it holds a still picture or text')

    def test_sound_is_not_a_video(self):
        sound = wave.open(self.path('sound.wav'), 'wb')
        sound.setparams((1, 2, 8000, 0, 'NONE', ''))
        sound.writeframes('\0\0' * 8000)
        sound.close()
        self.assertRefused(self.path('sound.wav'), 'is not a video: it has no video stream')

    def test_a_name_with_a_colon_is_a_file(self):
        path = self.path('take:2.mp4')
        write_clip(path, 2)
        self.assertTrue(hostkit.VideoReader(path).skip())
        self.assertRefused('http://localhost/clip.mp4', 'does not exist')

    def test_a_file_that_cannot_be_written(self):
        with self.assertRaisesRegexp(IOError, "cannot write '/nowhere/clip.mp4': No such file or directory"):
            write_clip('/nowhere/clip.mp4', 1)
        with self.assertRaisesRegexp(IOError, "cannot write '/nowhere/mask.png': No such file or directory"):
            hostkit.writePng('/nowhere/mask.png', hostkit.Mask(4, 4))
        if os.path.exists('/dev/full'):
            with self.assertRaisesRegexp(IOError, "cannot write '/dev/full': No space left on device"):
                hostkit.writePng('/dev/full', hostkit.Image(64, 64))

    def test_the_writer_checks_its_frames(self):
        writer = hostkit.VideoWriter(self.path('clip.mp4'), 'h264', 64, 48, clock_of(1), 1, 1, BT601)
        with self.assertRaisesRegexp(ValueError, 'a frame of 48x64 pixels does not fit a video of 64x48'):
            writer.write(hostkit.Image(48, 64))
        writer.write(hostkit.Image(64, 48))
        with self.assertRaisesRegexp(ValueError, "frame 1 is not one of the clip's 1 frames"):
            writer.write(hostkit.Image(64, 48))

    def test_codecs_are_named(self):
        self.assertIn(hostkit.VideoWriter.usableCodec('h264'), ('h264', 'vp9'))
        with self.assertRaisesRegexp(ValueError, "codec 'mpeg1' is not one of h264 and vp9"):
            hostkit.VideoWriter.usableCodec('mpeg1')


if __name__ == '__main__':
    unittest.main()
