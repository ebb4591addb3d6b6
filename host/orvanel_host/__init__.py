# SPDX-License-Identifier: MIT
"""The reference host: what a host application puts around the module `_Orvanel`.

`orvanel.Orvanel` is the proxy class, `preview.Preview` a video preview in which somebody edits an outline,
`python2.7 -m orvanel_host` replays a recorded edit over a clip and writes the graded video.
"""
