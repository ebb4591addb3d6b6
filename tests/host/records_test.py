# SPDX-License-Identifier: MIT
"""Objects that _hostkit makes are what the module's entries take, and the other way round."""
import gc
import os
import subprocess
import sys
import unittest
import weakref

import _Orvanel
from orvanel_host import hostkit, outline
from orvanel_host.orvanel import Orvanel

from support import UNIT, clock_of

E_FAIL = -2147467259


def triangle():
    overlay = Orvanel()
    overlay.SetVideoCoordinate(640, 360, 0, 0, 640, 360)
    overlay.SetVideoInfo(0, 10 * UNIT, 0, 10 * UNIT)
    overlay.PrepareKeyframe(0)
    for x, y in ((100, 100), (300, 100), (200, 300)):
        overlay.AddPoint(x, y)
    for state in (0, 1, 2):
        overlay.Interactive(state, 100, 100)
    return overlay


def anchors(overlay):
    return [(int(round(p.x * 640)), int(round(p.y * 360)))
            for p in outline.anchors(outline.unpack(overlay.GetCurrentPoints()))]


class RecordsTest(unittest.TestCase):

    def test_every_entry_is_a_method(self):
        entries = [name for name in vars(_Orvanel) if name.startswith('Orvanel_') and name != 'Orvanel_swigregister']
        self.assertEqual(len(entries), 81)
        for entry in entries:
            self.assertTrue(callable(getattr(Orvanel, entry[len('Orvanel_'):])), entry)

    def test_a_point_is_hit(self):
        overlay, point = triangle(), hostkit.MPoint()
        point.x, point.y = 110, 90
        self.assertEqual(overlay.HitTestPoint(point), 0)
        point.x = 111
        self.assertEqual(overlay.HitTestPoint(point), -1)

    def test_a_hover_record_inserts_a_point(self):
        overlay, hover = triangle(), hostkit.HoverPoint()
        hover.type, hover.lineIndex = 2, 0
        hover.point.x, hover.point.y = 200, 100
        self.assertEqual(overlay.AddPointInLine(hover), 0)
        self.assertEqual(anchors(overlay), [(100, 100), (200, 100), (300, 100), (200, 300)])
        hover.lineIndex = -1
        self.assertEqual(overlay.AddPointInLine(hover), E_FAIL)

    def test_a_vector_of_indices_moves_points(self):
        overlay = triangle()
        overlay.Interactive(_Orvanel.ECS_MOUSE_MOVE, 100, 100)
        overlay.MovePoints(hostkit.UIntVector([0, 3]), 110, 105)
        self.assertEqual(anchors(overlay), [(110, 105), (310, 105), (200, 300)])

    def test_a_vector_of_points_is_filled(self):
        overlay, points = triangle(), hostkit.MPointFVector()
        Orvanel.SetDevSettingPointsBuf(overlay.GetCurrentPoints(), points)
        self.assertEqual(points.size(), 9)
        self.assertEqual([points[i].type for i in range(9)], [0, 1, 1] * 3)
        self.assertAlmostEqual(points[3].x, 300 / 640.0, 6)
        Orvanel.SetDevSettingPoints([(0.5, 0.25, 0, 1, 0), (1, 2)], points)
        self.assertEqual(points.size(), 10)
        self.assertEqual((points[9].x, points[9].y, points[9].curveIn), (0.5, 0.25, 1))

    def test_a_keyframe_record_is_read_and_freed(self):
        overlay = triangle()
        record = overlay.GetKeyFrameMaskInfo(12345678901)
        self.assertIsInstance(record, hostkit.KeyFrameMaskInfo)
        self.assertEqual(record.duration, 12345678901)
        self.assertEqual((record.maskWidth, record.maskHeight, record.placement.width), (640, 360, 640))
        self.assertEqual((record.points[3].x, record.points[3].y), (300, 100))
        self.assertEqual(record.pointsF.size(), record.points.size())
        self.assertEqual(record.maskBuffer.size(), 0)
        self.assertTrue(record.thisown)
        # The record is its owner's: a change of the outline does not reach it, and it goes with its Python object.
        overlay.MoveAllPoints(5, 5)
        self.assertEqual(record.points[3].x, 300)
        gone = weakref.ref(record)
        del record
        gc.collect()
        self.assertIsNone(gone())

    def test_the_syncer_finds_the_keyframe_of_a_frame(self):
        overlay = triangle()
        clock = clock_of(300, 30000, 1001)
        syncer = hostkit.VideoSyncer(clock)
        for frame in (10, 20):
            overlay.PrepareKeyframe(clock.startOf(frame))
            overlay.CacheCurrentKeyframe()
        start, after = clock.startOf(10), clock.startOf(11)
        self.assertEqual(overlay.GetClosestKeyFramePos(start, syncer), start)
        self.assertEqual(overlay.GetClosestKeyFramePos(after - 1, syncer), start)
        self.assertEqual(overlay.GetClosestKeyFramePos(after, syncer), after)
        self.assertEqual(overlay.GetClosestKeyFramePos(start - 1, syncer), start - 1)
        self.assertEqual(overlay.GetClosestKeyFramePos(after - 1, None), after - 1)

    def test_an_overlay_buffer_is_laid_over_a_frame(self):
        overlay, frame = triangle(), hostkit.Image(640, 360)
        buffer = overlay.PrepareKeyframe(0)
        self.assertEqual(overlay.GetBufferLen(), 640 * 360 * 4)
        with overlay.texture_locked():
            hostkit.compositeOverlay(frame, buffer, overlay.GetBufferLen())
        self.assertNotEqual(frame.pixel(200, 200), 0xFF000000)
        self.assertEqual(frame.pixel(600, 350), 0xFF000000)
        with self.assertRaisesRegexp(ValueError, 'does not fit a frame of 64x36 pixels'):
            hostkit.compositeOverlay(hostkit.Image(64, 36), buffer, overlay.GetBufferLen())

    def test_an_owned_object_ends_with_its_proxy(self):
        # The object's worker is a thread that Python does not know of.
        before = len(os.listdir('/proc/self/task'))
        overlay = triangle()
        self.assertEqual(len(os.listdir('/proc/self/task')), before + 1)
        del overlay
        gc.collect()
        self.assertEqual(len(os.listdir('/proc/self/task')), before)


class ImportOrderTest(unittest.TestCase):

    def test_vectors_work_in_either_order(self):
        script = ('from orvanel_host import hostkit\n'
                  'for vector, item in ((hostkit.MPointFVector, hostkit.MPointF()), (hostkit.UIntVector, 7)):\n'
                  '    made = vector([item])\n'
                  '    print len(made), type(made[0]).__name__, len(made[0:1])\n')
        for first in ('import _hostkit', 'import _Orvanel'):
            out = subprocess.check_output([sys.executable, '-B', '-c', '%s\nimport _Orvanel\n%s' % (first, script)])
            self.assertEqual(out.split(), ['1', 'MPointF', '1', '1', 'int', '1'], first)


class SyncerTest(unittest.TestCase):

    def test_frame_numbers_at_common_rates(self):
        for numerator, denominator in ((24, 1), (25, 1), (24000, 1001), (30000, 1001), (60000, 1001)):
            clock = clock_of(2000, numerator, denominator)
            syncer = hostkit.VideoSyncer(clock)
            for frame in (0, 1, 2, 29, 30, 999, 1999):
                start = clock.startOf(frame)
                self.assertEqual(start, -(-frame * UNIT * denominator // numerator))
                self.assertEqual(syncer.GetFrameNumber(start), frame)
                self.assertEqual(syncer.GetFrameNumber(start - 1), frame - 1)
                self.assertEqual(syncer.GetFrameNumber(start + syncer.GetTolerance(start)), frame)
                self.assertEqual(syncer.GetFrameNumber(start + syncer.GetTolerance(start) + 1), frame + 1)

    def test_the_time_is_what_was_set(self):
        syncer = hostkit.VideoSyncer(clock_of(10))
        syncer.setVideoTime(2 ** 40)
        self.assertEqual(syncer.GetVideoTime(), 2 ** 40)


if __name__ == '__main__':
    unittest.main()
