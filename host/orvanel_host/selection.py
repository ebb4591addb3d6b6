# SPDX-License-Identifier: MIT
"""A selection as JSON: the device-setting dictionary with names instead of numbers, and points in figures."""
import json

from . import outline
from .errors import HostError

FORMAT = 'orvanel-selection'
VERSION = 1

# Keys of the device setting.
_MASK, _INVERSE, _POINTS, _KEYFRAMES, _DURATION, _KEY_POINTS, _FEATHERS, _CENTROID, _FEATHER_SHIFTS, _HIDE = range(10)


class _Coordinate(float):
    """A single-precision number, written with as few digits as bring it back: nine are always enough."""

    def __repr__(self):
        text = '%.9g' % self
        # "-0" would come back as the integer 0, which has no sign.
        return text if '.' in text or 'e' in text else text + '.0'


def _points_out(data):
    return [[point.type, _Coordinate(point.x), _Coordinate(point.y), point.curve_in, point.curve_out, point.handle_shown]
            for point in outline.unpack(data)]


def _points_in(rows):
    return outline.pack([outline.Point(*row) for row in rows])


def to_json(setting):
    """The text of a device setting."""
    document = {
        'format': FORMAT, 'version': VERSION, 'time_unit': '100 ns',
        'point_fields': ['type', 'x', 'y', 'curve_in', 'curve_out', 'handle_shown'],
        'mask': setting[_MASK], 'inverse': setting[_INVERSE], 'hide': setting[_HIDE],
        'feathers': setting[_FEATHERS], 'feather_shifts': setting[_FEATHER_SHIFTS],
    }
    if setting[_MASK]:
        document['keyframes'] = [{'duration': keyframe[_DURATION], 'points': _points_out(keyframe[_KEY_POINTS])}
                                 for keyframe in setting[_KEYFRAMES]]
        if _CENTROID in setting:
            document['centroid'] = [_Coordinate(value) for value in setting[_CENTROID]]
    else:
        document['points'] = _points_out(setting[_POINTS])
    return _dump(document)


def from_json(text):
    """The device setting of a text that to_json wrote; HostError when it is something else."""
    try:
        document = json.loads(text)
        if document['format'] != FORMAT or document['version'] != VERSION:
            raise HostError('the selection is not of format %s, version %d' % (FORMAT, VERSION))
        setting = {
            _MASK: document['mask'], _INVERSE: document['inverse'], _HIDE: document['hide'],
            _FEATHERS: document['feathers'], _FEATHER_SHIFTS: document['feather_shifts'],
        }
        if setting[_MASK]:
            setting[_KEYFRAMES] = [{_DURATION: long(keyframe['duration']), _KEY_POINTS: _points_in(keyframe['points'])}
                                   for keyframe in document['keyframes']]
            if 'centroid' in document:
                setting[_CENTROID] = tuple(document['centroid'])
        else:
            setting[_POINTS] = _points_in(document['points'])
        return setting
    except (ValueError, KeyError, TypeError, outline.RecordError) as error:
        raise HostError('the selection cannot be read: %s' % error)


def with_keyframe_copied(setting, source, target):
    """The device setting with the keyframe at time `source` standing at time `target` as well."""
    keyframes = dict((keyframe[_DURATION], keyframe[_KEY_POINTS]) for keyframe in setting[_KEYFRAMES])
    keyframes[long(target)] = keyframes[source]
    changed = dict(setting)
    changed[_KEYFRAMES] = [{_DURATION: long(time), _KEY_POINTS: keyframes[time]} for time in sorted(keyframes)]
    return changed


def _dump(document):
    """Readable JSON: a field a line, a point a line. The library can only do one value a line."""
    return _render(document, 0) + '\n'


_FIELD_ORDER = ('format', 'version', 'time_unit', 'point_fields', 'mask', 'inverse', 'hide', 'feathers', 'feather_shifts',
                'centroid', 'duration', 'points', 'keyframes')


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
