# SPDX-License-Identifier: MIT
"""An edit that selects nothing, in some frames or in all, is told so with the frames."""
import unittest

from orvanel_host import job
from orvanel_host.emptiness import NO_AREA, NO_OUTLINE, SOMETHING, selects

from support import HostTest, simple_edit, write_clip

DRAW = {'do': 'draw', 'points': [[0.3, 0.2], [0.7, 0.2], [0.5, 0.8]]}
CLOSE = {'do': 'close'}
WHOLE = [{'do': 'zoom', 'factor': 0.9}, {'do': 'draw', 'points': [[0, 0], [1, 0], [1, 1], [0, 1]]}, CLOSE]


class SelectsTest(unittest.TestCase):

    def test_what_a_mask_comes_to(self):
        whole = [(0.0, y / 4.0, 1.0) for y in range(4)]
        for runs, inverse, shown, kind in [
                (whole, False, True, SOMETHING), (whole[:1], False, True, SOMETHING), ([], False, True, NO_AREA),
                (whole, True, True, NO_AREA), (whole[:3], True, True, SOMETHING), ([], True, True, SOMETHING),
                ([], False, False, NO_OUTLINE), ([], True, False, NO_OUTLINE)]:
            self.assertEqual(selects(runs, (7, 4), inverse, shown), kind, (runs, inverse, shown))


class WarningTest(HostTest):

    def warnings(self, *gestures):
        """The warnings of a job of six frames."""
        lines = []
        write_clip(self.path('clip.mp4'), 6)
        edit = self.write_edit(simple_edit(gestures=list(gestures)))
        job.run(self.path('clip.mp4'), edit, self.path('out'), None, 'h264', warn=lines.append)
        return lines

    def test_an_edit_that_selects_something_is_told_nothing(self):
        self.assertEqual(self.warnings(DRAW, CLOSE), [])
        self.assertEqual(self.warnings(DRAW, CLOSE, {'do': 'invert'}), [])
        self.assertEqual(self.warnings(*WHOLE), [])

    def test_an_open_outline(self):
        self.assertEqual(self.warnings(DRAW), [
            'nothing is selected in any frame: the outline was never closed, which takes a gesture {"do": "close"}'])
        self.assertEqual(self.warnings(DRAW, {'do': 'invert'}), [
            'nothing is selected in any frame: the outline was never closed, which takes a gesture {"do": "close"}'])

    def test_nothing_drawn_and_everything_deleted(self):
        for gestures in ([{'do': 'seek', 'frame': 1}], [DRAW, CLOSE, {'do': 'delete'}],
                         [DRAW, CLOSE, {'do': 'remove-keyframe'}],
                         [DRAW, {'do': 'delete-last'}, {'do': 'delete-last'}, {'do': 'delete-last'}]):
            self.assertEqual(self.warnings(*gestures), [
                'nothing is selected in any frame: there is no outline, nothing was drawn or all of it was deleted'])

    def test_equal_points(self):
        no_area = ': the outline has no area there, or lies outside of the picture'
        equal = {'do': 'draw', 'points': [[0.5, 0.5]] * 3}
        self.assertEqual(self.warnings(equal, CLOSE), ['nothing is selected in any frame' + no_area])
        # All of the picture is outside of such an outline.
        self.assertEqual(self.warnings(equal, CLOSE, {'do': 'invert'}), [])
        # In some frames: the outline shrinks to a point in the last one.
        together = [{'do': 'drag', 'from': {'anchor': anchor}, 'to': {'anchor': 0}} for anchor in (1, 2)]
        self.assertEqual(self.warnings(DRAW, CLOSE, {'do': 'seek', 'frame': 5}, *together), [
            'nothing is selected in frame 5' + no_area])

    def test_everything_inverted(self):
        self.assertEqual(self.warnings(*WHOLE + [{'do': 'invert'}]), [
            'nothing is selected in any frame: the outline is inverted, and covers the whole picture'])

    def test_frames_before_the_first_keyframe(self):
        self.assertEqual(self.warnings({'do': 'seek', 'frame': 2}, DRAW, CLOSE), [
            'nothing is selected in frames 0-1: no keyframe is shown there'])

    def test_the_command_line_says_it_on_standard_error(self):
        write_clip(self.path('clip.mp4'), 2)
        self.write_edit(simple_edit(gestures=[DRAW]))
        code, summary, error = self.run_host('--clip', 'clip.mp4', '--edit', 'edit.json')
        self.assertEqual(code, 0)
        self.assertTrue(summary.startswith('clip'))
        self.assertEqual(error, 'warning: nothing is selected in any frame: the outline was never closed, which takes a '
                                'gesture {"do": "close"}\n')


if __name__ == '__main__':
    unittest.main()
