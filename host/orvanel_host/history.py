# SPDX-License-Identifier: MIT
"""Undo and redo on top of the device-setting dictionary: one step a gesture."""


class EditHistory(object):
    """Remembers what the selection was before each gesture.

    A step is a whole device setting, a few kilobytes: small enough that differences would only be a way to be wrong.
    The dictionaries are never changed after they were taken, so steps can share them.
    """

    def __init__(self, overlay, limit=200):
        self._overlay = overlay
        self._limit = limit
        self.forget()

    def forget(self):
        """Begins anew with the selection as it is."""
        self._current = self._overlay.GetCurrentDevSetting()
        self._undo = []
        self._redo = []

    def record(self):
        """Ends a gesture. One that changed nothing, such as a click on a point, makes no step."""
        setting = self._overlay.GetCurrentDevSetting()
        if setting == self._current:
            return
        self._undo.append(self._current)
        del self._undo[:-self._limit]
        del self._redo[:]
        self._current = setting

    def can_undo(self):
        return bool(self._undo)

    def can_redo(self):
        return bool(self._redo)

    def undo(self):
        """Takes the last step back; False when there is none."""
        return self._step(self._undo, self._redo)

    def redo(self):
        """Repeats the step that was taken back last; False when there is none."""
        return self._step(self._redo, self._undo)

    def _step(self, source, target):
        if not source:
            return False
        target.append(self._current)
        self._current = source.pop()
        self._overlay.SetDevSetting(self._current)
        if not self._overlay.IsMask():
            # Closing an outline that was reopened announces a new mask, not an update of the one taken back.
            self._overlay.ResetNewMask()
        return True
