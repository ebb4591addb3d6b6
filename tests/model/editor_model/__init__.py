# SPDX-License-Identifier: MIT
"""A second, independent model of the outline editor.

It is written for reading: plain lists, one rule after the other, nothing cached, nothing shared with the C++ sources.
The lock-step test drives it and the module side by side and compares what both show of themselves. Where the rules of
the editor end (two keyframes of different length, for instance) the model raises Undefined instead of guessing.
"""
from __future__ import absolute_import

from editor_model.model import EditorModel
from editor_model.records import E_FAIL, Hover, Point, Rect, Undefined

__all__ = ["E_FAIL", "EditorModel", "Hover", "Point", "Rect", "Undefined"]
