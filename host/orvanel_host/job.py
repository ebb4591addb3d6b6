# SPDX-License-Identifier: MIT
"""The main job: a clip and a recorded edit in, a graded clip out."""
import os
import sys

import tqdm

from . import editfile, hostkit, selection
from .colorkey import ClipPictures
from .errors import HostError
from .outputs import OutputFolder
from .preview import Preview
from .render import MODULE_STAGES, Renderer
from .replay import Replay
from .stages import Stages, median

_EDITS = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'edits')
# Made for the default clip, and for whatever else comes without an edit of its own.
DEFAULT_CLIP_EDIT = os.path.join(_EDITS, 'launch.json')
ANY_CLIP_EDIT = os.path.join(_EDITS, 'any-clip.json')


def run(clip, edit_path, out, size, codec):
    """Does the job and returns the summary's text. `size` is (width, height) or None for the clip's own."""
    try:
        return _run(clip, edit_path, out, size, codec)
    except EnvironmentError as error:
        # What _hostkit reports about a file is a whole sentence already; Python's own errors have parts.
        raise HostError("cannot write '%s': %s" % (error.filename, error.strerror) if error.filename else str(error))


def _run(clip, edit_path, out, size, codec):
    edit = editfile.load(edit_path)
    reader = hostkit.VideoReader(clip, *(size or (0, 0)))
    codec = hostkit.VideoWriter.usableCodec(codec)
    stages = Stages()
    with OutputFolder(out) as folder:
        with stages.stage('index'):
            clock = _read_clock(clip, reader)
        preview = Preview(clock)
        try:
            with stages.stage('replay'):
                replay = Replay(edit, preview, ClipPictures(clip))
                replay.run()
            text = selection.to_json(preview.overlay.GetCurrentDevSetting())
            with open(folder.file('selection.json'), 'w') as stream:
                stream.write(text)
            # The saved selection is what is rendered. Loading it drops what was picked and hovered, too.
            preview.load(selection.from_json(text))
            renderer = Renderer(reader, preview, edit.grade, stages, replay.fits)
            with _progress_bar('rendering', clock.frameCount()) as bar:
                renderer.run(folder, codec, bar.update)
            keyframes = preview.keyframes()
        finally:
            preview.close()
        folder.commit()
    return _summary(clip, reader, clock, edit, preview, keyframes, replay.fits, renderer, stages, out)


def _read_clock(clip, reader):
    """Decodes the clip once for its frame count and times: containers do not always know, and some know wrongly."""
    positions = []
    with _progress_bar('reading', None) as bar:
        while reader.skip():
            positions.append(reader.position())
            bar.update()
    reader.rewind()
    if not positions:
        raise HostError("clip '%s' has no frames" % clip)
    return hostkit.FrameClock(reader.rateNumerator(), reader.rateDenominator(), positions)


def _progress_bar(what, total):
    return tqdm.tqdm(desc=what, total=total, unit=' frames', leave=False, disable=not sys.stderr.isatty())


def _summary(clip, reader, clock, edit, preview, keyframes, fits, renderer, stages, out):
    frames = clock.frameCount()
    runs = renderer.runs_per_frame
    module = stages.together(MODULE_STAGES)
    rate = '%g' % (float(clock.rateNumerator()) / clock.rateDenominator())
    lines = [
        ('clip', '%s, %s %dx%d, %s frames/s%s' % (os.path.basename(clip), reader.codecName(), reader.clipWidth(),
                                                  reader.clipHeight(), rate, '' if clock.isConstant() else ' (variable)')),
        ('edit', '%s: %d gestures, %d mouse events' % (edit.title or edit.name, len(edit.gestures), preview.mouse_events)),
        ('frames', '%d at %dx%d' % (frames, reader.width(), reader.height())),
        ('keyframes', '%d at frames %s' % (len(keyframes), ' '.join(str(frame) for frame in keyframes))),
        ('events', ', '.join('%s %d' % pair for pair in preview.events.counts())),
        ('runs a frame', 'min %d, mean %.1f, max %d' % (min(runs), sum(runs) / float(len(runs)), max(runs))),
        ('ms a frame', ', '.join('%s %.3f' % (name, seconds * 1000 / frames) for name, seconds in stages.totals())),
        ('module', '%.3f ms a frame (median of %s; mean %.3f)' % (
            median(module) * 1000, ' + '.join(MODULE_STAGES), sum(module) * 1000 / len(module))),
        ('results', out),
    ]
    lines[4:4] = [('fit', 'frame %d: overlap of outline and colour key %.0f%%, as drawn %.0f%%' % (
        fit.frame, 100 * fit.after, 100 * fit.before)) for fit in fits]
    return '\n'.join('%-13s %s' % line for line in lines)
