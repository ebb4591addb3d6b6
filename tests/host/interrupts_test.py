# SPDX-License-Identifier: MIT
import os
import signal
import unittest

from orvanel_host import interrupts
from orvanel_host.preview import Preview

from support import clock_of

_ALL = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)


def send(number):
    os.kill(os.getpid(), number)


class InterruptsTest(unittest.TestCase):

    def setUp(self):
        before = [signal.getsignal(number) for number in _ALL]
        self.addCleanup(lambda: self.assertEqual([signal.getsignal(number) for number in _ALL], before))

    def test_a_signal_is_noted_and_raised_where_somebody_asks(self):
        for number in _ALL:
            with interrupts.noted():
                interrupts.check()
                self.assertFalse(interrupts.pending())
                send(number)
                self.assertTrue(interrupts.pending())
                with self.assertRaises(KeyboardInterrupt):
                    interrupts.check()

    def test_a_signal_of_an_earlier_job_is_forgotten(self):
        with interrupts.noted():
            send(signal.SIGHUP)
        with interrupts.noted():
            interrupts.check()

    def test_a_second_signal_does_not_wait(self):
        with self.assertRaises(KeyboardInterrupt):
            with interrupts.noted():
                send(signal.SIGTERM)
                send(signal.SIGINT)
                self.fail('unreachable')

    def test_a_callable_of_the_module_never_sees_one(self):
        """The module prints and drops what a callable raises: an interrupt in there would be lost."""
        preview = Preview(clock_of(10))
        self.addCleanup(preview.close)
        sent = []

        def interrupt_once(code):
            if not sent:
                sent.append(code)
                send(signal.SIGINT)
                sent.append('not interrupted')
        preview.place((640, 360))
        preview.seek(0)
        with interrupts.noted():
            preview.events.listen(interrupt_once)
            preview.click((100, 100))
            with self.assertRaises(KeyboardInterrupt):
                interrupts.check()
        self.assertEqual(sent[1:], ['not interrupted'])

    def test_signals_wait_for_the_end_of_a_block(self):
        for number in _ALL:
            done = []
            with self.assertRaises(interrupts.InterruptedAfterwards):
                with interrupts.held_off(interrupts.InterruptedAfterwards):
                    send(number)
                    send(number)
                    done.append(number)
            self.assertEqual(done, [number])

    def test_a_block_that_fails_fails_with_its_own_error(self):
        with self.assertRaises(ValueError):
            with interrupts.held_off():
                send(signal.SIGTERM)
                raise ValueError()

    def test_an_ignored_signal_stays_ignored(self):
        for block in (interrupts.noted, interrupts.held_off):
            before = signal.signal(signal.SIGHUP, signal.SIG_IGN)
            try:
                with block():
                    send(signal.SIGHUP)
                    self.assertFalse(interrupts.pending())
            finally:
                signal.signal(signal.SIGHUP, before)


if __name__ == '__main__':
    unittest.main()
