# SPDX-License-Identifier: MIT
"""How far a long stage is, for somebody at a terminal; and the places where a job can be interrupted."""
import contextlib
import sys

import tqdm

from . import interrupts


@contextlib.contextmanager
def progress(what, total=None, unit='frames'):
    """Shows a bar while the block runs, when a person is looking. Yields what to call after each unit of the work; that
    raises KeyboardInterrupt when somebody wants the job to end."""
    with tqdm.tqdm(desc=what, total=total, unit=' ' + unit, leave=False, disable=not sys.stderr.isatty()) as bar:
        def advance():
            interrupts.check()
            bar.update()
        yield advance
