# SPDX-License-Identifier: MIT
"""Lines for people: one line each, whatever a file is called, and whoever has stopped listening."""
import os
import sys
import unittest

from orvanel_host import hostkit, messages
from orvanel_host.messages import frame_ranges, listed, one_line

from support import HostTest, simple_edit, write_clip


class OneLineTest(unittest.TestCase):

    def test_what_is_not_for_reading_is_escaped(self):
        for text, line in [
                ('plain', 'plain'),
                ('two\nlines\r\n', 'two\\nlines\\r\\n'),
                ('\x1b[31mred\x07 \x7f\0', '\\x1b[31mred\\x07 \\x7f\\x00'),
                # The same introducer as one character, which some terminals know too.
                (u'\x9b31m'.encode('utf-8'), '\\x9b31m'),
                (u'a\u2028b\u202egpj.exe\u2066', 'a\\u2028b\\u202egpj.exe\\u2066'),
                ('\xff\xfe half \xe2\x82', '\\xff\\xfe half \\xe2\\x82'),
                (u'na\xefve \u6620\u50cf \U0001f680', u'na\xefve \u6620\u50cf \U0001f680'.encode('utf-8'))]:
            self.assertEqual(one_line(text), line)

    def test_long_lists_end(self):
        self.assertEqual(listed(['a']), 'a')
        self.assertEqual(listed(list('abcdefgh')), 'a, b, c, d, e, f, g, h')
        self.assertEqual(listed(list('abcdefghi')), 'a, b, c, d, e, f, g and 2 more')

    def test_frames_are_named_in_ranges(self):
        self.assertEqual(frame_ranges([3]), 'frame 3')
        self.assertEqual(frame_ranges([0, 1, 2, 9]), 'frames 0-2, 9')
        self.assertEqual(frame_ranges(range(0, 40, 2)), 'frames 0, 2, 4, 6, 8, 10, 12 and 13 more')


class ListenerTest(HostTest):

    def test_a_closed_stream_is_no_error(self):
        kept = sys.stderr
        read, write = os.pipe()
        os.close(read)
        sys.stderr = os.fdopen(write, 'w', 0)
        try:
            messages.warn('nobody hears this')
        finally:
            sys.stderr = kept

    def test_names_and_titles_cannot_speak_to_the_terminal(self):
        clip = 'a\nerror: b\x1b]0;c\x07.mp4'
        write_clip(self.path(clip), 2)
        self.write_edit(simple_edit(title='red\x1b[31m\nresults       elsewhere'))
        code, summary, error = self.run_host('--clip', clip, '--edit', 'edit.json', '--out', 'o\x1bc')
        self.assertEqual((code, error), (0, ''))
        self.assertEqual(len([line for line in summary.splitlines() if line.startswith('results')]), 1)
        self.assertIn('a\\nerror: b\\x1b]0;c\\x07.mp4', summary)
        self.assertIn('red\\x1b[31m\\nresults', summary)
        self.assertNotIn('\x1b', summary)
        code, summary, error = self.run_host('--clip', 'no\n\x1b[31m')
        self.assertEqual((code, summary, error), (1, '', "error: clip 'no\\n\\x1b[31m' does not exist\n"))

    def test_the_summary_may_have_no_reader(self):
        write_clip(self.path('clip.mp4'), 2)
        for redirection, code in (('>/dev/full', 1), ('>&-', 0), ('2>&-', 0), ('<&- >&- 2>&-', 0)):
            process = self.start_shell('exec "$0" -B -m orvanel_host --clip clip.mp4 ' + redirection)
            _, error = process.communicate()
            self.assertEqual(process.returncode, code, redirection)
            self.assertNotIn('Traceback', error)
            self.assertIn(len(error.splitlines()), (0, code))
            # Nothing that was printed has ended up in a result.
            self.assertEqual(self.frames('out', 'graded.mp4'), 2)
            self.assertEqual(self.frames('out', 'overlay.mp4'), 2)

    def frames(self, *names):
        reader, count = hostkit.VideoReader(self.path(*names)), 0
        while reader.skip():
            count += 1
        return count


if __name__ == '__main__':
    unittest.main()
