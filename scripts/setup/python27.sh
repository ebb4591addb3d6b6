#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Brings Python 2.7 (release and debug build, headers, shared libraries) and tqdm into BUILD/python27.
#
#   scripts/setup/python27.sh [BUILD]        BUILD defaults to build/ of this repository
#
# Debian 12 has no Python 2.7. Debian 11's packages run on it unchanged; they are fetched through a private apt state
# below BUILD, unpacked without being installed, and found again by their own landmark (lib/python2.7/os.py).
# PYTHON27_ROOT names an existing Python 2.7 with headers instead (PYTHON27_ROOT/bin/python2.7, .../include/python2.7).
#
# Result:
#   bin/python2.7, bin/python2.7-dbg   wrappers that set the library path and tqdm's folder; they just work
#   python27.cmake                     what cmake/Python27.cmake needs to know, relative to this folder
#   root/                              the unpacked packages (absent with PYTHON27_ROOT)
#   lib/                               the two old libraries that _ctypes, _hashlib and _ssl want, and nothing else
#   site/                              tqdm
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

BUILD=$(mkdir -p "${1:-$ORVANEL_ROOT/build}" && cd "${1:-$ORVANEL_ROOT/build}" && pwd)
OUT=$BUILD/python27
SUITE=bullseye
PACKAGES=(python2.7 python2.7-minimal libpython2.7 libpython2.7-minimal libpython2.7-stdlib python2.7-dev libpython2.7-dev
    python2.7-dbg libpython2.7-dbg libffi7 libssl1.1)
# Debian 12's tqdm needs Python 3; Debian 11's is the last line that also runs under 2.7.
TQDM_PACKAGE=python3-tqdm

STAMP=$(stamp_of "$(cat "${BASH_SOURCE[0]}")" "${PYTHON27_ROOT:-}")

# A python2.7 can exist and be a dead shim: only a run proves one, and the run must be the right version.
runs() { [ "$("$@" -c 'import sys, struct, json, ctypes, hashlib, tqdm; print(sys.version_info[:2] == (2, 7))' 2>/dev/null)" = True ]; }

if [ -f "$OUT/stamp" ] && [ "$(cat "$OUT/stamp")" = "$STAMP" ] && runs "$OUT/bin/python2.7"; then
    exit 0
fi

# write_wrapper NAME EXECUTABLE: EXECUTABLE is relative to $OUT or absolute.
write_wrapper() {
    cat >"$OUT/bin/$1" <<WRAPPER
#!/bin/sh
here=\$(cd "\$(dirname "\$(readlink -f "\$0")")/.." && pwd)
export LD_LIBRARY_PATH="\$here/lib\${LD_LIBRARY_PATH:+:\$LD_LIBRARY_PATH}"
export PYTHONPATH="\${PYTHONPATH:+\$PYTHONPATH:}\$here/site"
export PYTHONNOUSERSITE=1
exec $2 "\$@"
WRAPPER
    chmod +x "$OUT/bin/$1"
}

unpack_tqdm() {
    dpkg -x "$OUT"/apt/deb/${TQDM_PACKAGE}_*.deb "$OUT/unpack"
    mv "$OUT/unpack/usr/lib/python3/dist-packages/tqdm" "$OUT/site/tqdm"
    rm -rf "$OUT/unpack"
}

from_debian() {
    local deb library
    say "Python 2.7 comes from Debian $SUITE, unpacked below $OUT/root (nothing is installed)"
    fetch_packages "$SUITE" "$OUT/apt" "${PACKAGES[@]}" "$TQDM_PACKAGE"
    for deb in "$OUT"/apt/deb/*.deb; do
        case $deb in */${TQDM_PACKAGE}_*) ;; *) dpkg -x "$deb" "$OUT/root" ;; esac
    done
    unpack_tqdm
    # The interpreters get these two libraries from a folder of their own, so that nothing else of Debian 11 shadows
    # a library of this machine.
    for library in libffi.so.7 libssl.so.1.1 libcrypto.so.1.1; do
        ln -s "../root/usr/lib/$MULTIARCH/$library" "$OUT/lib/$library"
    done
    rm -f "$OUT/root/usr/lib/python2.7/sitecustomize.py" # a symlink into /etc, which is not ours
    rm -rf "$OUT/root/usr/share/doc" "$OUT/root/usr/share/man"
    write_wrapper python2.7 '"$here/root/usr/bin/python2.7"'
    write_wrapper python2.7-dbg '"$here/root/usr/bin/python2.7-dbg"'
    cat >"$OUT/python27.cmake" <<CMAKE
# Written by scripts/setup/python27.sh.
set(PYTHON27_EXECUTABLE "\${CMAKE_CURRENT_LIST_DIR}/root/usr/bin/python2.7")
set(PYTHON27_HOME "\${CMAKE_CURRENT_LIST_DIR}/root/usr")
set(PYTHON27_INCLUDE_DIRS "\${CMAKE_CURRENT_LIST_DIR}/root/usr/include/python2.7" "\${CMAKE_CURRENT_LIST_DIR}/root/usr/include")
set(PYTHON27_LIBRARY "\${CMAKE_CURRENT_LIST_DIR}/root/usr/lib/$MULTIARCH/libpython2.7.so.1.0")
set(PYTHON27_DEBUG_EXECUTABLE "\${CMAKE_CURRENT_LIST_DIR}/root/usr/bin/python2.7-dbg")
set(PYTHON27_DEBUG_INCLUDE_DIRS "\${CMAKE_CURRENT_LIST_DIR}/root/usr/include/python2.7_d" "\${CMAKE_CURRENT_LIST_DIR}/root/usr/include")
set(PYTHON27_DEBUG_LIBRARY "\${CMAKE_CURRENT_LIST_DIR}/root/usr/lib/$MULTIARCH/libpython2.7_d.so.1.0")
CMAKE
}

from_existing() {
    local root=$PYTHON27_ROOT executable include library debug=""
    executable=$root/bin/python2.7
    include=$root/include/python2.7
    say "Python 2.7 comes from PYTHON27_ROOT=$root"
    [ "$("$executable" -c 'import sys; print(sys.version_info[:2] == (2, 7))' 2>/dev/null)" = True ] ||
        die "PYTHON27_ROOT=$root: bin/python2.7 does not run"
    [ -f "$include/Python.h" ] || die "PYTHON27_ROOT=$root: include/python2.7/Python.h is missing"
    for library in "$root/lib/libpython2.7.so.1.0" "$root/lib/$MULTIARCH/libpython2.7.so.1.0" "$root/lib/libpython2.7.a" ""; do
        [ -f "$library" ] && break
    done
    [ -n "$library" ] || warn "PYTHON27_ROOT=$root has no libpython2.7: tests that embed an interpreter are left out"
    if [ -x "$root/bin/python2.7-dbg" ] && [ -f "$root/include/python2.7_d/Python.h" ]; then
        debug=$root/bin/python2.7-dbg
        write_wrapper python2.7-dbg "\"$debug\""
    else
        warn "PYTHON27_ROOT=$root has no debug build (bin/python2.7-dbg): the tests that need one are left out"
    fi
    if ! "$executable" -c 'import tqdm' 2>/dev/null; then
        fetch_packages "$SUITE" "$OUT/apt" "$TQDM_PACKAGE"
        unpack_tqdm
    fi
    write_wrapper python2.7 "\"$executable\""
    {
        printf '# Written by scripts/setup/python27.sh.\n'
        printf 'set(PYTHON27_EXECUTABLE "%s")\nset(PYTHON27_HOME "%s")\n' "$executable" "$root"
        printf 'set(PYTHON27_INCLUDE_DIRS "%s" "%s")\nset(PYTHON27_LIBRARY "%s")\n' "$include" "$root/include" "$library"
        [ -z "$debug" ] || printf 'set(PYTHON27_DEBUG_EXECUTABLE "%s")\nset(PYTHON27_DEBUG_INCLUDE_DIRS "%s" "%s")\n' \
            "$debug" "$root/include/python2.7_d" "$root/include"
    } >"$OUT/python27.cmake"
}

MULTIARCH=$(dpkg --print-architecture 2>/dev/null || echo amd64)
case $MULTIARCH in amd64) MULTIARCH=x86_64-linux-gnu ;; arm64) MULTIARCH=aarch64-linux-gnu ;; esac

rm -rf "$OUT"
mkdir -p "$OUT/bin" "$OUT/lib" "$OUT/site"
if [ -n "${PYTHON27_ROOT:-}" ]; then from_existing; else from_debian; fi
rm -rf "$OUT/apt"

runs "$OUT/bin/python2.7" || die "$OUT/bin/python2.7 does not run: $("$OUT/bin/python2.7" -c 'import json, ctypes, hashlib, tqdm' 2>&1 | tail -n 1)"
if [ -x "$OUT/bin/python2.7-dbg" ]; then
    "$OUT/bin/python2.7-dbg" -c 'import sys; sys.gettotalrefcount()' >/dev/null || die "$OUT/bin/python2.7-dbg is not a debug build"
fi
printf '%s\n' "$STAMP" >"$OUT/stamp"
say "Python $("$OUT/bin/python2.7" -c 'import sys; print(sys.version.split()[0])') is ready: $OUT/bin/python2.7"
