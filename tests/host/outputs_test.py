# SPDX-License-Identifier: MIT
"""Results get their names all at once or not at all, and what the host did not make keeps its own."""
import os
import signal
import unittest

from orvanel_host.errors import HostError
from orvanel_host.interrupts import InterruptedAfterwards
from orvanel_host.manifest import FILE as MANIFEST
from orvanel_host.outputs import OutputFolder

from support import HostTest


NAMES = ('a.txt', 'many')


class OutputsTest(HostTest):

    def fill(self, folder, text):
        with open(folder.file('a.txt'), 'w') as stream:
            stream.write(text)
        with open(os.path.join(folder.folder('many'), text), 'w') as stream:
            stream.write(text)

    def produce(self, text, **options):
        with OutputFolder(self.path('out'), NAMES, **options) as folder:
            self.fill(folder, text)
            folder.commit()

    def assertRefuses(self, message, **options):
        """The run ends before its work begins, and changes nothing."""
        before = self.contents()
        with self.assertRaises(HostError) as caught:
            with OutputFolder(self.path('out'), NAMES, **options):
                self.fail('unreachable')
        self.assertIn(message.replace('OUT', self.path('out')), str(caught.exception))
        self.assertEqual(self.contents(), before)


class OutputFolderTest(OutputsTest):

    def test_nothing_has_a_final_name_before_the_end(self):
        with OutputFolder(self.path('out')) as folder:
            self.fill(folder, 'new')
            self.assertFalse(os.path.exists(self.path('out', 'a.txt')))
            folder.commit()
            self.assertTrue(os.path.exists(self.path('out', 'a.txt')))
        self.assertEqual(sorted(os.listdir(self.path('out'))), [MANIFEST, 'a.txt', 'many'])

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
        self.assertEqual(sorted(os.listdir(self.path('out'))), [MANIFEST, 'a.txt', 'many'])

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
        self.assertEqual(sorted(os.listdir(self.path('out'))), [MANIFEST, 'a.txt', 'many'])
        self.assertIs(signal.getsignal(signal.SIGINT), signal.default_int_handler)

    def test_folders_on_the_way_go_too(self):
        with self.assertRaises(ValueError):
            with OutputFolder(self.path('new', 'deep', 'out')) as folder:
                self.write('beside', '')
                raise ValueError()
        self.assertEqual(os.listdir(self.folder), ['beside'])

    def test_an_interrupt_while_cleaning_up_after_success_says_so(self):
        rmdir = os.rmdir

        def interrupted_rmdir(path):
            os.kill(os.getpid(), signal.SIGHUP)
            rmdir(path)
        os.rmdir = interrupted_rmdir
        try:
            with self.assertRaises(InterruptedAfterwards):
                self.produce('new')
        finally:
            os.rmdir = rmdir
        self.assertEqual(sorted(os.listdir(self.path('out'))), [MANIFEST, 'a.txt', 'many'])

    def test_an_error_names_the_result_and_not_where_it_waits(self):
        with OutputFolder(self.path('out')) as folder:
            self.assertEqual(folder.with_final_names("cannot write '%s': full" % folder.file('a.txt')),
                             "cannot write '%s': full" % self.path('out', 'a.txt'))

    def test_a_place_that_cannot_be_written(self):
        self.write('file', 'x')
        with self.assertRaises(HostError) as caught:
            with OutputFolder(self.path('file', 'out')):
                self.fail('unreachable')
        self.assertIn("cannot write to '%s'" % self.path('file', 'out'), str(caught.exception))


class ForeignTest(OutputsTest):
    """What the host did not make is named, and stays."""

    def test_files_and_folders_of_others(self):
        os.mkdir(self.path('out'))
        for name, make in (('a.txt', self.write), ('a.txt', lambda name, text: os.mkdir(self.path(name))),
                           ('many', self.write), ('many', lambda name, text: os.mkdir(self.path(name))),
                           ('a.txt', lambda name, text: os.mkfifo(self.path(name))),
                           ('a.txt', lambda name, text: os.symlink('nowhere', self.path(name)))):
            make(os.path.join('out', name), 'mine')
            self.assertRefuses("'OUT' holds what this host did not make, or not as it is now: %s; choose another folder with "
                               '--out, or replace it with --force' % name)
            os.rename(self.path('out', name), self.path('kept'))
            (os.rmdir if os.path.isdir(self.path('kept')) else os.unlink)(self.path('kept'))

    def test_all_of_them_are_named(self):
        self.produce('old')
        self.write('out/many/notes', 'mine')
        os.mkdir(self.path('out', 'many', 'sub'))
        self.write('out/many/sub/deeper', 'mine')
        self.write('out/a.txt', 'mine')
        self.assertRefuses('now: a.txt, many/notes, many/sub; choose')

    def test_results_that_somebody_has_worked_on(self):
        self.produce('old')
        for name in ('a.txt', 'many/old'):
            self.write('out/' + name, 'odd')
            self.assertRefuses('now: %s; choose' % name)
            self.write('out/' + name, 'old')

    def test_results_that_only_look_younger_are_still_the_hosts(self):
        self.produce('old')
        for name in ('a.txt', 'many/old'):
            os.utime(self.path('out', name), (1, 1))
        self.produce('new')
        self.assertEqual(os.listdir(self.path('out', 'many')), ['new'])

    def test_results_of_other_names_stay_the_hosts(self):
        with OutputFolder(self.path('out')) as folder:
            with open(folder.file('b.txt'), 'w') as stream:
                stream.write('first')
            folder.commit()
        self.produce('old')
        with OutputFolder(self.path('out'), ('b.txt',)) as folder:
            with open(folder.file('b.txt'), 'w') as stream:
                stream.write('second')
            folder.commit()
        self.produce('new')

    def test_a_manifest_that_is_none_vouches_for_nothing(self):
        self.produce('old')
        with open(self.path('out', MANIFEST)) as stream:
            good = stream.read()
        for text in ('', '[]', '7', 'mine', '[' * 100000, '{"format": "orvanel-results", "version": 1, "results": 3}',
                     '{"format": "orvanel-results", "version": 1, "results": {"a.txt": 3}}', good.replace('": 1', '": 2'), '\xff'):
            self.write('out/' + MANIFEST, text)
            self.assertRefuses('now: a.txt, many, %s; choose' % MANIFEST)

    def test_what_appears_meanwhile(self):
        with self.assertRaises(HostError) as caught:
            with OutputFolder(self.path('out'), NAMES) as folder:
                self.fill(folder, 'new')
                self.write('out/a.txt', 'mine')
                folder.commit()
        self.assertIn('now: a.txt; choose', str(caught.exception))
        self.assertEqual(self.contents(), {'out': None, 'out/a.txt': 'mine'})

    def test_force_is_for_who_means_it(self):
        os.makedirs(self.path('out', 'a.txt', 'deep'))
        os.mkdir(self.path('elsewhere'))
        self.write('elsewhere/mine', 'mine')
        os.symlink(self.path('elsewhere'), self.path('out', 'many'))
        self.produce('new', force=True)
        self.assertEqual(sorted(os.listdir(self.path('out'))), [MANIFEST, 'a.txt', 'many'])
        self.assertEqual(os.listdir(self.path('out', 'many')), ['new'])
        self.assertEqual(os.listdir(self.path('elsewhere')), ['mine'], 'a link goes, what it leads to stays')
        self.produce('newer')


class InputTest(OutputsTest):
    """Neither the clip nor the edit is replaced, whatever the flags and however it is named."""

    def assertProtected(self, path, name):
        for force in (False, True):
            self.assertRefuses("the clip '%s' lies where a result goes ('%s'): choose another folder with --out" % (
                path, self.path('out', name)), inputs=[('edit', '/nowhere'), ('clip', path)], force=force)

    def test_an_input_is_found_by_what_it_is(self):
        self.produce('old')
        clip = self.path('out', 'a.txt')
        self.assertProtected(clip, 'a.txt')
        here = os.getcwd()
        os.chdir(self.folder)
        self.addCleanup(os.chdir, here)
        self.assertProtected('out/../out/./a.txt', 'a.txt')
        os.symlink(clip, self.path('soft'))
        self.assertProtected(self.path('soft'), 'a.txt')
        os.symlink(self.path('out'), self.path('way'))
        self.assertProtected(self.path('way', 'a.txt'), 'a.txt')
        os.link(clip, self.path('hard'))
        self.assertProtected(self.path('hard'), 'a.txt')

    def test_a_result_that_is_a_link_to_an_input(self):
        os.mkdir(self.path('out'))
        clip = self.write('clip', 'mine')
        os.symlink(clip, self.path('out', 'a.txt'))
        self.assertProtected(clip, 'a.txt')

    def test_an_input_inside_of_a_folder_that_is_a_result(self):
        self.produce('old')
        self.assertProtected(self.path('out', 'many', 'old'), 'many')
        os.rename(self.path('out', 'many'), self.path('elsewhere'))
        os.symlink(self.path('elsewhere'), self.path('out', 'many'))
        self.assertProtected(self.path('out', 'many', 'old'), 'many')
        self.assertProtected(self.path('elsewhere', 'old'), 'many')

    def test_an_input_beside_the_results_is_in_nobodys_way(self):
        os.mkdir(self.path('out'))
        self.produce('new', inputs=[('clip', self.write('out/clip', 'mine'))])


if __name__ == '__main__':
    unittest.main()
