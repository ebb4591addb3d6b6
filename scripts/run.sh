#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Sets up what is missing, builds the release configuration and starts the reference host with these arguments.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/setup/common.sh"

setup=$ORVANEL_ROOT/scripts/setup
"$setup/packages.sh" build host
"$setup/python27.sh"
"$setup/clip.sh"

build_preset release || exit 1

export PYTHONPATH=$ORVANEL_ROOT/build/release/python${PYTHONPATH:+:$PYTHONPATH}
export ORVANEL_DEFAULT_CLIP=$ORVANEL_ROOT/build/clip/oa4_launch.webm
exec "$ORVANEL_ROOT/build/python27/bin/python2.7" -B -m orvanel_host "$@"
