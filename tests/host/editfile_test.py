# SPDX-License-Identifier: MIT
import json
import os
import unittest

from orvanel_host import editfile, job
from orvanel_host.errors import EditError

from support import HostTest, simple_edit


def with_gesture(**gesture):
    return simple_edit(gestures=[gesture])


# What is wrong, and the line that says so.
WRONG = [
    ({'format': 'something'}, "not a recorded edit: the field 'format' has to be \"orvanel-edit\""),
    (simple_edit(version=2), 'version has to be 1, not 2'),
    (simple_edit(version=True), 'version has to be 1, not true'),
    (simple_edit(version='1'), 'version has to be 1, not "1"'),
    (simple_edit(version=None), 'version has to be 1, not null'),
    (simple_edit(version=[1]), 'version has to be 1, not [1]'),
    (simple_edit(version={'a': 1}), 'version has to be 1, not {"a": 1}'),
    (simple_edit(format=['orvanel-edit']), "not a recorded edit: the field 'format' has to be \"orvanel-edit\""),
    (simple_edit(speed=1), "unknown field 'speed' (known: coordinates, display, feather, format, gestures, grade, title, version)"),
    (simple_edit(title=5), 'title has to be a text, not 5'),
    (simple_edit(display=[640]), 'display has to be a list of two numbers, not [640]'),
    (simple_edit(display=[640, 0]), 'display[1] has to be a whole number from 16 to 16384, not 0'),
    (simple_edit(display=[640, 360.5]), 'display[1] has to be a whole number from 16 to 16384, not 360.5'),
    (simple_edit(coordinates='metres'), 'coordinates has to be one of video, display, not metres'),
    (simple_edit(feather=3), 'feather has to be an object, not 3'),
    (simple_edit(feather={'pixels': -1}), 'feather.pixels has to be a whole number from 0 to 1000, not -1'),
    (simple_edit(feather={'passes': 2}), "feather: the field 'pixels' is missing"),
    (simple_edit(grade={'exposure': 1}), "grade: the field 'saturation' is missing"),
    (simple_edit(grade={'exposure': True, 'saturation': 1}), 'grade.exposure has to be a number from -16 to 16, not true'),
    (simple_edit(gestures=[]), 'gestures has to be a list of at least 1, not []'),
    (simple_edit(gestures=[7]), 'gestures[0] has to be an object, not 7'),
    (with_gesture(at=[0, 0]), "gestures[0]: the field 'do' is missing"),
    (with_gesture(do='fly'), 'gestures[0].do has to be one of close, delete, delete-last, deselect, drag, draw, fit, hold, insert, invert, '
                             'keyframe, nudge, pick, redo, remove-keyframe, rubber-band, seek, select-all, undo, zoom, not fly'),
    (with_gesture(do='fit', at=[0, 0], tolerance=256), 'gestures[0].tolerance has to be a number from 0 to 255, not 256'),
    (with_gesture(do='fit', at=[0, 0]), "gestures[0]: the field 'tolerance' is missing"),
    (with_gesture(do='hold', frame=-1), 'gestures[0].frame has to be a whole number of at least 0, not -1'),
    (with_gesture(do='drag', to=[0, 0]), "gestures[0]: the field 'from' is missing"),
    (with_gesture(do='drag', **{'from': [0], 'to': [0, 0]}), 'gestures[0].from has to be a list of two numbers, not [0]'),
    (with_gesture(do='drag', **{'from': [0, 'x'], 'to': [0, 0]}), 'gestures[0].from[1] has to be a number, not x'),
    (with_gesture(do='drag', **{'from': {'anchor': -1}, 'to': [0, 0]}),
     'gestures[0].from.anchor has to be a whole number of at least 0, not -1'),
    (with_gesture(do='drag', **{'from': {'anchor': 1, 'handle': 'up'}, 'to': [0, 0]}),
     'gestures[0].from.handle has to be one of in, out, not up'),
    (with_gesture(do='drag', shift=1, **{'from': [0, 0], 'to': [0, 0]}), 'gestures[0].shift has to be true or false, not 1'),
    (with_gesture(do='draw', points=[]), 'gestures[0].points has to be a list of at least 1, not []'),
    (with_gesture(do='draw', points=[[0, 0], [1]]), 'gestures[0].points[1] has to be a list of two numbers, not [1]'),
    (with_gesture(do='close', now=1), "gestures[0]: unknown field 'now' (known: do, note)"),
    (with_gesture(do='seek'), 'gestures[0]: a seek needs exactly one of frame, seconds and fraction'),
    (with_gesture(do='seek', frame=1, seconds=1), 'gestures[0]: a seek needs exactly one of frame, seconds and fraction'),
    (with_gesture(do='seek', frame=1.5), 'gestures[0].frame has to be a whole number of at least 0, not 1.5'),
    (with_gesture(do='seek', fraction=1.1), 'gestures[0].fraction has to be a number from 0 to 1, not 1.1'),
    (with_gesture(do='seek', seconds=1e308), 'gestures[0].seconds is too large: 1e+308'),
    (with_gesture(do='seek', frame=1e308), 'gestures[0].frame is too large: 1e+308'),
    (with_gesture(do='seek', frame=10 ** 12), 'gestures[0].frame is too large: 1000000000000'),
    (with_gesture(do='nudge', by=[0, -1e308]), 'gestures[0].by[1] is too large: -1e+308'),
    (with_gesture(do='pick', at={'anchor': 10 ** 30}), 'gestures[0].at.anchor is too large: 1000000000000000000000000000000'),
    (with_gesture(do='fly\nto\x1b[31m'), 'gestures[0].do has to be one of close, delete, delete-last, deselect, drag, draw, fit, hold, '
                                         'insert, invert, keyframe, nudge, pick, redo, remove-keyframe, rubber-band, seek, '
                                         'select-all, undo, zoom, not fly\\nto\\x1b[31m'),
    (with_gesture(do='undo', **{u'\u2028\xfc' * 30: 1}), u"gestures[0]: unknown field '%s...' (known: do, note)".encode('utf-8') % (
        u'\\u2028\xfc' * 18 + u'\\u2028').encode('utf-8')),
    (with_gesture(do='zoom', factor=0), 'gestures[0].factor has to be a number from 0.1 to 32, not 0'),
    ([], "not a recorded edit: the field 'format' has to be \"orvanel-edit\""),
]


class ValidationTest(unittest.TestCase):

    def test_every_wrong_field_is_named_with_its_place_and_reason(self):
        for document, message in WRONG:
            with self.assertRaises(EditError) as caught:
                editfile.parse(json.dumps(document))
            self.assertEqual(str(caught.exception), message)

    def test_messages_are_one_line(self):
        with self.assertRaises(EditError) as caught:
            editfile.parse(json.dumps(simple_edit(title=[u'line\nline'] * 50)))
        self.assertNotIn('\n', str(caught.exception))
        self.assertLess(len(str(caught.exception)), 100)

    def test_what_is_no_json(self):
        for text, message in [
                ('', 'not valid JSON: No JSON object could be decoded'),
                ('{"format": ', 'not valid JSON: '),
                ('{"a": 1, "a": 2}', "the field 'a' stands twice in one object"),
                ('{"a": NaN}', 'NaN is not a number here'),
                ('{"a": -Infinity}', '-Infinity is not a number here'),
                ('{"a": 1e400}', 'the number 1e400 is too large'),
                ('{"a": -1e400}', 'the number -1e400 is too large'),
                ('{"a": 1%s}' % ('0' * 400), 'the number 1%s... is too large' % ('0' * 36)),
                # Converting ten million digits would take hours.
                ('{"a": %s}' % ('9' * 10000000), 'is too large'),
                ('[' * 100000, 'not valid JSON: nested too deeply'),
                ('{"a":' * 100000, 'not valid JSON: nested too deeply'),
                ('{"format": "orvanel-edit", "version": %s1%s}' % ('[' * 900, ']' * 900), ''),
                ('\xff\xfe{\0}\0', 'UTF-16 text: it has to be UTF-8'),
                ('\0\0\xfe\xff\0\0\0{', 'UTF-32 text: it has to be UTF-8'),
                ('{"a": "\xe9"}', 'not UTF-8 text: byte 7 is 0xe9'),
                ('{"title": "two\nlines"}', 'not valid JSON: Invalid control character at: line 1 column 15 (char 14)'),
                ('{"a": 1} {"b": 2}', 'not valid JSON: Extra data'),
                ('{"a\\n": 1, "a\\n": 2}', "the field 'a\\n' stands twice in one object")]:
            with self.assertRaises(EditError) as caught:
                editfile.parse(text)
            self.assertIn(message, str(caught.exception))
            self.assertLess(len(str(caught.exception)), 200)

    def test_any_depth_is_an_edit_or_an_error(self):
        """Wherever the interpreter's limit strikes: while reading, checking, or writing the message."""
        for depth in range(0, 1100, 7):
            for field in ('title', 'version', 'speed'):
                with self.assertRaises(EditError):
                    editfile.parse('{"format": "orvanel-edit", "version": 1, "%s": %s7%s}' % (field, '[' * depth, ']' * depth))

    def test_a_byte_order_mark_is_no_part_of_the_text(self):
        self.assertEqual(editfile.parse('\xef\xbb\xbf' + json.dumps(simple_edit(title='marked'))).title, 'marked')

    def test_numbers_at_the_end_of_their_range(self):
        edit = editfile.parse(json.dumps(with_gesture(do='seek', seconds=1e9)))
        self.assertEqual(edit.gestures[0].fields['moment'].seconds, 1e9)
        edit = editfile.parse(json.dumps(simple_edit(gestures=[{'do': 'nudge', 'by': [-1e9, 1e-320]}])))
        self.assertEqual(edit.gestures[0].fields['by'], (-1e9, 1e-320))

    def test_defaults_and_values(self):
        edit = editfile.parse(json.dumps(simple_edit()))
        self.assertEqual(edit.display, (640, 360))
        self.assertEqual(edit.feather, (2, 2))
        self.assertEqual(edit.grade, (1.0, 1.5))
        self.assertEqual([gesture.kind for gesture in edit.gestures], ['draw', 'close', 'seek', 'drag'])
        self.assertEqual([gesture.index for gesture in edit.gestures], [0, 1, 2, 3])
        drag = edit.gestures[3].fields
        self.assertFalse(drag['shift'])
        self.assertEqual(drag['from'].anchor, 2)
        self.assertEqual(drag['to'].point, (0.6, 0.7))
        self.assertEqual(edit.gestures[2].fields['moment'], (None, None, 1.0))


class FileTest(HostTest):

    def test_the_file_is_named(self):
        path = self.write_edit(simple_edit(version=9), 'my.json')
        with self.assertRaises(EditError) as caught:
            editfile.load(path)
        self.assertEqual(str(caught.exception), "edit '%s': version has to be 1, not 9" % path)

    def test_a_file_that_is_not_there(self):
        with self.assertRaises(EditError) as caught:
            editfile.load('/nowhere/my.json')
        self.assertEqual(str(caught.exception), "edit '/nowhere/my.json' cannot be read: No such file or directory")

    def test_what_is_no_file(self):
        for path, message in ((self.folder, 'cannot be read: Is a directory'), ('/dev/zero', ': larger than 64 MB'),
                              ('/dev/null', ': not valid JSON: No JSON object could be decoded')):
            with self.assertRaises(EditError) as caught:
                editfile.load(path)
            self.assertIn(message, str(caught.exception))

    def test_binary_data_is_refused_as_any_other_text(self):
        with self.assertRaises(EditError):
            editfile.load(self.write('noise.json', os.urandom(2000)))

    def test_the_edits_that_come_along_are_valid(self):
        for path in (job.DEFAULT_CLIP_EDIT, job.ANY_CLIP_EDIT):
            self.assertGreater(len(editfile.load(path).gestures), 10)


if __name__ == '__main__':
    unittest.main()
