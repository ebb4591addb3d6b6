# SPDX-License-Identifier: MIT
"""Clips of every shape, and with sound, through the whole job."""
import unittest

from clips import chroma_psnr, ffmpeg, make_clip, streams, times
from kinds import KindsTest, NEUTRAL


class ShapeTest(KindsTest):

    def rotated(self, degrees):
        upright = make_clip(self.path('straight.mp4'), frames=6, size='160x96')
        clip = self.path('clip.mp4')
        ffmpeg('-i', upright, '-c', 'copy', '-metadata:s:v:0', 'rotate=%d' % degrees, clip)
        return clip

    def test_a_phone_held_any_way(self):
        for degrees in (0, 90, 180, 270):
            clip = self.rotated(degrees)
            found, lost = self.render(clip, grade=NEUTRAL)
            size = (160, 96) if degrees % 180 == 0 else (96, 160)
            self.assertEqual((found[0]['width'], found[0]['height'], lost), size + ('',))
            self.assertEqual(found[0].get('side_data_list'), None)
            self.assertMasksHaveTheVideosSize(found[0])
            # FFmpeg turns clips, too.
            self.assertGreater(chroma_psnr(self.graded, clip), 30, degrees)

    def test_turned_colours_of_two_columns(self):
        straight = make_clip(self.path('straight.mp4'), frames=3, pixels='yuv422p')
        clip = self.path('clip.mp4')
        ffmpeg('-i', straight, '-c', 'copy', '-metadata:s:v:0', 'rotate=90', clip)
        found, lost = self.render(clip)
        self.assertEqual(found[0]['pix_fmt'], 'yuv444p')
        self.assertEqual(lost, 'the sampling of colours (turned, it becomes 8-bit 4:4:4)')

    def test_the_shape_of_pixels_is_kept(self):
        clip = make_clip(self.path('clip.mp4'), filters='setsar=16/11')
        self.assertEqual(self.render(clip)[0][0]['sample_aspect_ratio'], '16:11')
        turned = self.path('turned.mp4')
        ffmpeg('-i', clip, '-c', 'copy', '-metadata:s:v:0', 'rotate=90', turned)
        self.assertEqual(self.render(turned)[0][0]['sample_aspect_ratio'], '11:16')

    def test_every_frame_keeps_its_time(self):
        # Two of three frames, as a screen is recorded that changes now and then.
        clip = make_clip(self.path('clip.mkv'), frames=16, filters=r"select='mod(n\,3)'", before=('-vsync', 'vfr'))
        expected = times(clip)
        self.assertAlmostEqual(expected[2] - expected[1], 2 * (expected[1] - expected[0]), delta=0.004)
        for codec in ('h264', 'vp9'):
            self.render(clip, codec)
            kept = times(self.graded)
            self.assertEqual(len(kept), 16)
            for before, after in zip(expected, kept):
                self.assertAlmostEqual(before, after, delta=0.0011)

    def test_masks_have_the_size_of_an_odd_video(self):
        for pixels, codec, size in (('yuv420p', 'h264', (102, 76)), ('yuv422p', 'h264', (102, 75)),
                                    ('yuv444p', 'h264', (101, 75)), ('yuv420p', 'vp9', (102, 76))):
            clip = make_clip(self.path('clip.mkv'), frames=3, size='101x75', pixels=pixels, source='testsrc', encoder=('-c:v', 'ffv1'))
            found, lost = self.render(clip, codec)
            self.assertEqual((found[0]['width'], found[0]['height']), size)
            self.assertMasksHaveTheVideosSize(found[0])
            self.assertEqual(lost, '' if size == (101, 75) else 'the odd size (padded to %dx%d)' % size)


class SoundTest(KindsTest):

    def with_sound(self, name, codec, *options):
        clip = self.path(name)
        ffmpeg('-f', 'lavfi', '-i', 'testsrc2=size=160x96:rate=24', '-f', 'lavfi', '-i', 'sine=frequency=440:sample_rate=48000',
               '-t', '1', '-c:v', 'libx264', '-preset', 'veryfast', '-c:a', codec, *(options + (clip,)))
        return clip

    def test_sound_is_copied(self):
        clip = self.with_sound('clip.mp4', 'aac', '-metadata:s:a:0', 'language=deu')
        found, lost = self.render(clip)
        self.assertEqual([stream['codec_name'] for stream in found], ['h264', 'aac'])
        self.assertEqual((found[1]['tags']['language'], lost), ('deu', ''))
        digests = [ffmpeg('-v', 'error', '-i', path, '-map', '0:a', '-c', 'copy', '-f', 'md5', '-') for path in (clip, self.graded)]
        self.assertEqual(digests[0], digests[1])
        self.assertAlmostEqual(float(found[1]['start_time']), float(streams(clip)[1]['start_time']), delta=0.05)

    def test_sound_that_the_container_does_not_take(self):
        clip = self.with_sound('clip.mp4', 'aac')
        found, lost = self.render(clip, 'vp9')
        self.assertEqual(([stream['codec_name'] for stream in found], lost), (['vp9'], 'sound (aac does not go into webm)'))

    def test_subtitles_are_named(self):
        text = self.write('text.srt', '1\n00:00:00,000 --> 00:00:01,000\nHello\n')
        clip = self.path('clip.mkv')
        ffmpeg('-i', self.with_sound('sound.mp4', 'aac'), '-i', text, '-c', 'copy', '-c:s', 'srt', clip)
        self.assertEqual(self.render(clip)[1], 'subtitles')

    def test_titles_are_kept_and_chapters_and_further_videos_named(self):
        chapters = self.write('chapters.txt', ';FFMETADATA1\ntitle=Lift-off\n[CHAPTER]\nTIMEBASE=1/1\nSTART=0\nEND=1\n')
        clip, source = self.path('clip.mkv'), self.with_sound('sound.mp4', 'aac')
        ffmpeg('-i', source, '-i', chapters, '-map', '0:v', '-map', '0:v', '-map_metadata', '1', '-c', 'copy', clip)
        self.assertEqual(self.render(clip)[1], 'further video streams; chapters')
        self.assertIn('title           : Lift-off', ffmpeg('-i', self.graded, '-f', 'null', '-'))


if __name__ == '__main__':
    unittest.main()
