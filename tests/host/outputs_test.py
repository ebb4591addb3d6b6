# SPDX-License-Identifier: MIT
import os
import signal
import unittest

from orvanel_host.errors import HostError
from orvanel_host.outputs import OutputFolder

from support import HostTest


class OutputFolderTest(HostTest):

    def fill(self, folder, text):
        with open(folder.file('a.txt'), 'w') as stream:
            stream.write(text)
        with open(os.path.join(folder.folder('many'), text), 'w') as stream:
            stream.write(text)

    def test_nothing_has_a_final_name_before_the_end(self):
        with OutputFolder(self.path('out')) as folder:
            self.fill(folder, 'new')
            self.assertFalse(os.path.exists(self.path('out', 'a.txt')))
            folder.commit()
            self.assertTrue(os.path.exists(self.path('out', 'a.txt')))
        self.assertEqual(sorted(os.listdir(self.path('out'))), ['a.txt', 'many'])

    def test_an_error_leaves_no_trace(self):
        for error in (ValueError, KeyboardInterrupt):
            with self.assertRaises(error):
                with OutputFolder(self.path('deep', 'out')) as folder:
                    self.fill(folder, 'new')
                    raise error()
            self.assertFalse(os.path.exists(self.path('deep', 'out')))

    def test_an_error_leaves_older_results_alone(self):
        with OutputFolder(self.path('out')) as folder:
            self.fill(folder, 'old')
            folder.commit()
        with self.assertRaises(ValueError):
            with OutputFolder(self.path('out')) as folder:
                self.fill(folder, 'new')
                raise ValueError()
        with open(self.path('out', 'a.txt')) as stream:
            self.assertEqual(stream.read(), 'old')
        self.assertEqual(sorted(os.listdir(self.path('out'))), ['a.txt', 'many'])

    def test_a_folder_of_an_earlier_run_is_replaced_as_a_whole(self):
        for text in ('old', 'new'):
            with OutputFolder(self.path('out')) as folder:
                self.fill(folder, text)
                folder.commit()
        self.assertEqual(os.listdir(self.path('out', 'many')), ['new'])

    def test_ctrl_c_waits_until_everything_has_its_name(self):
        rename = os.rename

        def interrupted_rename(source, target):
            os.kill(os.getpid(), signal.SIGINT)
            rename(source, target)
        os.rename = interrupted_rename
        try:
            with self.assertRaises(KeyboardInterrupt):
                with OutputFolder(self.path('out')) as folder:
                    self.fill(folder, 'new')
                    folder.commit()
        finally:
            os.rename = rename
        self.assertEqual(sorted(os.listdir(self.path('out'))), ['a.txt', 'many'])
        self.assertIs(signal.getsignal(signal.SIGINT), signal.default_int_handler)

    def test_a_place_that_cannot_be_written(self):
        self.write('file', 'x')
        with self.assertRaises(HostError) as caught:
            with OutputFolder(self.path('file', 'out')):
                self.fail('unreachable')
        self.assertIn("cannot write to '%s'" % self.path('file', 'out'), str(caught.exception))


if __name__ == '__main__':
    unittest.main()
