# SPDX-License-Identifier: MIT
"""Frames in which an edit selects nothing: nobody means that, and nobody sees it in a picture that looks like the clip."""
from .messages import frame_ranges

# What the mask of a frame comes to. A frame without outline and one whose outline has no area want different advice.
SOMETHING, NO_OUTLINE, NO_AREA = range(3)


def selects(runs, size, inverse, shown):
    """Which of the three: `runs` is the inside of the outline, and `shown` says whether there is one."""
    if not shown:
        return NO_OUTLINE
    width, height = size
    # Runs do not overlap, so they cover everything when their lengths come to it.
    covered = sum(int(round(length * width)) for _, _, length in runs)
    return NO_AREA if covered == (width * height if inverse else 0) else SOMETHING


def advice(kinds, overlay):
    """Lines for the person who made the edit. `kinds` holds what each frame selects."""
    frames = dict((kind, [number for number, found in enumerate(kinds) if found == kind]) for kind in (NO_OUTLINE, NO_AREA))
    lines = []
    if frames[NO_OUTLINE]:
        lines.append('nothing is selected in %s: %s' % (_where(frames[NO_OUTLINE], len(kinds)), _why_no_outline(overlay)))
    if frames[NO_AREA]:
        lines.append('nothing is selected in %s: %s' % (_where(frames[NO_AREA], len(kinds)), (
            'the outline is inverted, and covers the whole picture' if overlay.GetInverse() else
            'the outline has no area there, or lies outside of the picture')))
    return lines


def _where(frames, count):
    return 'any frame' if len(frames) == count else frame_ranges(frames)


def _why_no_outline(overlay):
    if overlay.IsMask():
        return 'no keyframe is shown there' if overlay.GetKeyFrameDurationList() else 'the selection has no keyframe'
    if overlay.GetCurrentPoints():
        return 'the outline was never closed, which takes a gesture {"do": "close"}'
    return 'there is no outline, nothing was drawn or all of it was deleted'
