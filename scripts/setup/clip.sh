#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Brings the default clip to BUILD/clip/oa4_launch.webm: a real 640x360 VP8 video that Debian's package renpy-demo carries.
#
#   scripts/setup/clip.sh [BUILD]        BUILD defaults to build/ of this repository
#
# The package is fetched through a private apt state and unpacked without being installed.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

BUILD=$(mkdir -p "${1:-$ORVANEL_ROOT/build}" && cd "${1:-$ORVANEL_ROOT/build}" && pwd)
OUT=$BUILD/clip
CLIP=oa4_launch.webm
PACKAGE=renpy-demo

[ -s "$OUT/$CLIP" ] && exit 0

say "the default clip comes from Debian's package $PACKAGE, unpacked below $OUT (nothing is installed)"
rm -rf "$OUT"
mkdir -p "$OUT"
fetch_packages "$(. /etc/os-release && printf '%s' "${VERSION_CODENAME:-bookworm}")" "$OUT/apt" "$PACKAGE"
dpkg -x "$OUT"/apt/deb/${PACKAGE}_*.deb "$OUT/unpack"
# Moved last and in one step: a broken set-up leaves no half clip under the final name.
mv "$OUT/unpack/usr/share/games/renpy/demo/game/$CLIP" "$OUT/$CLIP"
rm -rf "$OUT/unpack" "$OUT/apt"
say "the default clip is ready: $OUT/$CLIP"
