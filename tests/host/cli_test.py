# SPDX-License-Identifier: MIT
"""Everything that can go wrong on the command line: one clear line, exit code 1, and nothing left behind."""
import os
import signal
import unittest

from support import HostTest, clock_of, simple_edit, write_clip


class ErrorTest(HostTest):

    def assertFails(self, message, *arguments):
        code, out, error = self.run_host(*arguments)
        self.assertEqual((code, out, error), (1, '', 'error: %s\n' % message))
        self.assertFalse(os.path.exists(self.path('out')), 'nothing is left behind')

    def clip(self):
        path = self.path('clip.mp4')
        if not os.path.exists(path):
            write_clip(path, 6)
        return path

    def test_clips_that_cannot_be_used(self):
        self.assertFails("clip 'none.mp4' does not exist", '--clip', 'none.mp4')
        self.write('text.mp4', 'not a video ' * 100)
        self.assertFails("clip 'text.mp4' is not a video: its format is unknown", '--clip', 'text.mp4')

    def test_a_clip_without_frames(self):
        # A header and nothing else is what a recording that was stopped at once looks like.
        write_clip(self.path('header.webm'), 0, clock=clock_of(1), codec='vp9')
        self.assertFails("clip 'header.webm' has no frames", '--clip', 'header.webm')
        write_clip(self.path('header.mp4'), 0, clock=clock_of(1))
        self.assertFails("clip 'header.mp4' is not a video: it has no video stream", '--clip', 'header.mp4')
        # Packets that no decoder can make a frame of.
        write_clip(self.path('damaged.mp4'), 1)
        with open(self.path('damaged.mp4'), 'r+b') as stream:
            data = stream.read()
            start = data.index(b'mdat') + 4
            stream.seek(start)
            stream.write(b'\0' * (len(data) - start))
        self.assertFails("clip 'damaged.mp4' has no frames", '--clip', 'damaged.mp4')

    def test_edits_that_cannot_be_used(self):
        clip = self.clip()
        self.assertFails("edit 'none.json' cannot be read: No such file or directory", '--clip', clip, '--edit', 'none.json')
        self.write('text.json', '{"format": "orvanel-edit"')
        self.assertFails("edit 'text.json': not valid JSON: Expecting object: line 1 column 25 (char 24)",
                         '--clip', clip, '--edit', 'text.json')
        self.write_edit(simple_edit(grade={'exposure': 'bright', 'saturation': 1}))
        self.assertFails("edit 'edit.json': grade.exposure has to be a number from -16 to 16, not bright",
                         '--clip', clip, '--edit', 'edit.json')

    def test_an_edit_that_does_not_fit_the_clip(self):
        self.write_edit(simple_edit(gestures=[{'do': 'seek', 'frame': 6}]))
        self.assertFails("edit 'edit.json': gestures[0] (seek): frame 6 lies beyond the clip's last frame 5",
                         '--clip', self.clip(), '--edit', 'edit.json')

    def test_arguments_that_make_no_sense(self):
        self.assertFails("argument --size: '640' is not a size like 1280x720, 16 to 16384 pixels a side (see --help)",
                         '--clip', 'x', '--size', '640')
        self.assertFails("argument --size: '0x99999' is not a size like 1280x720, 16 to 16384 pixels a side (see --help)",
                         '--clip', 'x', '--size', '0x99999')
        self.assertFails('unrecognized arguments: --speed (see --help)', '--speed')
        self.assertFails("argument --codec: invalid choice: 'mpeg1' (choose from 'h264', 'vp9') (see --help)",
                         '--codec', 'mpeg1')

    def test_no_clip_at_all(self):
        os.environ.pop('ORVANEL_DEFAULT_CLIP', None)
        self.assertFails('no clip: give one with --clip')

    def test_a_place_for_results_that_is_a_file(self):
        self.write('results', 'x')
        code, _, error = self.run_host('--clip', self.clip(), '--out', 'results')
        self.assertEqual((code, error), (1, "error: cannot write to 'results': File exists\n"))

    def test_empty_names(self):
        # What is left of "$CLIP" when CLIP is not set; the default clip is not what somebody meant by it.
        os.environ['ORVANEL_DEFAULT_CLIP'] = self.clip()
        self.addCleanup(os.environ.pop, 'ORVANEL_DEFAULT_CLIP')
        for option in ('--clip', '--edit', '--out'):
            self.assertFails('%s needs the name of a file or folder, and got an empty one' % option, option, '')

    def test_modules_of_the_folder_that_somebody_stands_in_are_not_loaded(self):
        for name in ('argparse', 'json', 'tqdm', 'hashlib', 'fcntl'):
            self.write(name + '.py', 'raise SystemExit("loaded %s")' % name)
        self.assertFails("clip 'none.mp4' does not exist", '--clip', 'none.mp4')

    def test_help_is_no_error(self):
        code, out, error = self.run_host('--help')
        self.assertEqual((code, error), (0, ''))
        self.assertIn('--clip FILE', out)


class InterruptTest(HostTest):

    def test_ctrl_c_leaves_older_results_and_nothing_unfinished(self):
        write_clip(self.path('long.mp4'), 240, 640, 360)
        self.write_edit(simple_edit())
        write_clip(self.path('short.mp4'), 3)
        arguments = ['--edit', 'edit.json', '--out', 'out']
        self.assertEqual(self.run_host('--clip', 'short.mp4', *arguments)[0], 0)
        before = self.contents()
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            process = self.start_host('--clip', 'long.mp4', *arguments)
            self.wait_until_masks_appear()
            process.send_signal(number)
            out, error = process.communicate()
            self.assertEqual((process.returncode, out, error), (130, '', 'error: interrupted, nothing was written\n'))
            self.assertEqual(self.contents(), before)

    def test_signals_that_somebody_ignores_stay_ignored(self):
        # As nohup starts a program.
        write_clip(self.path('clip.mp4'), 60, 320, 180)
        process = self.start_shell('trap "" HUP; exec "$0" -B -m orvanel_host --clip clip.mp4')
        self.wait_until_masks_appear()
        process.send_signal(signal.SIGHUP)
        _, error = process.communicate()
        self.assertEqual((process.returncode, error), (0, ''))

    def contents(self):
        return sorted((os.path.join(folder, name), os.stat(os.path.join(folder, name)).st_mtime)
                      for folder, _, names in os.walk(self.path('out')) for name in names)


if __name__ == '__main__':
    unittest.main()
