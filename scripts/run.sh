#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Sets up what is missing, builds the release configuration and starts the reference host with these arguments.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/setup/common.sh"

setup=$ORVANEL_ROOT/scripts/setup
"$setup/packages.sh" build host
"$setup/python27.sh"
"$setup/clip.sh"

log=$ORVANEL_ROOT/build/release.log
if ! (cd "$ORVANEL_ROOT" && cmake --preset release && cmake --build --preset release -- -j "$(nproc)") >"$log" 2>&1; then
    grep -E -A 12 'error|FAILED|Error' "$log" | head -n 60 >&2 || tail -n 30 "$log" >&2
    warn "the release configuration did not build (log: build/release.log)"
    exit 1
fi

export PYTHONPATH=$ORVANEL_ROOT/build/release/python${PYTHONPATH:+:$PYTHONPATH}
export ORVANEL_DEFAULT_CLIP=$ORVANEL_ROOT/build/clip/oa4_launch.webm
exec "$ORVANEL_ROOT/build/python27/bin/python2.7" -B -m orvanel_host "$@"
