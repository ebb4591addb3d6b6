# SPDX-License-Identifier: MIT
"""The editor put together."""
from __future__ import absolute_import

from editor_model.editing import Editing
from editor_model.interaction import Interaction
from editor_model.keyframes import KeyframeTrack
from editor_model.settings import DeviceSetting
from editor_model.state import State


class EditorModel(State, Editing, Interaction, KeyframeTrack, DeviceSetting):
    """One editor. Its methods are the module's entries under Python names; results are what the entries return."""

    def lengths_agree(self):
        """True for a closed live outline in editing mode when every keyframe has as many points."""
        return (self.is_mask and self.live.is_closed()
                and all(len(keyframe.outline) == len(self.live) for keyframe in self.keyframes))

    def check_invariants(self):
        """What holds after every step. Raises AssertionError with the reason."""
        outlines = [("the live outline", self.live)]
        outlines += [("the keyframe at %d" % keyframe.position, keyframe.outline) for keyframe in self.keyframes]
        for name, outline in outlines:
            check_chain(name, [point.type for point in outline.points])
            assert len(outline.points) == len(outline.twins), "%s: vectors of different length" % name
            for point, twin in zip(outline.points, outline.twins):
                assert (point.type, point.curve_in, point.curve_out) == (twin.type, twin.curve_in, twin.curve_out), (
                    "%s: a twin differs in more than its place" % name)
        positions = self.get_keyframe_durations()
        assert positions == sorted(set(positions)), "keyframes not strictly ascending: %r" % positions


def check_chain(name, types):
    """The layout of a chain: an anchor, then two control points, over and over; an open chain ends with an anchor."""
    assert len(types) % 3 in (0, 1), "%s: %d points" % (name, len(types))
    assert all(type == (0 if at % 3 == 0 else 1) for at, type in enumerate(types)), "%s: types %r" % (name, types)
