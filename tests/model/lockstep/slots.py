# SPDX-License-Identifier: MIT
"""Steps that need something from an earlier step: saved settings and records, kept under small numbers.

A slot that was never filled makes the step do nothing, so a session stays playable whatever is left out of it.
"""
from __future__ import absolute_import


class Slots(object):
    """For both sides; what it calls has the same name on both."""

    def __init__(self):
        self.settings = {}
        self.records = {}

    def save(self, slot):
        self.settings[slot] = self.get_current_dev_setting()

    def restore(self, slot):
        if slot in self.settings:
            self.set_dev_setting(self.settings[slot])

    def generate_between(self, slot, first, second, duration):
        """A keyframe made of two that were saved."""
        keyframes = self.settings.get(slot, {}).get(3, [])
        if max(first, second) < len(keyframes):
            return self.generate_specific_keyframe(keyframes[first], keyframes[second], duration)

    def take_record(self, slot, duration):
        self.records[slot] = self.get_keyframe_mask_info(duration)
        return self.records[slot].duration

    def place_record(self, slot):
        if slot in self.records:
            self.update_keyframe_in_size(self.records[slot])

    def draw_record(self, slot):
        if slot in self.records:
            return self.draw_exist_keyframe(self.records[slot])

    def draw_between(self, first, second, duration):
        if first in self.records and second in self.records:
            return self.draw_specific_keyframe(self.records[first], self.records[second], duration)
