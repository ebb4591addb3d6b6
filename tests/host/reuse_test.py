# SPDX-License-Identifier: MIT
"""A selection that a job has saved, given to another job: the same masks, at other sizes, lengths and rates."""
import json
import os
import unittest

from orvanel_host import job, selection
from orvanel_host.errors import HostError

from support import HostTest, clock_of, read_grey_png, simple_edit, write_clip


class ReuseTest(HostTest):

    def setUp(self):
        HostTest.setUp(self)
        write_clip(self.path('clip.mp4'), 6)
        self.edit = self.write_edit(simple_edit())
        self.warnings = []
        self.job('clip.mp4', 'first', edit=self.edit)

    def job(self, clip, out, edit=None, saved=None, size=None):
        return job.run(self.path(clip), edit, self.path(out), size, 'h264', selection_path=saved, warn=self.warnings.append)

    def masks(self, out):
        folder = self.path(out, 'masks')
        return [read_grey_png(os.path.join(folder, name)) for name in sorted(os.listdir(folder))]

    def saved(self, out):
        return self.path(out, 'selection.json')

    def rewritten(self, **changes):
        with open(self.saved('first')) as stream:
            document = json.load(stream)
        document.update(changes)
        return self.write('changed.json', json.dumps(dict((key, value) for key, value in document.items() if value is not None)))

    def test_the_same_clip_gives_the_same_results(self):
        summary = self.job('clip.mp4', 'again', saved=self.saved('first'))
        self.assertIn('selection     selection.json, made for a clip of 160x96', summary)
        self.assertEqual(self.masks('again'), self.masks('first'))
        for name in ('selection.json', 'graded.mp4', 'overlay.mp4'):
            self.assertEqual(self.contents()['again/' + name], self.contents()['first/' + name], name)
        self.assertEqual(self.warnings, [])

    def test_another_size_gives_the_masks_of_that_size(self):
        """As the edit itself gives them there."""
        write_clip(self.path('large.mp4'), 6, 320, 192)
        self.job('large.mp4', 'edited', edit=self.edit)
        self.job('large.mp4', 'reused', saved=self.saved('first'))
        self.assertEqual(self.masks('reused'), self.masks('edited'))
        self.job('clip.mp4', 'resized', saved=self.saved('edited'), size=(320, 192))
        self.assertEqual(self.masks('resized'), self.masks('edited'))

    def test_the_soft_edge_grows_with_the_clip(self):
        write_clip(self.path('large.mp4'), 6, 320, 192)
        self.job('large.mp4', 'large', saved=self.saved('first'))
        large = selection.load(self.saved('large'))
        self.assertEqual((large.setting[6], large.size), ([[0, 4, 2]], (320, 192)))
        self.job('clip.mp4', 'back', saved=self.saved('large'))
        self.assertEqual(selection.load(self.saved('back')).setting, selection.load(self.saved('first')).setting)
        # Without the size of its clip, a selection is taken as it stands.
        self.job('large.mp4', 'unsized', saved=self.rewritten(size=None))
        self.assertEqual(selection.load(self.saved('unsized')).setting[6], [[0, 2, 2]])

    def test_the_grade_comes_with_it_or_from_an_edit(self):
        self.assertEqual(selection.load(self.saved('first')).grade, (1.0, 1.5))
        other = self.write_edit(simple_edit(grade={'exposure': -2, 'saturation': 0.5}), 'other.json')
        self.job('clip.mp4', 'other', edit=other, saved=self.saved('first'))
        self.assertEqual(selection.load(self.saved('other')).grade, (-2.0, 0.5))
        self.assertEqual(self.masks('other'), self.masks('first'))
        bare = self.rewritten(grade=None)
        with self.assertRaises(HostError) as caught:
            self.job('clip.mp4', 'bare', saved=bare)
        self.assertEqual(str(caught.exception),
                         "the selection '%s' holds no grade: give an edit for its grade with --edit" % bare)
        self.job('clip.mp4', 'bare', edit=other, saved=bare)
        self.assertEqual(self.contents()['bare/graded.mp4'], self.contents()['other/graded.mp4'])

    def test_clips_of_other_lengths_and_rates(self):
        write_clip(self.path('short.mp4'), 3)
        self.job('short.mp4', 'short', saved=self.saved('first'))
        self.assertEqual(self.warnings, ["1 of the selection's 2 keyframes lie beyond the end of this clip"])
        self.assertEqual(len(self.masks('short')), 3)
        self.assertEqual(self.masks('short'), self.masks('first')[:3])
        write_clip(self.path('fast.mp4'), 12, clock=clock_of(12, 48))
        self.job('fast.mp4', 'fast', saved=self.saved('first'))
        self.assertEqual(self.masks('fast')[:12:2], self.masks('first'))

    def test_every_kind_of_selection_comes_back(self):
        for i, gestures in enumerate((
                [{'do': 'seek', 'frame': 1}], [{'do': 'draw', 'points': [[0.2, 0.2], [0.4, 0.4]]}],
                simple_edit()['gestures'] + [{'do': 'invert'}])):
            edit = self.write_edit(simple_edit(gestures=gestures))
            self.job('clip.mp4', 'kind%d' % i, edit=edit)
            self.job('clip.mp4', 'back%d' % i, saved=self.saved('kind%d' % i))
            self.assertEqual(self.contents()['back%d/selection.json' % i], self.contents()['kind%d/selection.json' % i])
            self.assertEqual(self.masks('back%d' % i), self.masks('kind%d' % i))

    def test_a_selection_without_keyframes(self):
        self.job('clip.mp4', 'none', saved=self.rewritten(keyframes=[], centroid=None))
        self.assertEqual(self.warnings, ['nothing is selected in any frame: the selection has no keyframe'])

    def test_points_anywhere_are_no_error(self):
        """Single precision's largest numbers, far outside of every picture."""
        far = 3.40282347e38
        points = [[i % 3 != 0, x, y, 0, 0, 0] for i, (x, y) in enumerate(
            [(-far, far), (0.5, -far), (far, 1e-45), (2.0, 2.0), (-1e30, 0.5), (0, 1), (far, far), (-1, -1), (0.1, 0.1)])]
        points = [[int(point[0])] + point[1:] for point in points]
        self.job('clip.mp4', 'far', saved=self.rewritten(keyframes=[{'duration': 0, 'points': points}], centroid=None))
        self.assertEqual(len(self.masks('far')), 6)


class CommandLineTest(HostTest):

    def test_a_selection_on_the_command_line(self):
        write_clip(self.path('clip.mp4'), 2)
        self.write_edit(simple_edit())
        self.assertEqual(self.run_host('--clip', 'clip.mp4', '--edit', 'edit.json', '--out', 'a')[0], 0)
        code, summary, error = self.run_host('--clip', 'clip.mp4', '--selection', 'a/selection.json', '--out', 'b')
        self.assertEqual((code, error), (0, ''))
        self.assertNotIn('edit  ', summary)
        before = self.contents()
        for force in ([], ['--force']):
            self.assertEqual(self.run_host('--clip', 'clip.mp4', '--selection', 'a/selection.json', '--out', 'a', *force), (
                1, '', "error: the selection 'a/selection.json' lies where a result goes ('a/selection.json'): choose another "
                       'folder with --out\n'))
        for name, message in (('none.json', "selection 'none.json' cannot be read: No such file or directory"),
                              ('edit.json', "selection 'edit.json': not a selection: the field 'format' has to be "
                                            '"orvanel-selection"'),
                              ('', '--selection needs the name of a file or folder, and got an empty one')):
            self.assertEqual(self.run_host('--clip', 'clip.mp4', '--selection', name), (1, '', 'error: %s\n' % message))
        self.assertEqual(self.contents(), before)


if __name__ == '__main__':
    unittest.main()
