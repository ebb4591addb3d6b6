# SPDX-License-Identifier: MIT
"""What a job has done, for the person who started it."""
import os

from .messages import one_line
from .render import MODULE_STAGES
from .stages import median


def of_edit(edit, preview):
    """The line about an edit that was replayed."""
    return 'edit', '%s: %d gestures, %d mouse events' % (edit.title or edit.name, len(edit.gestures), preview.mouse_events)


def of_selection(saved, path):
    """The line about a selection that an earlier job has saved."""
    made_for = ', made for a clip of %dx%d' % saved.size if saved.size else ''
    return 'selection', os.path.basename(path) + made_for


def compose(clip, reader, clock, origin, preview, fits, renderer, stages, out):
    """The text, a name and a value a line. `origin` is the line that says where the selection comes from."""
    frames = clock.frameCount()
    keyframes = preview.keyframes()
    runs = renderer.runs_per_frame
    module = stages.together(MODULE_STAGES)
    rate = '%g' % (float(clock.rateNumerator()) / clock.rateDenominator())
    lines = [
        ('clip', '%s, %s %dx%d, %s frames/s%s' % (os.path.basename(clip), reader.codecName(), reader.clipWidth(),
                                                  reader.clipHeight(), rate, '' if clock.isConstant() else ' (variable)')),
        origin,
        ('frames', '%d at %dx%d' % (frames, reader.width(), reader.height())),
        ('keyframes', '%d at frames %s' % (len(keyframes), ' '.join(str(frame) for frame in keyframes))),
        ('events', ', '.join('%s %d' % pair for pair in preview.events.counts())),
        ('runs a frame', 'min %d, mean %.1f, max %d' % (min(runs), sum(runs) / float(len(runs)), max(runs))),
        ('ms a frame', ', '.join('%s %.3f' % (name, seconds * 1000 / frames) for name, seconds in stages.totals())),
        ('module', '%.3f ms a frame (median of %s; mean %.3f)' % (
            median(module) * 1000, ' + '.join(MODULE_STAGES), sum(module) * 1000 / len(module))),
        ('results', out),
    ]
    if renderer.not_kept:
        lines[-1:-1] = [('not kept', '; '.join(renderer.not_kept))]
    lines[4:4] = [('fit', 'frame %d: overlap of outline and colour key %.0f%%, as drawn %.0f%%' % (
        fit.frame, 100 * fit.after, 100 * fit.before)) for fit in fits]
    return '\n'.join('%-13s %s' % (name, one_line(value)) for name, value in lines)
