#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Lays down the Wine prefix that the Windows tests run in: BUILD/wine. Nothing outside BUILD is touched.
#
#   scripts/setup/wine.sh [BUILD]        BUILD defaults to build/ of this repository
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

BUILD=$(mkdir -p "${1:-$ORVANEL_ROOT/build}" && cd "${1:-$ORVANEL_ROOT/build}" && pwd)
OUT=$BUILD/wine
WINE=/usr/lib/wine/wine64
SERVER=/usr/lib/wine/wineserver64
[ -x "$WINE" ] && [ -x "$SERVER" ] || die "Wine is missing: run scripts/setup/packages.sh wine"

STAMP=$(stamp_of "$(cat "${BASH_SOURCE[0]}")" "$("$WINE" --version)")
[ -f "$OUT/stamp" ] && [ "$(cat "$OUT/stamp")" = "$STAMP" ] && exit 0

say "laying a Wine prefix down in $OUT"
rm -rf "$OUT"
mkdir -p "$OUT"
export WINEPREFIX=$OUT WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
"$WINE" wineboot -i </dev/null >/dev/null 2>&1 || die "Wine cannot make a prefix in $OUT"
"$SERVER" -w
# Hidden windows work with a display and without one.
"$WINE" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d x11,null /f </dev/null >/dev/null 2>&1
# A program that crashes prints its stack and ends; it opens no window that nobody will close.
"$WINE" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f </dev/null >/dev/null 2>&1
"$SERVER" -w

# Most of a prefix are copies of Wine's own libraries; links in their place save 700 MB a work tree.
library_folder=$(dirname "$(find /usr/lib -path '*x86_64-windows/kernel32.dll' -print -quit)")
find "$OUT/drive_c/windows" -type f -size +4k | while read -r file; do
    original=$library_folder/$(basename "$file")
    if [ -f "$original" ] && cmp -s "$file" "$original"; then ln -sf "$original" "$file"; fi
done
printf '%s\n' "$STAMP" >"$OUT/stamp"
say "the Wine prefix is ready ($(du -sh "$OUT" | cut -f1))"
