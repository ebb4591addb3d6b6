# SPDX-License-Identifier: MIT
"""The dictionary that saves and restores a selection, the centroid, and keyframes made for the host."""
from __future__ import absolute_import

from editor_model.keyframes import Keyframe, interpolate
from editor_model.records import Point, Rect, from_bytes, placed, to_bytes
from editor_model.single import single

#: The placement of keyframes that are made for the host without an object's own.
_HOST_PLACEMENT = Rect(0, 0, 1920, 1080)


def points_of(value):
    """Normalised points of a setting: a byte string of whole records, or a list of 5-tuples."""
    if isinstance(value, bytes):
        return from_bytes(value) or []
    return [Point(item[2], single(item[0]), single(item[1]), item[3], item[4])
            for item in value if isinstance(item, tuple) and len(item) == 5]


def is_point_list(value):
    return isinstance(value, (list, bytes))


def centroid_of(twins):
    """The centre of the bounding box, in single precision; the origin for fewer than two points."""
    if len(twins) < 2:
        return (0.0, 0.0)
    centre = []
    for values in ([twin.x for twin in twins], [twin.y for twin in twins]):
        extent = single(max(values) - min(values))
        centre.append(single(min(values) + single(extent * 0.5)))
    return tuple(centre)


def _feather(item):
    return (item[0], item[1], item[2])


class DeviceSetting(object):

    def get_current_dev_setting(self):
        setting = {0: self.is_mask, 1: self.inverse, 9: self.hide, 6: self.get_feathers(), 8: self.get_feather_shifts()}
        if self.is_mask:
            setting[3] = [{4: keyframe.position, 5: to_bytes(keyframe.outline.twins)} for keyframe in self.keyframes]
            if self.keyframes:
                setting[7] = centroid_of(self.keyframes[0].outline.twins)
        else:
            setting[2] = to_bytes(self.live.twins)
        return setting

    def set_dev_setting(self, setting):
        if not isinstance(setting, dict):
            return
        self.clear_outline_and_keyframes()
        self.is_mask = setting.get(0) is True
        self.inverse = setting.get(1) is True
        self.hide = setting.get(9) is True
        if 6 in setting:
            self.set_feathers(setting[6])
        if 8 in setting:
            self.set_feather_shifts(setting[8])
        if self.is_mask:
            if isinstance(setting.get(3), list):
                for item in setting[3]:
                    self.keyframes.append(self._restored_keyframe(item))
        elif is_point_list(setting.get(2)):
            self.live.twins = points_of(setting[2])
            self.live.points = [placed(twin, self.video_rect) for twin in self.live.twins]
        self.mark_edited()

    def _restored_keyframe(self, item):
        keyframe = Keyframe()
        keyframe.position = keyframe.duration = item[4]
        keyframe.placement = Rect(*self.video_rect.as_tuple())
        keyframe.outline.twins = points_of(item[5])
        keyframe.outline.points = [placed(twin, keyframe.placement) for twin in keyframe.outline.twins]
        return keyframe

    # --- feathers ---

    def set_feathers(self, feathers):
        self.feathers = [_feather(item) for item in feathers]

    def set_feather_shifts(self, feathers):
        self.feather_shifts = [_feather(item) for item in feathers]

    def get_feathers(self):
        return [list(feather) for feather in self.feathers]

    def get_feather_shifts(self):
        return [list(feather) for feather in self.feather_shifts]

    # --- centroid ---

    def update_centroid(self):
        if len(self.live):
            self.centroid = centroid_of(self.live.twins)

    def get_centroid(self):
        return self.centroid if self.is_mask and self.on_keyframe else None


def generate_specific_keyframe(a, b, duration):
    """The interpolated keyframe of two keyframe dictionaries, as a dictionary."""
    if not isinstance(a, dict) or not isinstance(b, dict):
        return None
    keys = []
    for item in (a, b):
        key = Keyframe()
        if 4 in item and 5 in item and is_point_list(item[5]):
            key.duration = item[4]
            key.outline.twins = points_of(item[5])
            key.outline.points = [placed(twin, _HOST_PLACEMENT) for twin in key.outline.twins]
        keys.append(key)
    made = Keyframe()
    made.duration = duration
    made.placement = _HOST_PLACEMENT
    interpolate(keys[0], keys[1], made)
    return {4: duration, 5: [(twin.x, twin.y, twin.type, twin.curve_in, twin.curve_out) for twin in made.outline.twins]}
