# SPDX-License-Identifier: MIT
"""Renders a clip with the selection of a preview: graded frames, overlay frames, masks.

The video renderer pulls the overlay through the module's texture map on its own thread, as it does while somebody watches.
"""
import contextlib
import os

from . import colorkey, hostkit
from .errors import HostError

# The stages that the module itself accounts for: bringing the texture up to date with a frame's outline, and turning that
# outline into runs.
MODULE_STAGES = ('refresh', 'convert')

# Marks have their own size on pictures of this height; smaller pictures get smaller ones, larger pictures larger ones.
_REFERENCE_HEIGHT = 720.0
_SMALLEST_SCALE, _LARGEST_SCALE = 0.5, 4.0

_SHEET_COLUMNS = 4
_SHEET_FRAMES = 48
# The box that a frame of the contact sheet is fitted into.
_SHEET_FRAME = 800, 240
_SHEET_SMALLEST_SIDE = 16


class Renderer(object):
    """Goes through the clip once, with the preview placed on a display of the pictures' size."""

    def __init__(self, reader, preview, grade, stages, fits=()):
        """`fits` stand first on the contact sheet."""
        self._fits = fits
        self._reader = reader
        self._preview = preview
        self._overlay = preview.overlay
        self._grade = hostkit.Grade(grade.exposure, grade.saturation)
        self._stages = stages
        self._size = reader.width(), reader.height()
        self._mask = hostkit.Mask(*self._size)
        self._feather = self._feather_of(self._overlay.GetFeathers())
        self.runs_per_frame = []

    def _feather_of(self, feathers):
        """Width and shape of the soft edge: the first record's values. The width counts pixels of the clip."""
        if not feathers:
            return 0, 1
        _, pixels, passes = feathers[0]
        return int(round(pixels * float(self._size[1]) / self._reader.clipHeight())), max(passes, 1)

    def run(self, folder, codec, progress):
        """Writes the videos, the mask pictures and the contact sheet. `progress` is called after each frame."""
        preview = self._preview
        with contextlib.closing(hostkit.PreviewRenderer(self._reader, preview.clock, preview.syncer)) as renderer:
            self._run(renderer, folder, codec, progress)

    def _run(self, renderer, folder, codec, progress):
        self._preview.place(self._size)
        scale = self._size[1] / _REFERENCE_HEIGHT
        self._overlay.SetSizeScaler(min(max(scale, _SMALLEST_SCALE), _LARGEST_SCALE))
        self._preview.attach(renderer)
        graded_video = self._writer(folder, 'graded', codec)
        overlay_video = self._writer(folder, 'overlay', codec)
        masks = folder.folder('masks')
        sheet = hostkit.ContactSheet(_SHEET_COLUMNS, *self._sheet_frame())
        for fit in self._fits:
            colorkey.add_to_sheet(sheet, fit)
        sheet_frames = self._frames_for_sheet()
        keyframes = self._preview.keyframes()

        stage = self._stages.stage
        # `graded` is the bare frame until it is graded; `frame` is what a person sees.
        graded, frame = hostkit.Image(), hostkit.Image()
        for number in range(self._preview.clock.frameCount()):
            self._render(renderer, number, graded, frame)
            with stage('convert'):
                runs = self._runs()
            self.runs_per_frame.append(len(runs))
            with stage('mask'):
                self._mask.setRuns(runs)
                # Where no outline is shown there is no outside of it either.
                if self._overlay.GetInverse() and self._preview.shows_mask():
                    self._mask.invert()
                hostkit.writePng(os.path.join(masks, '%04d.png' % number), self._mask)
            if number in sheet_frames:
                with stage('contact sheet'):
                    sheet.add(graded, frame, self._mask, self._label(number, keyframes), number in keyframes)
            with stage('grade'):
                self._mask.feather(*self._feather)
                self._grade.applyInside(graded, self._mask)
            with stage('encode video'):
                graded_video.write(graded)
                overlay_video.write(frame)
            progress()
        with stage('encode video'):
            graded_video.finish()
            overlay_video.finish()
        with stage('contact sheet'):
            hostkit.writePng(folder.file('contact-sheet.png'), sheet.compose())

    def _render(self, renderer, number, video, composed):
        """Has the renderer show a frame. The preview is at that frame afterwards, with the frame's outline."""
        before = renderer.updateCounter()
        if not renderer.render(number, video, composed):
            raise HostError('the clip ends at frame %d now; it had %d frames a moment ago' % (
                number, self._preview.clock.frameCount()))
        if renderer.updateCounter() == before:
            # Every frame has a time of its own, and with it an overlay of its own. Only memory can be short.
            raise HostError('the overlay of frame %d could not be drawn' % number)
        self._preview.frame = number
        for name, seconds in (('read', renderer.readSeconds()), ('refresh', renderer.refreshSeconds()),
                              ('composite', renderer.compositeSeconds())):
            self._stages.add(name, seconds)

    def _runs(self):
        """The mask of the frame last shown, as runs; none while no closed outline is shown."""
        if not self._preview.shows_mask():
            return []
        return self._overlay.Convert2SelectionLineUS(self._size)

    def _writer(self, folder, name, codec):
        reader = self._reader
        path = folder.file('%s.%s' % (name, hostkit.VideoWriter.fileExtension(codec)))
        return hostkit.VideoWriter(path, codec, self._size[0], self._size[1], self._preview.clock,
                                   reader.pixelAspectNumerator(), reader.pixelAspectDenominator(), reader.colorMatrix())

    # --- Contact sheet -------------------------------------------------------------------------------------------

    def _sheet_frame(self):
        """Size of a frame on the contact sheet: the clip's shape on the screen, fitted into the box."""
        width = float(self._size[0]) * self._reader.pixelAspectNumerator() / self._reader.pixelAspectDenominator()
        scale = min(_SHEET_FRAME[0] / width, _SHEET_FRAME[1] / float(self._size[1]))
        return tuple(max(_SHEET_SMALLEST_SIDE, int(round(side * scale))) for side in (width, self._size[1]))

    def _frames_for_sheet(self):
        """All keyframes, the frames half way between them, both ends, and a dozen spread over the clip; thinned evenly
        when that is more than a sheet holds."""
        last = self._preview.clock.frameCount() - 1
        keyframes = self._preview.keyframes()
        chosen = set(keyframes) | set([0, last])
        chosen.update((a + b) // 2 for a, b in zip(keyframes, keyframes[1:]))
        chosen.update(last * i // 11 for i in range(12))
        chosen = sorted(frame for frame in chosen if 0 <= frame <= last)
        if len(chosen) > _SHEET_FRAMES:
            chosen = [chosen[i * (len(chosen) - 1) // (_SHEET_FRAMES - 1)] for i in range(_SHEET_FRAMES)]
        return frozenset(chosen)

    def _label(self, number, keyframes):
        seconds = self._preview.clock.startOf(number) / float(hostkit.FrameClock.kUnitsPerSecond)
        kind = 'keyframe' if number in keyframes else 'between' if self._preview.shows_mask() else ''
        return 'frame %d  %d:%06.3f  %s' % (number, seconds // 60, seconds % 60, kind)
