#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Google Benchmark's source, for the cross build, which has no library of it: BUILD/benchmark-source.
#
#   scripts/setup/benchmark-windows.sh [BUILD]        BUILD defaults to build/ of this repository
#
# It is Debian 12's source package `benchmark`, the same version as the library that the native benches link, fetched
# through a private apt state into ${XDG_CACHE_HOME:-~/.cache}/orvanel/benchmark-KEY.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

BUILD=$(mkdir -p "${1:-$ORVANEL_ROOT/build}" && cd "${1:-$ORVANEL_ROOT/build}" && pwd)
CACHE=${XDG_CACHE_HOME:-$HOME/.cache}/orvanel
OUT=$CACHE/benchmark-$(stamp_of "$(cat "${BASH_SOURCE[0]}")")

if [ ! -f "$OUT/CMakeLists.txt" ]; then
    mkdir -p "$CACHE"
    WORK=$(mktemp -d "$CACHE/benchmark-work.XXXXXX")
    trap 'rm -rf "$WORK"' EXIT
    private_apt bookworm "$WORK/apt"
    mkdir -p "$WORK/fetch" "$WORK/source"
    (cd "$WORK/fetch" && apt-get "${APT_OPTIONS[@]}" source --download-only --only-source benchmark >"$WORK/fetch.log" 2>&1) || {
        tail -n 3 "$WORK/fetch.log" >&2
        die "cannot fetch the source package benchmark of Debian 12"
    }
    tar -xf "$WORK"/fetch/benchmark_*.orig.tar.* -C "$WORK/source" --strip-components=1
    # Moved in one step: another set-up sees all of it or nothing.
    mv -T "$WORK/source" "$OUT" 2>/dev/null || [ -f "$OUT/CMakeLists.txt" ] || die "cannot lay $OUT down"
    say "Google Benchmark's source is in $OUT"
fi
ln -sfn "$OUT" "$BUILD/benchmark-source"
