# SPDX-License-Identifier: MIT
"""Constants and the serialised form of points."""
from __future__ import absolute_import

import struct
import subprocess
import sys
import unittest

import _Orvanel as entries
from fixture import EditorCase, hostkit, needs_records


class Constants(unittest.TestCase):

    def test_event_codes_end_with_the_point_update(self):
        names = ["ECB_POINT_ADD", "ECB_POINT_REMOVE", "ECB_MASK_CREATE", "ECB_MASK_UPDATE", "ECB_MASK_REMOVE",
                 "ECB_POINT_UPDATE"]
        self.assertEqual([getattr(entries, name) for name in names], [0, 1, 2, 3, 4, 5])

    def test_mouse_states(self):
        names = ["ECS_MOUSE_MOVE", "ECS_MOUSE_DOWN", "ECS_MOUSE_UP", "ECS_MOUSE_DBCLICK", "ECS_DELETE",
                 "ECS_DELETE_LAST_POINT"]
        self.assertEqual([getattr(entries, name) for name in names], [0, 1, 2, 3, 4, 5])

    def test_the_index_of_no_point(self):
        self.assertEqual(entries.CONST_DEFAULT_IDX, -1)


class Serialised(EditorCase):

    def test_a_point_has_24_bytes(self):
        self.editor.AddPoint(100, 75)
        self.assertEqual(self.editor.GetCurrentPoints(), struct.pack("<IffIII", 0, 0.25, 0.25, 0, 0, 0))
        self.editor.AddPoint(200, 75)
        self.assertEqual(len(self.editor.GetCurrentPoints()), 4 * 24)

    @needs_records
    def test_both_records_have_six_fields_of_32_bits(self):
        for record, coordinate in ((hostkit.MPoint(), 2 ** 31 - 1), (hostkit.MPointF(), 0.5)):
            for name in ("type", "curveIn", "curveOut", "handleShown"):
                setattr(record, name, 2 ** 32 - 1)
                self.assertEqual(getattr(record, name), 2 ** 32 - 1)
                self.assertRaises((TypeError, OverflowError), setattr, record, name, 2 ** 32)
            record.x = record.y = coordinate
            self.assertEqual((record.x, record.y), (coordinate, coordinate))

    @needs_records
    def test_vectors_of_the_host_work_whichever_module_is_imported_first(self):
        script = """
%s
points, indices = hostkit.MPointFVector(1), hostkit.UIntVector([7, 8])
points[0].x = 0.5
_Orvanel.Orvanel_SetDevSettingPoints([(0.25, 0.5, 0, 0, 0)], points)
assert (len(points), points[1].y, indices[1]) == (2, 0.5, 8)
editor = _Orvanel.new_Orvanel()
_Orvanel.Orvanel_MovePoints(editor, indices, 1, 1)
_Orvanel.delete_Orvanel(editor)
"""
        imports = ["import _Orvanel", "from orvanel_host import hostkit"]
        for order in (imports, imports[::-1]):
            subprocess.check_call([sys.executable, "-c", script % "\n".join(order)])


if __name__ == "__main__":
    unittest.main()
