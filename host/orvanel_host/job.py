# SPDX-License-Identifier: MIT
"""The main job: a clip and a recorded edit in, a graded clip out."""
import contextlib
import os
import shutil

from . import clipindex, editfile, emptiness, hostkit, selection, summary
from .colorkey import ClipPictures
from .errors import HostError
from .messages import warn
from .outputs import OutputFolder
from .preview import Preview
from .render import ClipDiffers, Renderer
from .replay import Replay
from .stages import Stages

_EDITS = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'edits')
# Made for the default clip, and for whatever else comes without an edit of its own.
DEFAULT_CLIP_EDIT = os.path.join(_EDITS, 'launch.json')
ANY_CLIP_EDIT = os.path.join(_EDITS, 'any-clip.json')


def run(clip, edit_path, out, size, codec, force=False, selection_path=None, warn=warn):
    """Does the job and returns the summary's text. `size` is (width, height) or None for the clip's own. `force` replaces
    what somebody else has put where results go. With a selection, which an earlier job has saved, nothing is replayed: an
    edit may be given for its grade. `warn` is called with a line for each thing that somebody should know about results
    that are made all the same."""
    inputs = [(what, path) for what, path in (('clip', clip), ('edit', edit_path), ('selection', selection_path)) if path]
    with _errors_of_files():
        edit = editfile.load(edit_path) if edit_path else None
        saved = selection.load(selection_path) if selection_path else None
        grade = edit.grade if edit else saved.grade
        if not grade:
            raise HostError("the selection '%s' holds no grade: give an edit for its grade with --edit" % selection_path)
        reader = hostkit.VideoReader(clip, *(size or (0, 0)))
        codec = hostkit.VideoWriter.usableCodec(codec)
        with OutputFolder(out, _result_names(codec), inputs, force) as folder, _errors_of_files(folder.with_final_names):
            return _run(clip, edit, selection_path, saved, grade, reader, codec, folder, warn)


@contextlib.contextmanager
def _errors_of_files(renamed=str):
    """Makes the line that the user sees out of an error about a file. `renamed` corrects the names in it."""
    try:
        yield
    except EnvironmentError as error:
        # What _hostkit reports about a file is a whole sentence already; Python's own errors have parts.
        text = "cannot write '%s': %s" % (error.filename, error.strerror) if error.filename else str(error)
        raise HostError(renamed(text))


def _result_names(codec):
    extension = hostkit.VideoWriter.fileExtension(codec)
    return ('graded.' + extension, 'overlay.' + extension, 'masks', 'contact-sheet.png', 'selection.json')


def _run(clip, edit, selection_path, saved, grade, reader, codec, folder, warn):
    def render(index):
        del warnings[:]
        return _render(clip, edit, selection_path, saved, grade, reader, index, codec, folder, stages, warnings.append)
    stages, warnings = Stages(), []
    with stages.stage('index'):
        index = clipindex.read(clip, reader)
    try:
        text = render(index)
    except ClipDiffers:
        # All of it again, by the frames that the decoder gives: the edit counts frames, too.
        shutil.rmtree(folder.file('masks'))
        stages = Stages()
        with stages.stage('index'):
            reader.rewind()
            index = clipindex.decoded(clip, reader, index)
        text = render(index)
    for line in clipindex.complaints(clip, index, reader.damagedFrames()) + warnings:
        warn(line)
    # Nothing that can fail comes after this.
    folder.commit()
    return text


def _render(clip, edit, selection_path, saved, grade, reader, index, codec, folder, stages, warn):
    """Replays the edit or loads the selection, writes all results and returns the summary's text."""
    clock = hostkit.FrameClock(reader.rateNumerator(), reader.rateDenominator(), index.positions)
    preview = Preview(clock)
    try:
        clip_size = reader.clipWidth(), reader.clipHeight()
        replay = None
        if saved:
            _load(saved, preview, clip_size, warn)
        else:
            with stages.stage('replay'):
                replay = Replay(edit, preview, ClipPictures(clip))
                replay.run()
        text = selection.to_json(preview.overlay.GetCurrentDevSetting(), grade, clip_size)
        with open(folder.file('selection.json'), 'w') as stream:
            stream.write(text)
        # The saved selection is what is rendered. Loading it drops what was picked and hovered, too.
        preview.load(selection.from_json(text))
        fits = replay.fits if replay else ()
        renderer = Renderer(reader, preview, grade, stages, fits, index.positions)
        renderer.run(folder, codec)
        for line in emptiness.advice(renderer.selected, preview.overlay):
            warn(line)
        origin = summary.of_edit(edit, preview) if replay else summary.of_selection(saved, selection_path)
        return summary.compose(clip, reader, clock, origin, preview, fits, renderer, stages, folder.path)
    finally:
        preview.close()


def _load(saved, preview, clip_size, warn):
    """Loads a selection that was saved, of a clip of any size and length."""
    preview.place(clip_size)
    scale = float(clip_size[1]) / saved.size[1] if saved.size else 1
    preview.load(selection.feathered_for(saved.setting, scale))
    times = preview.overlay.GetKeyFrameDurationList()
    beyond = [time for time in times if time >= preview.clock.end()]
    if beyond:
        warn("%d of the selection's %d keyframes lie beyond the end of this clip" % (len(beyond), len(times)))
