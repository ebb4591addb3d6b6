# SPDX-License-Identifier: MIT
import sys

# The interpreter looks for modules in the folder that somebody stands in first: a clip's folder may hold anything.
if sys.path[0] == '':
    sys.path.append(sys.path.pop(0))

from .cli import main  # after the line above, which it depends on

sys.exit(main())
