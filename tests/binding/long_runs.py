# SPDX-License-Identifier: MIT
"""How long the tests run that have no natural end."""

import os


def minutes(default):
    """What ORVANEL_MINUTES says, when ORVANEL_LONG_TESTS=1 asks for the full length."""
    return float(os.environ.get('ORVANEL_MINUTES', default))
