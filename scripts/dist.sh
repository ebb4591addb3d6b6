#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes the packages and tries each one out.
#
#   ./dist                 out/dist/: a ZIP for Windows, a Debian package and a tarball for Linux
#   ./dist windows|linux   only these
#
# A package counts as made when what was unpacked from it loads and draws: the Windows one under Wine.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/setup/common.sh"
cd "$ORVANEL_ROOT"

case ${1:-} in
-h | --help)
    sed -n '/^#   /s/^#   //p' "${BASH_SOURCE[0]}"
    exit 0
    ;;
"") systems=(windows linux) ;;
*) systems=("$@") ;;
esac
for system in "${systems[@]}"; do
    case $system in windows | linux) ;; *) die "unknown system '$system': there are windows and linux" ;; esac
done

OUT=$ORVANEL_ROOT/out/dist
TRY=$(mktemp -d)
trap 'rm -rf "$TRY"' EXIT
mkdir -p "$OUT"

# pack SYSTEM: builds, packs, and names the packages.
pack() {
    local preset=dist-$1
    say "$1: building (log: build/$preset.log)"
    build_preset "$preset"
    rm -rf "build/$preset/packages"
    (cd "build/$preset" && cpack) >"build/$preset-cpack.log" 2>&1 || {
        tail -n 20 "build/$preset-cpack.log" >&2
        die "$1 could not be packed (whole log: build/$preset-cpack.log)"
    }
    mapfile -t packages < <(find "build/$preset/packages" -maxdepth 1 -type f \( -name '*.zip' -o -name '*.deb' -o -name '*.tar.gz' \))
}

# What a program of the host does first, in both systems' interpreters.
FIRST_STEPS='
import _Orvanel
editor = _Orvanel.new_Orvanel()
_Orvanel.Orvanel_SetVideoCoordinate(editor, 640, 360, 0, 0, 640, 360)
assert _Orvanel.Orvanel_PrepareKeyframe(editor, 0) is not None, "there is no drawing component"
_Orvanel.delete_Orvanel(editor)
print "draws"
'

# first_steps COMMAND...: runs them, and fails unless they come to their end.
first_steps() {
    local said
    said=$("$@" -B -c "$FIRST_STEPS" 2>&1 | tr -d '\r') || true
    [ "$said" = draws ] || die "what was unpacked does not work: $said"
}

windows() {
    scripts/setup/packages.sh build windows wine dist
    scripts/setup/python27-windows.sh
    scripts/setup/wine.sh
    pack windows
    local zip=${packages[0]} unpacked
    unzip -q "$zip" -d "$TRY"
    unpacked=$(find "$TRY" -name _Orvanel.pyd -printf '%h\n')
    cmake "-DOBJDUMP=x86_64-w64-mingw32-objdump" "-DMODULE=$unpacked/_Orvanel.pyd" "-DCANVAS=$unpacked/OrvanelCanvas.dll" \
        -P tests/windows/linkage.cmake
    scripts/wine-run cmd /c "Z:${unpacked//\//\\}\\register.cmd" </dev/null
    PYTHONPATH=$unpacked:$ORVANEL_ROOT/tests/windows/python first_steps scripts/wine-run build/python27-windows/python.exe
    scripts/wine-run cmd /c "Z:${unpacked//\//\\}\\register.cmd" /u </dev/null
    scripts/wine-run "$unpacked/raster_agreement.exe" --count 700 --large 8 --tolerance 3 --stray 4 >"$TRY/agreement.txt" || die "raster_agreement.exe: $(tail -n 9 "$TRY/agreement.txt")"
}

linux() {
    local package
    scripts/setup/packages.sh build host windows dist
    scripts/setup/python27.sh
    pack linux
    for package in "${packages[@]}"; do
        mkdir -p "$TRY/${package##*.}"
        case $package in
        *.deb) dpkg-deb -x "$package" "$TRY/deb" ;;
        *.tar.gz) tar -xf "$package" -C "$TRY/gz" ;;
        esac
        PYTHONPATH=$(find "$TRY/${package##*.}" -name _Orvanel.so -printf '%h\n') first_steps build/python27/bin/python2.7
    done
}

for system in "${systems[@]}"; do
    "$system"
    cp "${packages[@]}" "$OUT/"
done
say "the packages"
(cd "$OUT" && du -h ./* | sed 's/^/  /')
