# SPDX-License-Identifier: MIT
"""A selection as JSON: the device-setting dictionary with names instead of numbers, and points in figures."""
import collections
import json
import struct

from . import document, outline
from .document import REQUIRED, Wrong, boolean, fields_of, list_of, number, pair, row, string
from .editfile import grade as grade_check
from .errors import HostError

FORMAT = 'orvanel-selection'
VERSION = 1

# Keys of the device setting.
_MASK, _INVERSE, _POINTS, _KEYFRAMES, _DURATION, _KEY_POINTS, _FEATHERS, _CENTROID, _FEATHER_SHIFTS, _HIDE = range(10)

# Single precision's largest number, as it is written.
_LARGEST = 3.40282347e38

# Two numbers of single precision.
_PAIR = struct.Struct('<ff')

_TIME_UNIT = '100 ns'
_POINT_FIELDS = ['type', 'x', 'y', 'curve_in', 'curve_out', 'handle_shown']

# A selection with the grade that it was made for and the size of the clip that its feathers count pixels of. Files that
# hold only the selection have None for both.
Saved = collections.namedtuple('Saved', 'setting grade size')


class _Coordinate(float):
    """A single-precision number, written with as few digits as bring it back: nine are always enough."""

    def __repr__(self):
        text = '%.9g' % self
        # "-0" would come back as the integer 0, which has no sign.
        return text if '.' in text or 'e' in text else text + '.0'


def _points_out(data):
    return [[point.type, _Coordinate(point.x), _Coordinate(point.y), point.curve_in, point.curve_out, point.handle_shown]
            for point in outline.unpack(data)]


def to_json(setting, grade=None, size=None):
    """The text of a device setting, with the grade and the clip's size that belong to it."""
    contents = {
        'format': FORMAT, 'version': VERSION, 'time_unit': _TIME_UNIT, 'point_fields': _POINT_FIELDS,
        'mask': setting[_MASK], 'inverse': setting[_INVERSE], 'hide': setting[_HIDE],
        'feathers': setting[_FEATHERS], 'feather_shifts': setting[_FEATHER_SHIFTS],
    }
    if grade:
        contents['grade'] = dict(grade._asdict())
    if size:
        contents['size'] = list(size)
    if setting[_MASK]:
        contents['keyframes'] = [{'duration': keyframe[_DURATION], 'points': _points_out(keyframe[_KEY_POINTS])}
                                 for keyframe in setting[_KEYFRAMES]]
        # Of points that lie far enough apart the middle is beyond every number. Nobody reads it back.
        if _CENTROID in setting and all(abs(value) <= _LARGEST for value in setting[_CENTROID]):
            contents['centroid'] = [_Coordinate(value) for value in setting[_CENTROID]]
    else:
        contents['points'] = _points_out(setting[_POINTS])
    return _dump(contents)


def load(path):
    """The Saved selection in a file; HostError names the file and the first thing that is wrong."""
    try:
        return document.checked(document.read(path), _saved)
    except EnvironmentError as error:
        raise HostError("selection '%s' cannot be read: %s" % (path, error.strerror))
    except Wrong as error:
        raise HostError("selection '%s': %s" % (path, error))


def from_json(text):
    """The device setting of a text that to_json wrote; HostError when it is something else."""
    try:
        return document.checked(text, _saved).setting
    except Wrong as error:
        raise HostError('the selection cannot be read: %s' % error)


# --- Checks of a selection ---------------------------------------------------------------------------------------------

_UNSIGNED = number(0, 2 ** 32 - 1, whole=True)
_SIGNED = number(-2 ** 31, 2 ** 31 - 1, whole=True)
_TIME = number(-2 ** 63, 2 ** 63 - 1, whole=True)
_COORDINATE = number(-_LARGEST, _LARGEST)
_POINT = row(number(outline.ANCHOR, outline.CONTROL, whole=True), _COORDINATE, _COORDINATE, _UNSIGNED, _UNSIGNED, _UNSIGNED)
_RECORDS = list_of(row(_TIME, _SIGNED, _SIGNED))


def _chain(value, path):
    """Points as they follow each other in an outline. Only a closed one has the two handles behind its last anchor; a
    keyframe of an outline that was never closed lacks them, too."""
    points = list_of(_POINT)(value, path)
    if len(points) % 3 == 2:
        raise Wrong(path, 'is no outline: it ends after one of two handles')
    for i, point in enumerate(points):
        if point[0] != (outline.CONTROL if i % 3 else outline.ANCHOR):
            raise Wrong('%s[%d]' % (path, i), 'is out of place: an anchor and its two handles take turns')
    return outline.pack([outline.Point(*point) for point in points])


def _keyframes(value, path):
    keyframes = list_of(lambda item, place: fields_of(item, place, {
        'duration': (_TIME, REQUIRED), 'points': (_chain, REQUIRED)}))(value, path)
    for i in range(1, len(keyframes)):
        if keyframes[i]['duration'] <= keyframes[i - 1]['duration']:
            raise Wrong('%s[%d].duration' % (path, i), 'has to be later than the one before')
    return [{_DURATION: long(keyframe['duration']), _KEY_POINTS: keyframe['points']} for keyframe in keyframes]


def _exactly(wanted):
    def check(value, path):
        if value != wanted:
            raise Wrong(path, 'has to be %s' % json.dumps(wanted))
        return value
    return check


def _saved(value):
    document.require_format(value, 'a selection', FORMAT, VERSION)
    known = {
        'format': (string, REQUIRED), 'version': (number(), REQUIRED), 'time_unit': (_exactly(_TIME_UNIT), None),
        'point_fields': (_exactly(_POINT_FIELDS), None), 'mask': (boolean, REQUIRED), 'inverse': (boolean, REQUIRED),
        'hide': (boolean, REQUIRED), 'feathers': (_RECORDS, REQUIRED), 'feather_shifts': (_RECORDS, REQUIRED),
        'grade': (grade_check, None), 'size': (pair(number(1, 2 ** 31 - 1, whole=True)), None),
    }
    if value.get('mask') is True:
        known.update({'keyframes': (_keyframes, REQUIRED), 'centroid': (pair(_COORDINATE), None)})
    else:
        known.update({'points': (_chain, REQUIRED)})
    fields = fields_of(value, '', known)
    setting = {_MASK: fields['mask'], _INVERSE: fields['inverse'], _HIDE: fields['hide'], _FEATHERS: fields['feathers'],
               _FEATHER_SHIFTS: fields['feather_shifts']}
    if fields['mask']:
        setting[_KEYFRAMES] = fields['keyframes']
        if fields['centroid']:
            setting[_CENTROID] = _PAIR.unpack(_PAIR.pack(*fields['centroid']))
    else:
        setting[_POINTS] = fields['points']
    return Saved(setting, fields['grade'], fields['size'])


def feathered_for(setting, scale):
    """The device setting with feathers `scale` times as wide: for a clip of another size."""
    changed = dict(setting)
    changed[_FEATHERS] = [[time, int(round(pixels * scale)), passes] for time, pixels, passes in setting[_FEATHERS]]
    return changed


def with_keyframe_copied(setting, source, target):
    """The device setting with the keyframe at time `source` standing at time `target` as well."""
    keyframes = dict((keyframe[_DURATION], keyframe[_KEY_POINTS]) for keyframe in setting[_KEYFRAMES])
    keyframes[long(target)] = keyframes[source]
    changed = dict(setting)
    changed[_KEYFRAMES] = [{_DURATION: long(time), _KEY_POINTS: keyframes[time]} for time in sorted(keyframes)]
    return changed


def _dump(contents):
    """Readable JSON: a field a line, a point a line. The library can only do one value a line."""
    return _render(contents, 0) + '\n'


_FIELD_ORDER = ('format', 'version', 'time_unit', 'point_fields', 'size', 'grade', 'exposure', 'saturation', 'mask', 'inverse',
                'hide', 'feathers', 'feather_shifts', 'centroid', 'duration', 'points', 'keyframes')


def _render(value, depth):
    inner = '  ' * (depth + 1)
    if isinstance(value, dict):
        fields = ['%s%s: %s' % (inner, json.dumps(key), _render(value[key], depth + 1))
                  for key in sorted(value, key=_FIELD_ORDER.index)]
        return '{\n%s\n%s}' % (',\n'.join(fields), '  ' * depth)
    if isinstance(value, list) and value and isinstance(value[0], (list, dict)):
        return '[\n%s\n%s]' % (',\n'.join(inner + _render(item, depth + 1) for item in value), '  ' * depth)
    if isinstance(value, list):
        return '[%s]' % ', '.join(_render(item, depth) for item in value)
    if isinstance(value, _Coordinate):
        return repr(value)
    return json.dumps(value)
