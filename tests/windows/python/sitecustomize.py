# SPDX-License-Identifier: MIT
"""Makes an interpreter a process in which components can be created, as every host has done before it loads the module."""

import ctypes

_MULTITHREADED = 0
ctypes.windll.ole32.CoInitializeEx(None, _MULTITHREADED)
