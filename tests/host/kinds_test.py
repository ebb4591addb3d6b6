# SPDX-License-Identifier: MIT
"""Clips of every depth, sampling and colour through the whole job: what is kept, and what the summary says is not."""
import unittest

from clips import chroma_psnr, ffmpeg, fields, make_clip, streams
from kinds import KindsTest, NEUTRAL


class DepthTest(KindsTest):

    def test_depth_and_sampling_are_kept(self):
        for pixels, codec in (('yuv420p', 'h264'), ('yuv422p', 'h264'), ('yuv444p', 'h264'), ('yuv420p10le', 'h264'),
                              ('yuv422p10le', 'h264'), ('yuv444p10le', 'h264'), ('yuv420p', 'vp9'), ('yuv422p10le', 'vp9'),
                              ('yuv444p12le', 'vp9')):
            encoder = ('-c:v', 'ffv1') if '12' in pixels else ()
            clip = make_clip(self.path('clip.mkv'), pixels=pixels, encoder=encoder)
            found, lost = self.render(clip, codec)
            self.assertEqual((found[0]['pix_fmt'], lost), (pixels, ''))
            self.assertOutsideIsUntouched(clip)

    def test_twelve_bits_are_ten_for_an_encoder_of_ten(self):
        clip = make_clip(self.path('clip.mkv'), pixels='yuv420p12le', encoder=('-c:v', 'ffv1'))
        found, lost = self.render(clip)
        self.assertEqual((found[0]['pix_fmt'], lost), ('yuv420p10le', '12-bit 4:2:0 (h264 takes 10-bit 4:2:0)'))
        self.assertOutsideIsUntouched(clip)

    def test_formats_that_are_not_planes_of_colour(self):
        for pixels, encoder, expected, said in (
                ('gray', 'ffv1', 'yuv420p', ''), ('yuyv422', 'rawvideo', 'yuv422p', ''),
                ('yuva420p', 'ffv1', 'yuv420p', 'alpha'), ('bgr0', 'ffv1', 'yuv444p', 'RGB (it becomes 8-bit 4:4:4)'),
                ('bgra', 'ffv1', 'yuv444p', 'alpha; RGB (it becomes 8-bit 4:4:4)')):
            clip = make_clip(self.path('clip.nut'), pixels=pixels, encoder=('-c:v', encoder))
            found, lost = self.render(clip)
            self.assertEqual((found[0]['pix_fmt'], lost), (expected, said), pixels)
            self.assertOutsideIsUntouched(clip)

    def test_alpha_that_decoders_leave_aside(self):
        clip = make_clip(self.path('clip.webm'), pixels='yuva420p', encoder=('-c:v', 'libvpx-vp9', '-deadline', 'realtime'))
        self.assertEqual(self.render(clip)[1], 'alpha')

    def test_a_neutral_grade_costs_no_colour(self):
        for pixels in ('yuv420p', 'yuv422p', 'yuv420p10le'):
            clip = make_clip(self.path('clip.mkv'), frames=24, size='320x180', pixels=pixels)
            self.render(clip, grade=NEUTRAL)
            plain = self.path('plain.mp4')
            ffmpeg('-i', clip, '-c:v', 'libx264', '-preset', 'veryfast', '-crf', '18', plain)
            self.assertGreater(chroma_psnr(self.graded, clip), chroma_psnr(plain, clip) - 1, pixels)


class TagsTest(KindsTest):

    def test_colour_tags_are_kept(self):
        tags = ('-color_primaries', 'bt2020', '-color_trc', 'smpte2084', '-colorspace', 'bt2020nc', '-color_range', 'tv')
        full = ('-color_primaries', 'bt470bg', '-color_trc', 'smpte170m', '-colorspace', 'bt470bg', '-color_range', 'pc')
        for options, pixels in ((tags, 'yuv420p10le'), (full, 'yuv420p'), ((), 'yuv420p')):
            for codec in ('h264', 'vp9'):
                lossless = ('-c:v', 'libx264', '-preset', 'veryfast', '-qp', '1')
                clip = make_clip(self.path('clip.mp4'), pixels=pixels, encoder=lossless + options)
                before = streams(clip)[0]
                after = self.render(clip, codec)[0][0]
                for tag in ('color_primaries', 'color_transfer', 'color_space', 'color_range'):
                    # VP9's own header has no word for some of them; the container has.
                    self.assertEqual(after.get(tag, ''), before.get(tag, after.get(tag, '')), (tag, codec))

    def test_the_old_names_of_full_range(self):
        clip = make_clip(self.path('clip.avi'), pixels='yuvj420p', encoder=('-c:v', 'mjpeg', '-q:v', '2'))
        found, lost = self.render(clip)
        self.assertEqual((found[0]['color_range'], lost), ('pc', ''))
        self.assertOutsideIsUntouched(clip)

    def test_the_light_of_the_display_is_kept(self):
        hdr = ('-c:v', 'libx265', '-x265-params', 'log-level=none:colorprim=bt2020:transfer=smpte2084:colormatrix=bt2020nc:'
               'master-display=G(13250,34500)B(7500,3000)R(34000,16000)WP(15635,16450)L(10000000,1):max-cll=1000,400')
        clip = make_clip(self.path('clip.mp4'), pixels='yuv420p10le', encoder=hdr)
        found, lost = self.render(clip)
        kinds = [data['side_data_type'] for data in found[0].get('side_data_list', ())]
        self.assertIn('Mastering display metadata', kinds)
        self.assertIn('Content light level metadata', kinds)
        self.assertEqual((found[0]['color_transfer'], lost), ('smpte2084', ''))

    def test_fields_are_kept(self):
        interlaced = ('-c:v', 'libx264', '-preset', 'veryfast', '-crf', '4', '-flags', '+ildct+ilme')
        for order, declared in (('tff', '1'), ('bff', '0')):
            clip = make_clip(self.path('clip.mkv'), filters='interlace=scan=%s' % order,
                             encoder=interlaced + ('-top', declared), rate=50)
            self.assertEqual(fields(clip), set([(1, int(declared))]))
            # The container has no word for the order; the frames have.
            self.assertEqual((self.render(clip)[1], fields(self.graded)), ('', fields(clip)))
            self.assertOutsideIsUntouched(clip)
            self.assertIn('the field order', self.render(clip, size=(160, 64))[1])


if __name__ == '__main__':
    unittest.main()
