# SPDX-License-Identifier: MIT
"""Random sessions played on the module and on the model of the editor side by side.

A session is a list of steps, each a method name and its arguments; both sides offer the same methods. After every step
everything that a host can see of the editor is compared. A session is made while it is played, because it aims at the
anchors, handles and segments that are there; it depends on its seed and the model alone, so a seed always gives the
same session.
"""
