# SPDX-License-Identifier: MIT
"""The whole job where somebody's files lie in its way: one line that names them, exit code 1, nothing changed."""
import os
import signal
import unittest

from support import HostTest, simple_edit, write_clip


class KeepingTest(HostTest):

    def setUp(self):
        HostTest.setUp(self)
        write_clip(self.path('clip.mp4'), 3)
        self.write_edit(simple_edit(), 'e.json')

    def assertRefuses(self, message, *arguments):
        before = self.contents()
        self.assertEqual(self.run_host(*arguments), (1, '', 'error: %s\n' % message))
        self.assertEqual(self.contents(), before)

    def assertForeign(self, names, out):
        self.assertRefuses("'%s' holds what this host did not make, or not as it is now: %s; choose another folder with --out, "
                           'or replace it with --force' % (out, names),
                           '--clip', 'clip.mp4', '--edit', 'e.json', '--out', out)

    def test_a_second_pass_does_not_overwrite_its_source(self):
        first = ['--clip', 'clip.mp4', '--edit', 'e.json']
        self.assertEqual(self.run_host(*first)[0], 0)
        for force in ([], ['--force']):
            self.assertRefuses("the clip 'out/graded.mp4' lies where a result goes ('out/graded.mp4'): choose another folder "
                               'with --out', '--clip', 'out/graded.mp4', '--edit', 'e.json', *force)
        self.assertEqual(self.run_host('--clip', 'out/graded.mp4', '--edit', 'e.json', '--out', 'second')[0], 0)
        self.assertEqual(self.run_host(*first)[0], 0, 'the same run again replaces its own results')

    def test_an_edit_under_the_name_of_a_result(self):
        os.mkdir(self.path('out'))
        os.rename(self.path('e.json'), self.path('out', 'selection.json'))
        for force in ([], ['--force']):
            self.assertRefuses("the edit 'out/selection.json' lies where a result goes ('out/selection.json'): choose another "
                               'folder with --out', '--clip', 'clip.mp4', '--edit', 'out/selection.json', *force)

    def test_what_others_have_put_there(self):
        os.makedirs(self.path('proj', 'masks'))
        self.write('proj/masks/hand-painted.png', 'mine')
        self.assertForeign('masks', 'proj')
        os.makedirs(self.path('taken', 'graded.mp4'))
        self.write('taken/masks', 'a file')
        self.write('taken/selection.json', '{}')
        self.assertForeign('graded.mp4, masks, selection.json', 'taken')
        code, _, error = self.run_host('--clip', 'clip.mp4', '--edit', 'e.json', '--out', 'taken', '--force')
        self.assertEqual((code, error), (0, ''))
        self.assertEqual(sorted(os.listdir(self.path('taken', 'masks'))), ['0000.png', '0001.png', '0002.png'])
        self.assertEqual(self.run_host('--clip', 'clip.mp4', '--edit', 'e.json', '--out', 'taken')[0], 0)

    def test_a_mask_that_was_painted_over(self):
        self.assertEqual(self.run_host('--clip', 'clip.mp4', '--edit', 'e.json')[0], 0)
        self.write('out/masks/0001.png', 'by hand')
        self.assertForeign('masks/0001.png', 'out')

    def test_results_of_both_codecs_stand_side_by_side(self):
        for codec in ('h264', 'vp9', 'h264', 'vp9'):
            code, _, error = self.run_host('--clip', 'clip.mp4', '--edit', 'e.json', '--codec', codec)
            self.assertEqual((code, error), (0, ''))
        self.assertTrue({'graded.mp4', 'graded.webm', 'overlay.mp4', 'overlay.webm'} <= set(os.listdir(self.path('out'))))

    def test_a_killed_job_is_cleaned_up_by_the_next(self):
        write_clip(self.path('long.mp4'), 240, 640, 360)
        before = self.contents()
        process = self.start_host('--clip', 'long.mp4', '--edit', 'e.json')
        self.wait_until_masks_appear()
        process.send_signal(signal.SIGKILL)
        process.communicate()
        self.assertGreater(len(os.listdir(self.path('out'))), 0)
        # The next one fails, and has cleaned up all the same.
        self.write_edit(simple_edit(gestures=[{'do': 'seek', 'frame': 3}]), 'wrong.json')
        self.assertEqual(self.run_host('--clip', 'clip.mp4', '--edit', 'wrong.json')[0], 1)
        os.unlink(self.path('wrong.json'))
        self.assertEqual(os.listdir(self.path('out')), [])
        os.rmdir(self.path('out'))
        self.assertEqual(self.contents(), before)

    def test_a_result_that_cannot_be_written_is_named_by_its_final_name(self):
        code, _, error = self.run_shell('ulimit -f 4; exec "$0" -B -m orvanel_host --clip clip.mp4 --edit e.json --size 1280x720')
        self.assertEqual(code, 1)
        self.assertRegexpMatches(error, r"\Aerror: cannot write 'out/[a-z/.0-9-]+': File too large\n\Z")
        self.assertEqual(sorted(os.listdir(self.folder)), ['clip.mp4', 'e.json'])


if __name__ == '__main__':
    unittest.main()
