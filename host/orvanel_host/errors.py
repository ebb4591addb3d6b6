# SPDX-License-Identifier: MIT
"""What stops a job: the caller reads one line and knows what to do."""


class HostError(Exception):
    """The text is the whole line that the user sees."""


class EditError(HostError):
    """The edit file is wrong, or what it records does not happen on this clip."""
