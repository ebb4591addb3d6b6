# SPDX-License-Identifier: MIT
"""The diagnostic log of the loaded module: its switches in the registry, and where its lines go."""
from __future__ import absolute_import

import unittest

import _debug_output
import _Orvanel


class Log(unittest.TestCase):

    def setUp(self):
        _debug_output.set_switches(0, 0)
        _Orvanel.delete_Orvanel(_Orvanel.new_Orvanel())

    def lines(self):
        """What the life of one object sends to the debugger."""
        _debug_output.start()
        editor = _Orvanel.new_Orvanel()
        _Orvanel.Orvanel_SetVideoCoordinate(editor, 8, 8, 0, 0, 8, 8)
        _Orvanel.delete_Orvanel(editor)
        return _debug_output.stop()

    def test_switches_count_from_the_next_object_on(self):
        self.assertEqual(self.lines(), [])
        editor = _Orvanel.new_Orvanel()
        self.addCleanup(_Orvanel.delete_Orvanel, editor)
        _debug_output.set_switches(1, 0)
        _debug_output.start()
        _Orvanel.Orvanel_SetVideoCoordinate(editor, 8, 8, 0, 0, 8, 8)
        self.assertEqual(_debug_output.stop(), [])
        self.assertIn("[Orvanel] Orvanel::ResetBuffer() enter\n\n", self.lines())
        _debug_output.set_switches(0, 0)
        self.assertEqual(self.lines(), [])

    def test_a_missing_key_keeps_the_switches(self):
        _debug_output.set_switches(1, 0)
        self.assertNotEqual(self.lines(), [])
        _debug_output.remove_key()
        self.assertNotEqual(self.lines(), [])

    def test_every_line_has_the_prefix_and_ends_with_a_line_break(self):
        _debug_output.set_switches(1, 0)
        lines = self.lines()
        self.assertGreater(len(lines), 3)
        for line in lines:
            self.assertTrue(line.startswith("[Orvanel] ") and line.endswith("\n"), line)

    def test_the_event_trace_takes_the_lines_from_the_debugger(self):
        _debug_output.set_switches(1, 1)
        self.assertEqual(self.lines(), [])
        _debug_output.set_switches(1, 0)
        self.assertNotEqual(self.lines(), [])

    def test_the_event_trace_alone_writes_nothing(self):
        _debug_output.set_switches(0, 1)
        self.assertEqual(self.lines(), [])


if __name__ == "__main__":
    unittest.main()
