# SPDX-License-Identifier: MIT
import json
import random
import struct
import tempfile
import unittest

from orvanel_host import editfile, selection
from orvanel_host.errors import HostError
from orvanel_host.orvanel import Orvanel
from orvanel_host.preview import Preview

from support import clock_of


def random_points(generator, count):
    """Records with awkward coordinates: tiny, huge, and with every bit of the fraction in use."""
    records = []
    for i in range(count):
        x = struct.unpack('<f', struct.pack('<I', generator.randrange(0x00800000, 0x7f000000)))[0]
        y = generator.choice([0.0, -0.0, 1.0 / 3, -0.1, generator.random()])
        records.append(struct.pack('<IffIII', i % 3 != 0, x, y, generator.randrange(2), generator.randrange(2), 0))
    return b''.join(records)


class SelectionTest(unittest.TestCase):

    def test_keyframes_come_back_bit_for_bit(self):
        generator = random.Random(7)
        setting = {0: True, 1: True, 9: False, 6: [[2 ** 40, 3, 2], [0, -1, 0]], 8: [], 7: (0.25, 0.5),
                   3: [{4: long(i) * 10 ** 12, 5: random_points(generator, 9)} for i in range(5)]}
        self.assertEqual(selection.from_json(selection.to_json(setting)), setting)

    def test_an_open_outline_comes_back_bit_for_bit(self):
        setting = {0: False, 1: False, 9: True, 6: [], 8: [[5, 6, 7]], 2: random_points(random.Random(8), 40)}
        self.assertEqual(selection.from_json(selection.to_json(setting)), setting)

    def test_the_module_takes_back_what_it_gave(self):
        overlay = Orvanel()
        overlay.SetVideoCoordinate(640, 360, 0, 0, 640, 360)
        overlay.SetVideoInfo(0, 10 ** 8, 0, 10 ** 8)
        overlay.PrepareKeyframe(0)
        for x, y in ((100, 100), (300, 90), (200, 300)):
            overlay.AddPoint(x, y)
        for state in (0, 1, 2):
            overlay.Interactive(state, 100, 100)
        overlay.SetFeathers([[0, 4, 2]])
        overlay.SetInverse(True)
        before = overlay.GetCurrentDevSetting()
        self.assertTrue(before[0])
        other = Orvanel()
        other.SetVideoCoordinate(640, 360, 0, 0, 640, 360)
        other.SetDevSetting(selection.from_json(selection.to_json(before)))
        self.assertEqual(other.GetCurrentDevSetting(), before)

    def test_the_text_is_readable_json(self):
        text = selection.to_json({0: False, 1: False, 9: False, 6: [], 8: [], 2: struct.pack('<IffIII', 1, 0.1, 0.25, 0, 1, 0)})
        self.assertIn('[1, 0.100000001, 0.25, 0, 1, 0]', text)
        self.assertEqual(json.loads(text)['format'], 'orvanel-selection')

    def test_what_the_module_can_be_in_comes_back(self):
        """Whatever somebody does with the mouse, the selection that is saved can be read again."""
        generator = random.Random(11)
        for round in range(40):
            preview = Preview(clock_of(20))
            preview.place((640, 360))
            preview.seek(0)
            for step in range(40):
                self.do_anything(preview, generator)
                setting = preview.overlay.GetCurrentDevSetting()
                self.assertEqual(selection.from_json(selection.to_json(setting)), setting, (round, step))
            preview.close()

    def do_anything(self, preview, generator):
        overlay = preview.overlay
        spot = generator.randrange(0, 640, 40), generator.randrange(0, 360, 40)
        other = generator.randrange(0, 640, 40), generator.randrange(0, 360, 40)

        def drag():
            preview.press(spot, generator.random() < 0.3)
            preview.drag(spot, other)
            preview.release(other)
        generator.choice([
            lambda: preview.click(spot), lambda: preview.click(other), drag, drag,
            lambda: preview.click(preview.to_pixels(*preview.points()[0][1:3])) if preview.points() else None,
            lambda: preview.seek(generator.randrange(20)), preview.delete_last, preview.undo, preview.redo, preview.store_keyframe,
            lambda: overlay.MoveAllPoints(generator.randrange(-900, 900), 7), overlay.SelectAllPoints,
            lambda: preview.delete() if generator.random() < 0.3 else None,
            lambda: overlay.RemoveSpecificKeyFrame(preview.clock.startOf(preview.frame))])()

    def test_other_texts_are_refused(self):
        good = json.loads(selection.to_json({0: True, 1: False, 9: False, 6: [], 8: [], 3: [{4: 1, 5: b''}]}))
        for change in ({'format': 'x'}, {'version': 2}, {'keyframes': 5}, {'keyframes': [{}]},
                       {'keyframes': [{'duration': 1, 'points': [[1, 2]]}]},
                       {'keyframes': [{'duration': 1, 'points': [[1, 'x', 2, 3, 4, 5]]}]}):
            with self.assertRaises(HostError):
                selection.from_json(json.dumps(dict(good, **change)))
        for text in ('', '[]', '5', '{}'):
            with self.assertRaises(HostError):
                selection.from_json(text)

    def test_every_wrong_field_is_named_with_its_place_and_reason(self):
        anchor, handle = [0, 0.1, 0.2, 0, 0, 0], [1, 0.1, 0.2, 0, 0, 0]
        chain = [anchor, handle, handle]

        def keyframes(*durations):
            return {'keyframes': [{'duration': duration, 'points': chain} for duration in durations]}

        def points(*rows):
            return {'keyframes': [{'duration': 1, 'points': list(rows)}]}
        for change, message in [
                ({'format': 'orvanel-edit'}, "not a selection: the field 'format' has to be \"orvanel-selection\""),
                ({'version': True}, 'version has to be 1, not true'),
                ({'version': '1'}, 'version has to be 1, not "1"'),
                ({'time_unit': 'ms'}, 'time_unit has to be "100 ns"'),
                ({'point_fields': ['x', 'y']}, 'point_fields has to be ["type", '),
                ({'mask': 1}, "unknown field 'keyframes'"),
                ({'inverse': None}, 'inverse has to be true or false, not null'),
                ({'feathers': [[1, 2]]}, 'feathers[0] has to be a list of 3, not [1, 2]'),
                ({'feathers': [[0, 2 ** 31, 2]]}, 'feathers[0][1] has to be a whole number from -2.14748e+09 to 2.14748e+09, not 2147483648'),
                ({'feathers': [[2 ** 63, 1, 2]]}, 'feathers[0][0] has to be a whole number from '),
                ({'grade': {'exposure': 1}}, "grade: the field 'saturation' is missing"),
                ({'grade': {'exposure': 17, 'saturation': 1}}, 'grade.exposure has to be a number from -16 to 16, not 17'),
                ({'size': [640]}, 'size has to be a list of two numbers, not [640]'),
                ({'size': [640, 0]}, 'size[1] has to be a whole number from 1 to '),
                ({'colour': 'red'}, "unknown field 'colour'"),
                (keyframes(1, 1), 'keyframes[1].duration has to be later than the one before'),
                (keyframes(2, 1), 'keyframes[1].duration has to be later than the one before'),
                (keyframes(0.5), 'keyframes[0].duration has to be a whole number'),
                (keyframes(1e308), 'keyframes[0].duration has to be a whole number'),
                (points(anchor, handle), 'keyframes[0].points is no outline: it ends after one of two handles'),
                (points(handle, handle, handle), 'keyframes[0].points[0] is out of place: an anchor and its two handles take turns'),
                (points(anchor, anchor, handle), 'keyframes[0].points[1] is out of place: an anchor and its two handles take turns'),
                (points(anchor, handle, [1, 1e39, 0, 0, 0, 0]), 'keyframes[0].points[2][1] has to be a number from -3.40282e+38 to'),
                (points(anchor, handle, [1, 1, 0, -1, 0, 0]), 'keyframes[0].points[2][3] has to be a whole number from 0 to'),
                (points(anchor, handle, [2, 1, 0, 0, 0, 0]), 'keyframes[0].points[2][0] has to be a whole number from 0 to 1, not 2'),
                ({'centroid': [1]}, 'centroid has to be a list of two numbers, not [1]')]:
            good = json.loads(selection.to_json({0: True, 1: False, 9: False, 6: [], 8: [], 3: []}))
            with self.assertRaises(HostError) as caught:
                selection.from_json(json.dumps(dict(good, **change)))
            self.assertTrue(str(caught.exception).startswith('the selection cannot be read: ' + message), str(caught.exception))
        for text in ('[' * 100000, '{"format": 1e400}', '\xff', '{"format": %s}' % ('9' * 1000000)):
            with self.assertRaises(HostError):
                selection.from_json(text)

    def test_numbers_at_the_end_of_single_precision(self):
        data = struct.pack('<IffIII', 0, 3.4028234663852886e38, -1e-45, 2 ** 32 - 1, 0, 1)
        setting = {0: False, 1: False, 9: False, 6: [[-2 ** 63, -2 ** 31, 2 ** 31 - 1]], 8: [], 2: data}
        self.assertEqual(selection.from_json(selection.to_json(setting)), setting)

    def test_grade_and_size_come_along(self):
        setting = {0: False, 1: False, 9: False, 6: [], 8: [], 2: b''}
        text = selection.to_json(setting, editfile.GradeSettings(0.7, 1.5), (640, 360))
        with tempfile.NamedTemporaryFile() as stream:
            stream.write(text)
            stream.flush()
            self.assertEqual(selection.load(stream.name), (setting, (0.7, 1.5), (640, 360)))


if __name__ == '__main__':
    unittest.main()
