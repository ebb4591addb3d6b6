# SPDX-License-Identifier: MIT
import json
import random
import struct
import unittest

from orvanel_host import selection
from orvanel_host.errors import HostError
from orvanel_host.orvanel import Orvanel


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


if __name__ == '__main__':
    unittest.main()
