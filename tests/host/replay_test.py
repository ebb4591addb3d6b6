# SPDX-License-Identifier: MIT
"""Every kind of gesture, and what each says when it misses."""
import json
import unittest

from orvanel_host import editfile, outline
from orvanel_host.errors import EditError
from orvanel_host.preview import Preview
from orvanel_host.replay import Replay

from support import clock_of, simple_edit

DRAWN = [
    {'do': 'draw', 'points': [[200, 100], [400, 100], [400, 300], [200, 300]]},
    {'do': 'close'},
]


class ReplayTest(unittest.TestCase):

    def replay(self, *gestures, **changes):
        document = simple_edit(gestures=list(gestures), **dict({'coordinates': 'display'}, **changes))
        self.preview = Preview(clock_of(50))
        self.addCleanup(self.preview.close)
        Replay(editfile.parse(json.dumps(document), 'test.json'), self.preview).run()

    def assertMisses(self, message, *gestures):
        with self.assertRaises(EditError) as caught:
            self.replay(*gestures)
        self.assertEqual(str(caught.exception), "edit 'test.json': " + message)

    def anchors(self):
        return [self.preview.to_pixels(p.x, p.y) for p in outline.anchors(self.preview.points())]

    def handle(self, index):
        point = self.preview.points()[index]
        return self.preview.to_pixels(point.x, point.y)


class GestureTest(ReplayTest):

    def test_draw_and_close(self):
        self.replay(*DRAWN)
        self.assertEqual(self.anchors(), [(200, 100), (400, 100), (400, 300), (200, 300)])
        self.assertTrue(self.preview.overlay.IsMask())

    def test_shift_draws_level(self):
        self.replay({'do': 'draw', 'points': [[200, 100]]}, {'do': 'draw', 'points': [[400, 130], [420, 300]], 'shift': True})
        self.assertEqual(self.anchors(), [(200, 100), (400, 100), (400, 300)])

    def test_coordinates_in_fractions_of_the_video_follow_the_zoom(self):
        self.replay({'do': 'zoom', 'factor': 2, 'center': [0.5, 0.5]},
                    {'do': 'draw', 'points': [[0.5, 0.5], [0.6, 0.5]]}, coordinates='video')
        self.assertEqual(self.anchors(), [(320, 180), (448, 180)])

    def test_coordinates_in_pixels_do_not(self):
        self.replay({'do': 'zoom', 'factor': 2, 'center': [0.5, 0.5]}, {'do': 'draw', 'points': [[320, 180], [100, 50]]})
        self.assertEqual(self.anchors(), [(320, 180), (100, 50)])

    def test_a_handle_bends_a_segment(self):
        self.replay(*DRAWN + [
            {'do': 'pick', 'at': {'anchor': 1}},
            {'do': 'drag', 'from': {'anchor': 1, 'handle': 'in'}, 'to': [350, 60]}])
        self.assertEqual(self.handle(2), (350, 60))
        self.assertEqual(self.handle(4), (400, 150), 'the other handle stays')

    def test_shift_mirrors_the_other_handle(self):
        self.replay(*DRAWN + [
            {'do': 'pick', 'at': {'anchor': 1}},
            {'do': 'drag', 'from': {'anchor': 1, 'handle': 'in'}, 'to': [350, 60], 'shift': True}])
        self.assertEqual(self.handle(2), (350, 60))
        self.assertEqual(self.handle(4), (450, 140))

    def test_insert_and_drag_at_once(self):
        self.replay(*DRAWN + [{'do': 'insert', 'at': [300, 100], 'to': [300, 80]}])
        self.assertEqual(self.anchors()[1], (300, 80))

    def test_rubber_band_and_drag(self):
        self.replay(*DRAWN + [
            {'do': 'rubber-band', 'from': [150, 250], 'to': [450, 350]},
            {'do': 'drag', 'from': {'anchor': 2}, 'to': {'anchor': 2, 'by': [10, 20]}}])
        self.assertEqual(self.anchors(), [(200, 100), (400, 100), (410, 320), (210, 320)])

    def test_select_all_and_nudge(self):
        self.replay(*DRAWN + [{'do': 'select-all'}, {'do': 'nudge', 'by': [-5, 3]}])
        self.assertEqual(self.anchors()[0], (195, 103))

    def test_delete_picks_and_delete_all(self):
        self.replay(*DRAWN + [{'do': 'pick', 'at': {'anchor': 1}}, {'do': 'delete'}])
        self.assertEqual(self.anchors(), [(200, 100), (400, 300), (200, 300)])
        self.replay(*DRAWN + [{'do': 'deselect', 'at': [10, 10]}, {'do': 'delete'}])
        self.assertEqual(self.anchors(), [])

    def test_delete_last_while_drawing(self):
        self.replay(DRAWN[0], {'do': 'delete-last'})
        self.assertEqual(len(self.anchors()), 3)
        self.replay(DRAWN[0], *[{'do': 'delete-last'}] * 4)
        self.assertEqual(self.anchors(), [])
        self.replay(DRAWN[0], *[{'do': 'delete-last'}] * 4 + [{'do': 'undo'}])
        self.assertEqual(self.anchors(), [(200, 100)])

    def test_moments(self):
        self.replay(*DRAWN + [
            {'do': 'seek', 'frame': 10}, {'do': 'keyframe'}, {'do': 'seek', 'seconds': 0.9}, {'do': 'keyframe'},
            {'do': 'seek', 'fraction': 1}, {'do': 'keyframe'}, {'do': 'seek', 'frame': 10}, {'do': 'remove-keyframe'}])
        self.assertEqual(self.preview.keyframes(), [0, 21, 49])

    def test_undo_and_redo(self):
        self.replay(*DRAWN + [{'do': 'nudge', 'by': [5, 5]}, {'do': 'undo'}])
        self.assertEqual(self.anchors()[0], (200, 100))
        self.replay(*DRAWN + [{'do': 'nudge', 'by': [5, 5]}, {'do': 'undo'}, {'do': 'redo'}])
        self.assertEqual(self.anchors()[0], (205, 105))

    def test_invert_and_feather_reach_the_device_setting(self):
        self.replay(*DRAWN + [{'do': 'invert'}], feather={'pixels': 7, 'passes': 3})
        self.assertTrue(self.preview.overlay.GetInverse())
        self.assertEqual(self.preview.overlay.GetFeathers(), [[0, 7, 3]])


class MissTest(ReplayTest):

    def test_what_misses_says_so(self):
        for message, gestures in [
                ('gestures[2] (pick): no point lies at display pixel (10, 10)', [{'do': 'pick', 'at': [10, 10]}]),
                ('gestures[2] (drag): no point lies at display pixel (300, 100)',
                 [{'do': 'drag', 'from': [300, 100], 'to': [5, 5]}]),
                ('gestures[2] (insert): no segment lies at display pixel (300, 200)', [{'do': 'insert', 'at': [300, 200]}]),
                ('gestures[2] (deselect): display pixel (400, 100) is not empty', [{'do': 'deselect', 'at': [400, 100]}]),
                ('gestures[2] (rubber-band): display pixel (300, 100) is not empty',
                 [{'do': 'rubber-band', 'from': [300, 100], 'to': [5, 5]}]),
                ('gestures[2] (rubber-band): no anchor lies inside of the rubber band',
                 [{'do': 'rubber-band', 'from': [10, 10], 'to': [50, 50]}]),
                ('gestures[2] (draw): the outline is closed: nothing can be drawn any more',
                 [{'do': 'draw', 'points': [[10, 10]]}]),
                ('gestures[2] (close): there is no open outline', [{'do': 'close'}]),
                ('gestures[2] (pick): there is no anchor 4: the outline has 4', [{'do': 'pick', 'at': {'anchor': 4}}]),
                ('gestures[2] (drag): display pixel (640, 0) lies outside of the display of 640x360',
                 [{'do': 'drag', 'from': {'anchor': 0}, 'to': [640, 0]}]),
                ("gestures[2] (seek): frame 50 lies beyond the clip's last frame 49", [{'do': 'seek', 'frame': 50}]),
                ("gestures[2] (seek): frame 50 lies beyond the clip's last frame 49", [{'do': 'seek', 'seconds': 99}]),
                ('gestures[3] (remove-keyframe): frame 3 is not a keyframe',
                 [{'do': 'seek', 'frame': 3}, {'do': 'remove-keyframe'}]),
                ('gestures[2] (redo): there is nothing to redo', [{'do': 'redo'}]),
                ('gestures[2] (nudge): a nudge by (0, 0) display pixels moves nothing', [{'do': 'nudge', 'by': [0.2, -0.4]}]),
                # The module stops an outline at the border of the picture.
                ('gestures[3] (nudge): a nudge by (-5, 0) display pixels moves nothing',
                 [{'do': 'nudge', 'by': [-1e9, 0]}, {'do': 'nudge', 'by': [-5, 0]}])]:
            self.assertMisses(message, *DRAWN + gestures)

    def test_an_outline_that_cannot_be_closed(self):
        self.assertMisses('gestures[1] (close): an outline needs three anchors before it can be closed',
                          {'do': 'draw', 'points': [[10, 10], [200, 100]]}, {'do': 'close'})

    def test_an_open_outline_is_no_keyframe(self):
        self.assertMisses('gestures[1] (keyframe): an outline has to be closed before it can be a keyframe',
                          {'do': 'draw', 'points': [[10, 10]]}, {'do': 'keyframe'})

    def test_a_press_that_takes_another_point_is_noticed(self):
        # Anchor 1 stands within reach of anchor 0, which is looked at first.
        self.assertMisses('gestures[3] (drag): another point was taken: anchor 1 is at (208, 104) instead of (400, 300)',
                          {'do': 'draw', 'points': [[200, 100], [300, 104], [250, 300]]}, {'do': 'close'},
                          {'do': 'drag', 'from': {'anchor': 1}, 'to': [208, 104]},
                          {'do': 'drag', 'from': {'anchor': 1}, 'to': [400, 300]})

    def test_what_does_nothing_at_the_beginning(self):
        """The feather of the edit is there from the start: it is nothing to take back."""
        for kind, message in (('undo', 'there is nothing to undo'), ('redo', 'there is nothing to redo')):
            self.assertMisses('gestures[0] (%s): %s' % (kind, message), {'do': kind})
            self.assertMisses('gestures[2] (%s): %s' % (kind, message), {'do': 'seek', 'frame': 1},
                              {'do': 'zoom', 'factor': 2}, {'do': kind})
        self.assertMisses('gestures[0] (nudge): there is nothing to nudge', {'do': 'nudge', 'by': [5, 5]})
        self.assertMisses('gestures[4] (undo): there is nothing to undo', {'do': 'draw', 'points': [[10, 10]]}, {'do': 'undo'},
                          {'do': 'redo'}, {'do': 'undo'}, {'do': 'undo'})
        self.assertMisses('gestures[3] (nudge): there is nothing to nudge', *DRAWN + [
            {'do': 'delete'}, {'do': 'nudge', 'by': [5, 5]}])

    def test_a_place_beyond_the_display_says_how_to_reach_it(self):
        for place, x, y, advice in [
                ([1, 1], 640, 360, ': zoom out first, with {"do": "zoom", "factor": 0.9} say'),
                ([0, 1], 0, 360, ': zoom out first, with {"do": "zoom", "factor": 0.9} say'),
                ([1.5, 0.5], 960, 180, ': zoom out first, with {"do": "zoom", "factor": 0.45} say'),
                ([-2, 0.5], -1280, 180, ': zoom out first, with {"do": "zoom", "factor": 0.18} say'),
                ([50, 0.5], 32000, 180, ', and is too far from the picture to be reached')]:
            wrong = {'do': 'draw', 'points': [place]}
            with self.assertRaises(EditError) as caught:
                self.replay(wrong, coordinates='video')
            self.assertEqual(str(caught.exception), "edit 'test.json': gestures[0] (draw): display pixel (%d, %d) lies outside "
                                                    'of the display of 640x360%s' % (x, y, advice))
            if 'factor' in advice:
                factor = json.loads(advice[advice.index('{'):advice.index('}') + 1])
                self.replay(factor, wrong, coordinates='video')

    def test_the_advice_helps_with_an_anchor_that_was_zoomed_away(self):
        near = {'do': 'zoom', 'factor': 8, 'center': [0.9, 0.9]}
        for gesture in ({'do': 'pick', 'at': {'anchor': 0}}, {'do': 'close'}):
            gestures = [DRAWN[0]] + ([] if gesture['do'] == 'close' else [DRAWN[1]])
            with self.assertRaises(EditError) as caught:
                self.replay(*gestures + [near, gesture])
            message = str(caught.exception)
            self.assertIn(': zoom out first, with {"do": "zoom", "factor": 0.9} say', message)
            self.replay(*gestures + [near, {'do': 'zoom', 'factor': 0.9}, gesture])

    def test_the_corners_of_the_picture_can_be_drawn(self):
        self.replay({'do': 'zoom', 'factor': 0.9}, {'do': 'draw', 'points': [[0, 0], [1, 0], [1, 1], [0, 1]]}, {'do': 'close'},
                    coordinates='video')
        self.assertEqual([(p.x, p.y) for p in outline.anchors(self.preview.points())], [(0, 0), (1, 0), (1, 1), (0, 1)])

    def test_nudges_of_any_size(self):
        for by in ([1e9, 1e9], [-1e9, -1e9], [1e9, 0], [0, -40000]):
            for coordinates in ('display', 'video'):
                self.replay({'do': 'draw', 'points': [[0.2, 0.2], [0.4, 0.2], [0.4, 0.6]]} if coordinates == 'video' else DRAWN[0],
                            {'do': 'nudge', 'by': by}, coordinates=coordinates)
                self.assertTrue(all(0 <= x <= 640 and 0 <= y <= 360 for x, y in self.anchors()), by)


if __name__ == '__main__':
    unittest.main()
