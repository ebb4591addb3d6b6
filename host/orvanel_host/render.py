# SPDX-License-Identifier: MIT
"""Renders a clip with the selection of a preview: graded frames, overlay frames, masks.

The video renderer pulls the overlay through the module's texture map on its own thread, as it does while somebody watches.
This thread turns the outline of one frame after the other into runs; reading, grading and encoding are native threads of
the pipeline, which work on the frames before it meanwhile.
"""
import contextlib

from . import colorkey, emptiness, hostkit
from .errors import HostError
from .progress import progress

# The stages that the module itself accounts for: bringing the texture up to date with a frame's outline, and turning that
# outline into runs.
MODULE_STAGES = ('refresh', 'convert')

# Marks have their own size on pictures of this height; smaller pictures get smaller ones, down to where they can be told
# apart, and larger pictures larger ones, however large they are.
_REFERENCE_HEIGHT = 720.0
_SMALLEST_SCALE = 0.5

_SHEET_COLUMNS = 4
_SHEET_FRAMES = 48
# The box that a frame of the contact sheet is fitted into.
_SHEET_FRAME = 800, 240
_SHEET_SMALLEST_SIDE = 16

# What the pipeline's threads account for.
_PIPELINE_STAGES = ('read', 'mask', 'grade', 'composite', 'contact sheet', 'encode')
# Seconds between two looks at whether somebody wants the job to end.
_PATIENCE = 0.1


class ClipDiffers(HostError):
    """The decoder gives other frames than the container lists."""


class Renderer(object):
    """Goes through the clip once, with the preview placed on a display of the pictures' size."""

    def __init__(self, reader, preview, grade, stages, fits=(), positions=()):
        """`fits` stand first on the contact sheet. Frames have to come at `positions`, if any are given."""
        self._fits = fits
        self._reader = reader
        self._preview = preview
        self._overlay = preview.overlay
        self._grade = hostkit.Grade(grade.exposure, grade.saturation)
        self._stages = stages
        self._positions = hostkit.LongLongVector(positions)
        self._size = reader.width(), reader.height()
        self.runs_per_frame = []
        # What each frame selects: one of the kinds of emptiness.py.
        self.selected = []
        self.not_kept = []

    def _feather_of(self, feathers):
        """Width and shape of the soft edge: the first record's values. The width counts pixels of the clip."""
        if not feathers:
            return 0, 1
        _, pixels, passes = feathers[0]
        return int(round(pixels * float(self._size[1]) / self._reader.clipHeight())), max(passes, 1)

    def run(self, folder, codec):
        """Writes the videos, the mask pictures and the contact sheet. ClipDiffers when frames do not come as promised."""
        preview = self._preview
        preview.place(self._size)
        scale = self._size[1] / _REFERENCE_HEIGHT
        self._overlay.SetSizeScaler(max(scale, _SMALLEST_SCALE))
        sheet = hostkit.ContactSheet(_SHEET_COLUMNS, *self._sheet_frame())
        for fit in self._fits:
            colorkey.add_to_sheet(sheet, fit)
        # The renderer reads no frame here: it only shows the overlay of each.
        with contextlib.closing(hostkit.PreviewRenderer(self._reader, preview.clock, preview.syncer)) as renderer:
            preview.attach(renderer)
            with contextlib.closing(self._pipeline(folder, codec, sheet)) as pipeline:
                try:
                    self._render(renderer, pipeline)
                except EnvironmentError as error:
                    if pipeline.clipDiffers():
                        raise ClipDiffers(str(error))
                    raise
        with self._stages.stage('contact sheet'):
            hostkit.writePng(folder.file('contact-sheet.png'), sheet.compose())

    def _pipeline(self, folder, codec, sheet):
        extension = hostkit.VideoWriter.fileExtension(codec)
        job = hostkit.RenderJob()
        job.gradedPath, job.overlayPath = (folder.file('%s.%s' % (name, extension)) for name in ('graded', 'overlay'))
        job.maskFolder = folder.folder('masks')
        job.codec = codec
        job.featherPixels, job.featherPasses = self._feather_of(self._overlay.GetFeathers())
        job.inverted = bool(self._overlay.GetInverse())
        return hostkit.RenderPipeline(self._reader, self._preview.clock, self._positions, self._grade, job, sheet)

    def _render(self, renderer, pipeline):
        sheet_frames = self._frames_for_sheet()
        keyframes = self._preview.keyframes()
        frames = self._preview.clock.frameCount()
        with progress('rendering', frames) as advance:
            for number in range(frames):
                self._show(renderer, number)
                with self._stages.stage('convert'):
                    runs = self._runs()
                self.runs_per_frame.append(len(runs))
                covered = self._preview.shows_mask()
                self.selected.append(emptiness.selects(runs, self._size, self._overlay.GetInverse(), covered))
                label = self._label(number, keyframes) if number in sheet_frames else ''
                pipeline.submit(runs, covered, renderer, label, number in keyframes)
                advance()
        with progress('finishing', unit='steps') as advance:
            while not pipeline.finish(_PATIENCE):
                advance()
        for stage in _PIPELINE_STAGES:
            self._stages.add(stage, pipeline.seconds(stage))
        self.not_kept = list(pipeline.notKept())

    def _show(self, renderer, number):
        """Has the renderer bring the overlay to a frame. The preview is at that frame afterwards, with its outline."""
        before = renderer.updateCounter()
        renderer.refresh(number)
        if renderer.updateCounter() == before:
            # Every frame has a time of its own, and with it an overlay of its own. Only memory can be short.
            raise HostError('the overlay of frame %d could not be drawn' % number)
        self._preview.frame = number
        self._stages.add('refresh', renderer.refreshSeconds())

    def _runs(self):
        """The mask of the frame last shown, as runs; none while no closed outline is shown."""
        if not self._preview.shows_mask():
            return []
        return self._overlay.Convert2SelectionLineUS(self._size)

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
