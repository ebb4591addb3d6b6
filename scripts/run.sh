#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Sets up what is missing, builds the release configuration and starts the reference host with these arguments.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/setup/common.sh"

setup=$ORVANEL_ROOT/scripts/setup
python=$ORVANEL_ROOT/build/python27/bin/python2.7

# The host's help needs an interpreter and nothing that is built.
for argument in "$@"; do
    case $argument in -h | --help)
        "$setup/python27.sh"
        PYTHONPATH=$ORVANEL_ROOT/host exec "$python" -B -m orvanel_host --help
        ;;
    esac
done

"$setup/packages.sh" build host
"$setup/python27.sh"
"$setup/clip.sh"

say "building (log: build/release.log)"
build_preset release || exit 1

export PYTHONPATH=$ORVANEL_ROOT/build/release/python${PYTHONPATH:+:$PYTHONPATH}
export ORVANEL_DEFAULT_CLIP=$ORVANEL_ROOT/build/clip/oa4_launch.webm
exec "$python" -B -m orvanel_host "$@"
