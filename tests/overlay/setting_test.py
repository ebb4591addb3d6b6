# SPDX-License-Identifier: MIT
"""The device setting, feathers, the centroid, and keyframes made for the host."""
from __future__ import absolute_import

import unittest

import _Orvanel as entries
from fixture import Editor, EditorCase, bytes_of, hostkit, needs_records

_TWO = [(0, 0.25, 0.5, 1, 0, 1), (1, -3.5, 1e30, 0, 2, 4000000000)]


def _nine(curve_out=0):
    """A closed triangle of normalised points."""
    places = [(0.1, 0.1), (0.2, 0.1), (0.4, 0.1), (0.5, 0.1), (0.5, 0.2), (0.5, 0.4), (0.5, 0.5), (0.4, 0.4), (0.2, 0.2)]
    return [(0 if at % 3 == 0 else 1, x, y, 0, curve_out if at == 3 else 0, 0) for at, (x, y) in enumerate(places)]


@needs_records
class PointReaders(unittest.TestCase):

    def setUp(self):
        self.points = hostkit.MPointFVector()
        self.points.push_back(hostkit.MPointF())
        self.points[0].x = 0.75

    def _read(self):
        return [(p.type, p.x, p.y, p.curveIn, p.curveOut, p.handleShown) for p in self.points]

    def test_a_byte_string_that_is_no_multiple_of_24_leaves_the_points_unchanged(self):
        before = self._read()
        for length in (0, 1, 23, 25, 47):
            self.assertIsNone(entries.Orvanel_SetDevSettingPointsBuf(b"x" * length, self.points))
            self.assertEqual(self._read(), before, length)

    def test_48_bytes_are_two_records_bit_for_bit(self):
        entries.Orvanel_SetDevSettingPointsBuf(bytes_of(_TWO), self.points)
        self.assertEqual(bytes_of(self._read()), bytes_of(_TWO))

    def test_what_is_no_byte_string_leaves_the_points_unchanged(self):
        before = self._read()
        for value in (None, 5, [], u"x" * 24):
            entries.Orvanel_SetDevSettingPointsBuf(value, self.points)
            self.assertEqual(self._read(), before)

    def test_items_that_are_no_5_tuples_are_skipped(self):
        entries.Orvanel_SetDevSettingPoints(
            [(0.5, 0.25, 0, 1, 2), (1, 2, 3, 4), [1, 2, 3, 4, 5], (1, 2, 3, 4, 5, 6), None, (0.125, 1, 1, 0, 0)], self.points)
        self.assertEqual(self._read()[1:], [(0, 0.5, 0.25, 1, 2, 0), (1, 0.125, 1.0, 0, 0, 0)])

    def test_records_are_appended_and_narrowed(self):
        entries.Orvanel_SetDevSettingPoints([(0.1, 0.2, 0, 0, 0)], self.points)
        self.assertEqual(len(self.points), 2)
        self.assertEqual(bytes_of(self._read()[1:]), bytes_of([(0, 0.1, 0.2, 0, 0, 0)]))


class Restoring(EditorCase):

    def test_an_open_outline_from_bytes_and_from_tuples(self):
        data = bytes_of(_nine()[:7])
        tuples = [(x, y, kind, c_in, c_out) for kind, x, y, c_in, c_out, _ in _nine()[:7]]
        for form in (data, tuples):
            self.editor.SetDevSetting({0: False, 2: form})
            self.assertEqual(self.editor.GetCurrentPoints(), data)
            self.assertEqual(self.editor.GetCurrentDevSetting()[2], data)

    def test_a_byte_string_of_25_bytes_is_no_outline(self):
        self.editor.AddPoint(1, 1)
        self.editor.SetDevSetting({0: False, 2: b"x" * 25})
        self.assertIsNone(self.editor.GetCurrentPoints())

    def test_only_true_itself_is_true(self):
        for value in (1, 5, "yes", [0], 1.0, None):
            self.editor.SetDevSetting({0: value, 1: value, 9: value})
            self.assertEqual((self.editor.IsMask(), self.editor.GetInverse(), self.editor.GetHide()), (False,) * 3, value)
        self.editor.SetDevSetting({0: True, 1: True, 9: True})
        self.assertEqual((self.editor.IsMask(), self.editor.GetInverse(), self.editor.GetHide()), (True,) * 3)

    def test_missing_flags_are_false(self):
        self.editor.SetInverse(True)
        self.editor.SetHide(True)
        self.editor.SetDevSetting({})
        self.assertEqual((self.editor.GetInverse(), self.editor.GetHide()), (False, False))

    def test_missing_feathers_are_kept(self):
        self.editor.SetFeathers([[1, 2, 3]])
        self.editor.SetFeatherShifts([[4, 5, 6]])
        self.editor.SetDevSetting({8: []})
        self.assertEqual((self.editor.GetFeathers(), self.editor.GetFeatherShifts()), ([[1, 2, 3]], []))

    def test_what_is_no_dictionary_is_ignored(self):
        self.editor.draw(self.TRIANGLE)
        before = self.editor.GetCurrentDevSetting()
        for value in (None, 5, [], (), "x"):
            self.assertIsNone(self.editor.SetDevSetting(value))
        self.assertEqual(self.editor.GetCurrentDevSetting(), before)

    def test_restored_keyframes_are_shown_at_their_positions(self):
        self.editor.SetDevSetting({0: True, 3: [{4: 5, 5: bytes_of(_nine())}]})
        self.assertIsNone(self.editor.GetCurrentPoints())
        self.editor.PrepareKeyframe(5)
        self.assertEqual(self.editor.GetCurrentPoints(), bytes_of(_nine()))

    def test_nothing_is_announced(self):
        self.editor.draw(self.TRIANGLE)
        self.editor.SetDevSetting({0: False})
        self.assertEqual(self.editor.events, [])


class RoundTrip(EditorCase):

    def _prepared(self):
        self.editor.SetInverse(True)
        self.editor.SetHide(True)
        self.editor.SetFeathers([[2 ** 40, 1, -2], [0, 0, 2]])
        self.editor.SetFeatherShifts([[-5, 2 ** 31 - 1, -2 ** 31]])
        return self.editor

    def _restored(self):
        other = Editor()
        self.addCleanup(other.destroy)
        other.place_video(640, 480, 3, 4, 600, 400)
        other.SetDevSetting(self.editor.GetCurrentDevSetting())
        return other

    def test_an_open_outline(self):
        self._prepared().draw(self.TRIANGLE, closed=False)
        other = self._restored()
        self.assertEqual(other.GetCurrentDevSetting(), self.editor.GetCurrentDevSetting())
        self.assertEqual(other.GetCurrentPoints(), self.editor.GetCurrentPoints())

    def test_keyframes(self):
        self._prepared().PrepareKeyframe(0)
        self.editor.draw(self.TRIANGLE)
        self.editor.PrepareKeyframe(2 ** 33)
        self.editor.Convert2Mask(False)
        setting = self.editor.GetCurrentDevSetting()
        self.assertEqual(sorted(setting), [0, 1, 3, 6, 7, 8, 9])
        self.assertEqual([keyframe[4] for keyframe in setting[3]], [0, 2 ** 33])
        self.assertEqual(self._restored().GetCurrentDevSetting(), setting)

    def test_keyframes_at_negative_positions(self):
        self.editor.draw(self.TRIANGLE)
        self.assertEqual(self._restored().GetKeyFrameDurationList(), self.editor.GetKeyFrameDurationList())

    def test_an_empty_selection(self):
        self.assertEqual(self.editor.GetCurrentDevSetting(), {0: False, 1: False, 9: False, 6: [], 8: [], 2: b""})
        self.assertEqual(self._restored().GetCurrentDevSetting(), self.editor.GetCurrentDevSetting())

    def test_the_centroid_is_ignored_on_the_way_in(self):
        self.editor.draw(self.TRIANGLE)
        setting = self.editor.GetCurrentDevSetting()
        right = setting[7]
        for wrong in ((9.0, 9.0), None, "x"):
            setting[7] = wrong
            self.editor.SetDevSetting(setting)
            self.assertEqual(self.editor.GetCurrentDevSetting()[7], right)


class Feathers(EditorCase):

    def test_elements_that_do_not_parse_keep_their_defaults(self):
        self.editor.SetFeathers([["x", None, "y"], [7, 8, 9]])
        self.assertEqual(self.editor.GetFeathers(), [[0, 0, 2], [7, 8, 9]])

    def test_each_call_gives_a_list_of_its_own(self):
        self.editor.SetFeathers([[1, 2, 3]])
        self.editor.GetFeathers().append(5)
        self.assertEqual(self.editor.GetFeathers(), [[1, 2, 3]])
        self.assertIs(type(self.editor.GetFeathers()[0][0]), long)


class Centroid(EditorCase):

    def _centroid_of(self, places):
        """Key 7 for a single keyframe with these points."""
        points = [(0, x, y, 0, 0, 0) for x, y in places]
        self.editor.SetDevSetting({0: True, 3: [{4: 0, 5: bytes_of(points)}]})
        return self.editor.GetCurrentDevSetting()[7]

    def test_one_point_has_its_centre_at_the_origin(self):
        self.assertEqual(self._centroid_of([(0.5, 0.5)]), (0.0, 0.0))

    def test_two_points(self):
        x, y = self._centroid_of([(0.2, 0.4), (0.6, 0.8)])
        self.assertAlmostEqual(x, 0.4, 6)
        self.assertAlmostEqual(y, 0.6, 6)

    def test_it_is_the_centre_of_the_box_not_the_mean(self):
        self.assertEqual(self._centroid_of([(0.0, 0.0), (0.0, 0.0), (0.0, 0.0), (1.0, 0.5)]), (0.5, 0.25))

    def test_no_centroid_while_nothing_is_shown(self):
        self.editor.UpdateCentroid()
        self.assertIsNone(self.editor.GetCentroidUS())
        self.editor.PrepareKeyframe(10)
        self.editor.draw(self.TRIANGLE, closed=False)
        self.editor.UpdateCentroid()
        self.assertIsNone(self.editor.GetCentroidUS())
        self.editor.press(*self.TRIANGLE[0])
        self.editor.UpdateCentroid()
        self.assertEqual(self.editor.GetCentroidUS(), (0.375, 0.5))
        self.editor.PrepareKeyframe(9)
        self.assertIsNone(self.editor.GetCentroidUS())

    def test_it_stays_until_it_is_updated(self):
        self.editor.draw(self.TRIANGLE)
        self.editor.UpdateCentroid()
        self.assertEqual(self.editor.GetCentroidUS(), (0.375, 0.5))
        self.editor.MoveAllPoints(50, 75)
        self.assertEqual(self.editor.GetCentroidUS(), (0.375, 0.5))
        self.editor.UpdateCentroid()
        self.assertEqual(self.editor.GetCentroidUS(), (0.5, 0.75))


class GeneratedKeyframe(unittest.TestCase):

    def test_halfway(self):
        a = {4: 100, 5: bytes_of([(0, 0.0, 0.25, 0, 1, 1), (1, 0.5, 0.5, 0, 0, 0)])}
        b = {4: 300, 5: [(1.0, 0.75, 1, 1, 0), (0.5, 0.5, 0, 0, 0)]}
        self.assertEqual(entries.Orvanel_GenerateSpecificKeyFrame(a, b, 200),
                         {4: 200, 5: [(0.5, 0.5, 0, 0, 1), (0.5, 0.5, 1, 0, 0)]})

    def test_positions_outside_extrapolate(self):
        a, b = {4: 0, 5: [(0.0, 0.5, 0, 0, 0)]}, {4: 10, 5: [(0.25, 0.5, 0, 0, 0)]}
        self.assertEqual(entries.Orvanel_GenerateSpecificKeyFrame(a, b, 20)[5][0][:2], (0.5, 0.5))
        self.assertEqual(entries.Orvanel_GenerateSpecificKeyFrame(a, b, -10)[5][0][:2], (-0.25, 0.5))

    def test_what_is_no_dictionary_gives_none(self):
        good = {4: 0, 5: []}
        for a, b in ((None, good), (good, None), (5, good), (good, [])):
            self.assertIsNone(entries.Orvanel_GenerateSpecificKeyFrame(a, b, 1))

    def test_equal_positions_keep_what_does_not_move(self):
        a, b = {4: 5, 5: [(0.5, 0.5, 0, 0, 0)]}, {4: 5, 5: [(0.5, 0.5, 0, 0, 0)]}
        self.assertEqual(entries.Orvanel_GenerateSpecificKeyFrame(a, b, 9)[5][0][:2], (0.5, 0.5))

    def test_a_first_keyframe_without_points_gives_none(self):
        made = entries.Orvanel_GenerateSpecificKeyFrame({4: 0, 5: []}, {4: 5, 5: [(0.5, 0.5, 0, 0, 0)]}, 3)
        self.assertEqual(made, {4: 3, 5: []})


if __name__ == "__main__":
    unittest.main()
