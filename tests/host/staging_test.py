# SPDX-License-Identifier: MIT
"""Runs that fail or are killed at any moment, and runs at the same time: results appear together or not at all, and
nothing is removed that somebody may still use."""
import os
import shutil
import signal
import unittest

from orvanel_host import staging
from orvanel_host.errors import HostError
from orvanel_host.manifest import FILE as MANIFEST
from orvanel_host.outputs import OutputFolder

from support import HostTest

_NAMES = ('a', 'b', 'many')


def fill(folder, text):
    """Three results."""
    for path in (folder.file('a'), folder.file('b'), os.path.join(folder.folder('many'), text)):
        with open(path, 'w') as stream:
            stream.write(text)


def _die_at(step):
    """Kills this process before its step of that number; a step is a call that changes a name."""
    count = [0]

    def stepping(call):
        def stepped(*arguments):
            count[0] += 1
            if count[0] == step:
                os.kill(os.getpid(), signal.SIGKILL)
            return call(*arguments)
        return stepped
    for name in ('rename', 'mkdir', 'unlink', 'rmdir'):
        setattr(os, name, stepping(getattr(os, name)))


class StagingTest(HostTest):

    def run_through(self, text, step=0, before_commit=lambda: None):
        """Makes the results in a process of its own; its exit code, negative for a signal."""
        child = os.fork()
        if child:
            status = os.waitpid(child, 0)[1]
            return -os.WTERMSIG(status) if os.WIFSIGNALED(status) else os.WEXITSTATUS(status)
        try:
            _die_at(step)
            with OutputFolder(self.path('out'), _NAMES) as folder:
                fill(folder, text)
                before_commit()
                folder.commit()
            os._exit(0)
        finally:
            os._exit(99)

    def fail_to_run(self):
        """A run that ends in an error: what is there afterwards is what was there before, cleaned up and repaired."""
        with self.assertRaises(ValueError):
            with OutputFolder(self.path('out')):
                raise ValueError()

    def results(self):
        """The texts of the results; None for each that is not there."""
        found = self.contents()
        many = [name[len('out/many/'):] for name in found if name.startswith('out/many/')]
        return [found.get('out/a'), found.get('out/b')] + (many or [None])

    def assertClean(self):
        self.assertEqual(set(os.listdir(self.path('out'))) - set(['a', 'b', 'many', MANIFEST]), set())


class KilledTest(StagingTest):

    def test_a_run_that_is_killed_at_any_step_is_undone_or_done_by_the_next(self):
        """The next run fails, so what is there afterwards is what the killed one and the repair have left."""
        for earlier in (None, 'old'):
            step, states = 1, []
            while True:
                if earlier:
                    self.assertEqual(self.run_through(earlier), 0)
                code = self.run_through('new', step)
                if code == 0:
                    break
                self.assertEqual(code, -signal.SIGKILL)
                if not os.path.isdir(self.path('out')):
                    os.mkdir(self.path('out'))
                self.fail_to_run()
                self.assertClean()
                state = self.results()
                self.assertIn(state, ([earlier] * 3, ['new'] * 3), 'killed at step %d' % step)
                states.append(state[0])
                # What the repair has left is this host's own.
                self.assertEqual(self.run_through(earlier or 'new'), 0)
                if not earlier:
                    shutil.rmtree(self.path('out'))
                step += 1
            self.assertGreater(states.count(earlier), 5)
            self.assertGreater(states.count('new'), 2)
            shutil.rmtree(self.path('out'))

    def test_a_live_run_is_left_alone(self):
        """Two runs wait to name their results; one of them is killed. A third one tells them apart."""
        with OutputFolder(self.path('out'), _NAMES) as live:
            fill(live, 'live')
            self.assertEqual(self.run_through('dead', before_commit=lambda: os.kill(os.getpid(), signal.SIGKILL)), -signal.SIGKILL)
            self.assertEqual(len(self.waiting()), 2)
            self.assertEqual(self.run_through('new'), 0)
            self.assertEqual(len(self.waiting()), 1)
            self.assertEqual(self.results(), ['new'] * 3)
            live.commit()
        self.assertEqual(self.results(), ['live'] * 3)
        self.assertClean()

    def waiting(self):
        return [name for name in os.listdir(self.path('out')) if os.path.isdir(self.path('out', name)) and name[0] == '.']

    def test_what_cannot_be_proved_to_be_a_leftover_stays(self):
        """A folder without a lock file, one under a link, and one that holds an input."""
        os.makedirs(self.path('out', '.unfinished-mine'))
        os.makedirs(self.path('out', '.unfinished-clip'))
        self.write('out/.unfinished-clip.lock', '')
        clip = self.write('out/.unfinished-clip/clip', 'mine')
        os.mkdir(self.path('elsewhere'))
        os.symlink(self.path('elsewhere'), self.path('out', '.unfinished-link'))
        self.write('out/.unfinished-link.lock', '')
        before = self.contents()
        with self.assertRaises(ValueError):
            with OutputFolder(self.path('out'), inputs=[('clip', clip)]):
                raise ValueError()
        self.assertEqual(self.contents(), before)

    def test_a_name_that_was_taken_meanwhile_is_not_taken_back(self):
        """Somebody has put a file where a killed run's old result belongs: both stay, until there is room."""
        self.assertEqual(self.run_through('old'), 0)
        step = 1
        while not os.path.exists(self.path('out', 'mine')):
            self.run_through('new', step)
            step += 1
            for name in self.waiting():
                if os.path.exists(self.path('out', name, '.replaced', 'b')):
                    self.write('out/mine', '')
                    if os.path.exists(self.path('out', 'b')):
                        os.unlink(self.path('out', 'b'))
                    self.write('out/b', 'mine')
        self.fail_to_run()
        self.assertEqual(self.contents()['out/b'], 'mine')
        self.assertEqual(len(self.waiting()), 1)
        os.unlink(self.path('out', 'b'))
        os.unlink(self.path('out', 'mine'))
        self.fail_to_run()
        self.assertEqual(self.results(), ['old'] * 3)
        self.assertClean()


class FailureTest(StagingTest):

    def test_a_name_that_cannot_be_given_takes_the_others_back(self):
        """Each of the renames fails in turn."""
        for earlier in (None, 'old'):
            failing, code = 1, None
            while code != 0:
                if earlier:
                    self.assertEqual(self.run_through(earlier), 0)
                before = self.contents()
                code = self.run_with_failing_rename('new', failing)
                if code:
                    self.assertEqual(self.contents(), before)
                failing += 1
            self.assertEqual(self.results(), ['new'] * 3)
            self.assertGreater(failing, 5)
            shutil.rmtree(self.path('out'))

    def run_with_failing_rename(self, text, failing):
        rename, count = os.rename, [0]

        def fail_once(source, target):
            count[0] += 1
            if count[0] == failing:
                raise OSError(28, 'No space left on device')
            rename(source, target)
        os.rename = fail_once
        try:
            with OutputFolder(self.path('out'), _NAMES) as folder:
                fill(folder, text)
                folder.commit()
            return 0
        except HostError as error:
            self.assertEqual(str(error), "cannot write to '%s', and nothing was changed there: No space left on device" %
                             self.path('out'))
            return 1
        finally:
            os.rename = rename

    def test_what_cannot_be_put_back_is_kept_and_named(self):
        self.assertEqual(self.run_through('old'), 0)
        rename, broken = os.rename, []

        def fail_from_now_on(source, target):
            if target == self.path('out', 'b'):
                broken.append(target)
            if broken:
                raise OSError(5, 'Input/output error')
            rename(source, target)
        os.rename = fail_from_now_on
        try:
            with self.assertRaises(HostError) as caught:
                with OutputFolder(self.path('out')) as folder:
                    for name in ('a', 'b'):
                        with open(folder.file(name), 'w') as stream:
                            stream.write('new')
                    folder.commit()
        finally:
            os.rename = rename
        self.assertRegexpMatches(str(caught.exception), "not all of it could be put back: the rest is in '.*unfinished-.*': Input")
        # The next run finds a disk that works again.
        self.fail_to_run()
        self.assertEqual(self.results(), ['old'] * 3)
        self.assertClean()


class LockTest(HostTest):

    def test_one_holder_at_a_time(self):
        path = self.path('lock')
        held = staging.lock(path)
        self.assertIsNone(staging.lock(path))
        held.release()
        self.assertFalse(os.path.exists(path))
        staging.lock(path).release()

    def test_a_lock_on_a_file_that_was_removed_is_none(self):
        """Who waited for the lock gets that of the file that is there now."""
        path = self.path('lock')
        held = staging.lock(path)
        flock = staging.fcntl.flock

        def removed_meanwhile(number, operation):
            staging.fcntl.flock = flock
            held.release()
            flock(number, operation)
        staging.fcntl.flock = removed_meanwhile
        try:
            second = staging.lock(path)
        finally:
            staging.fcntl.flock = flock
        self.assertTrue(os.path.exists(path))
        self.assertIsNone(staging.lock(path))
        second.release()

    def test_a_file_system_without_locks_proves_nothing(self):
        def unsupported(number, operation):
            raise IOError(95, 'Operation not supported')
        flock, staging.fcntl.flock = staging.fcntl.flock, unsupported
        try:
            self.assertIsNone(staging.lock(self.path('lock'), strict=True))
            staging.lock(self.path('lock')).release()
        finally:
            staging.fcntl.flock = flock


if __name__ == '__main__':
    unittest.main()
